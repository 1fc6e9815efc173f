#pragma once

#include <string>
#include <vector>

namespace smtest {

/** A table of a page of docs/, below the heading that it stands under. */
struct PageTable {
    using Row = std::vector<std::string>;

    std::string heading;
    Row head;
    std::vector<Row> rows;
};

/** The tables of a page, `file` from the root of the tree. */
std::vector<PageTable> TablesOf(const std::string& file);
/** The blocks of a page in one language, such as "sql". */
std::vector<std::string> BlocksOf(const std::string& file, const std::string& language);
/** What stands in backticks. */
std::vector<std::string> CodesIn(const std::string& text);
/** The parts of a list "a, b". */
std::vector<std::string> WordsIn(const std::string& list);

}  // namespace smtest
