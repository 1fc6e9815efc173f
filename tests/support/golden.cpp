#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/support/documents.h"

namespace smtest {

void ExpectGolden(const std::string& file, const std::string& text) {
    const std::string path = std::string(SMODEL_TEST_DATA) + "/golden/" + file;
    if (std::getenv("SMODEL_UPDATE_GOLDENS")) std::ofstream(path, std::ios::binary) << text;
    const std::string golden = ReadFile(path);
    if (golden == text) return;
    std::istringstream goldenLines(golden), textLines(text);
    std::string was, is;
    int line = 0;
    do {
        ++line;
        if (!std::getline(goldenLines, was)) was = "(end)";
        if (!std::getline(textLines, is)) is = "(end)";
    } while (was == is && was != "(end)");
    ADD_FAILURE() << path << ":" << line << ": golden: " << was << "\n  now: " << is << "\n(SMODEL_UPDATE_GOLDENS=1 writes the file anew)";
}

}  // namespace smtest
