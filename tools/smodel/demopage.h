#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "objects/project/smproject2_002_000.h"
#include "tools/smodel/textdiff.h"

/** The demonstration's page: one part for each document. It goes to standard output, with colours and lines where these show. */
namespace page {

void Title(const std::string& path, std::size_t bytes);
/** One step of the round: what it is called, how long it took for how many bytes of document, and what came of it. */
void Step(const std::string& name, std::chrono::duration<double> time, std::size_t bytes, const std::string& outcome);
/** The objects by kind, with a bar for each. */
void Kinds(const schema_002_000::SMProject2& project);
/** The first levels of the model, the first children of each object. */
void Tree(const schema_002_000::SMProject2& project);
void Notes(const std::string& heading, const std::vector<std::string>& lines, std::size_t most);
/** The changed lines, those of one element together. */
void Differences(const std::vector<LineChange>& changes, std::size_t most);
void Good(const std::string& sentence);
void Bad(const std::string& sentence);
/** The last line: how many models went round, and how many of them came back the same. */
void Summary(std::size_t models, std::size_t same);

}  // namespace page
