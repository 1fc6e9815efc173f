#pragma once

#include <set>
#include <string>

namespace smtest {

/** "document folder.name(other)": the face, and the field. */
using Losses = std::set<std::string>;

/** What docs/losses.md lists: the rows of its table whose last cell names fields in backticks. */
Losses ListedLosses();

}  // namespace smtest
