#include "tests/support/page.h"

#include <regex>
#include <sstream>

#include "tests/support/documents.h"

namespace smtest {

namespace {

std::vector<std::string> LinesOfPage(const std::string& file) {
    std::istringstream page(ReadFile(std::string(SMODEL_SOURCE_DIR) + "/" + file));
    std::vector<std::string> lines;
    for (std::string line; std::getline(page, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> Parts(const std::string& text, const std::regex& part) {
    std::vector<std::string> parts;
    for (std::sregex_iterator at(text.begin(), text.end(), part), end; at != end; ++at) parts.push_back(at->str(1));
    return parts;
}

}  // namespace

std::vector<PageTable> TablesOf(const std::string& file) {
    static const std::regex cell(" *([^|]*[^| ]|) *\\|");
    std::vector<PageTable> tables;
    std::string heading;
    bool inTable = false;
    for (const std::string& line : LinesOfPage(file)) {
        if (line.rfind("#", 0) == 0) heading = line.substr(line.find(' ') + 1);
        const bool isRow = line.rfind("|", 0) == 0;
        if (isRow && !inTable) tables.push_back({heading, Parts(line.substr(1), cell), {}});
        if (isRow && inTable && line.rfind("|--", 0) != 0) tables.back().rows.push_back(Parts(line.substr(1), cell));
        inTable = isRow;
    }
    return tables;
}

std::vector<std::string> BlocksOf(const std::string& file, const std::string& language) {
    std::vector<std::string> blocks;
    bool inBlock = false;
    for (const std::string& line : LinesOfPage(file)) {
        if (line == "```" + language) {
            blocks.emplace_back();
            inBlock = true;
        } else if (line == "```") {
            inBlock = false;
        } else if (inBlock) {
            blocks.back() += line + "\n";
        }
    }
    return blocks;
}

std::vector<std::string> CodesIn(const std::string& text) {
    static const std::regex code("`([^`]+)`");
    return Parts(text, code);
}

std::vector<std::string> WordsIn(const std::string& list) {
    static const std::regex word("([^, ]+)");
    return Parts(list, word);
}

}  // namespace smtest
