// Everything that fuzzing ever found, and what led there, through the functions that the fuzzer calls.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/targets.h"
#include "tests/support/capturedlog.h"

namespace {

namespace fs = std::filesystem;

const fs::path CORPUS = SMODEL_SOURCE_DIR "/fuzz/corpus";

std::vector<fs::path> InputsOf(const std::string& target) {
    std::vector<fs::path> inputs;
    for (const auto& entry : fs::directory_iterator(CORPUS / target)) inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class CorpusReplay : public testing::TestWithParam<fuzz::Target> {};

TEST_P(CorpusReplay, HoldsForEachInput) {
    const smtest::CapturedLog quiet;
    const std::vector<fs::path> inputs = InputsOf(GetParam().name);
    EXPECT_FALSE(inputs.empty());
    for (const fs::path& input : inputs) EXPECT_NO_THROW(GetParam().run(Bytes(input))) << input;
    GetParam().run("");
}

INSTANTIATE_TEST_SUITE_P(Targets, CorpusReplay, testing::ValuesIn(fuzz::TARGETS), [](const auto& target) { return target.param.name; });

TEST(Corpus, HasADirectoryForEachTargetAndNoOther) {
    std::vector<std::string> directories, targets;
    for (const auto& entry : fs::directory_iterator(CORPUS)) directories.push_back(entry.path().filename());
    for (const fuzz::Target& target : fuzz::TARGETS) targets.push_back(target.name);
    std::sort(directories.begin(), directories.end());
    std::sort(targets.begin(), targets.end());
    EXPECT_EQ(directories, targets);
}

TEST(Corpus, StaysSmall) {
    std::size_t files = 0, bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(CORPUS))
        if (entry.is_regular_file()) {
            ++files;
            bytes += entry.file_size();
        }
    EXPECT_LE(files, 1'000u);
    EXPECT_LE(bytes, 2u << 20);
}

}  // namespace
