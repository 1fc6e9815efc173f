#include "tests/support/losses.h"

#include <regex>
#include <sstream>

#include "tests/support/documents.h"

namespace smtest {

Losses ListedLosses() {
    Losses losses;
    std::istringstream page(ReadFile(std::string(SMODEL_SOURCE_DIR) + "/docs/losses.md"));
    const std::regex field("`([^`]+)`");
    for (std::string line; std::getline(page, line);) {
        if (line.empty() || line[0] != '|') continue;  // prose shows fields, too
        const std::string face = line.find("| document |") != std::string::npos ? "document " : "repository ";
        const std::string cell = line.substr(line.rfind('|', line.size() - 2));
        for (std::sregex_iterator at(cell.begin(), cell.end(), field), end; at != end; ++at) losses.insert(face + at->str(1));
    }
    return losses;
}

}  // namespace smtest
