#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/face/smaccounting_002_000.h"
#include "objects/face/smmodelfiles_002_000.h"

using namespace schema_002_000;

namespace {

namespace fs = std::filesystem;

/** Two directories in memory, emptied for each input and gone with the process. */
class Directories {
  public:
    Directories() {
        std::string pattern = fs::exists("/dev/shm") ? "/dev/shm/smodel-fuzz-XXXXXX" : "/tmp/smodel-fuzz-XXXXXX";
        m_top = ::mkdtemp(pattern.data());
    }
    ~Directories() { fs::remove_all(m_top); }
    Directories(const Directories&) = delete;
    Directories& operator=(const Directories&) = delete;

    std::string Empty(const char* name) const {
        const fs::path directory = m_top / name;
        fs::remove_all(directory);
        fs::create_directory(directory);
        return directory.string();
    }

  private:
    fs::path m_top;
};

/** A name that stays in its directory, for whatever an input calls its file. */
bool IsPlainName(std::string_view name) {
    return !name.empty() && name.size() < 200 && name.find('/') == std::string_view::npos && name != "." && name != ".." &&
           name != "main.xml";
}

}  // namespace

// the main document, then name and content of each file, all parted by NUL
void fuzz::Files(std::string_view input) {
    static const Directories& directories = *new Directories;
    static const int cleans = std::atexit([] { directories.~Directories(); });
    static_cast<void>(cleans);
    const std::string from = directories.Empty("from"), to = directories.Empty("to");
    const std::string main = from + "/main.xml";
    std::ofstream(main, std::ios::binary) << TakePart(input);
    while (!input.empty()) {
        const std::string_view name = TakePart(input), content = TakePart(input);
        if (IsPlainName(name)) std::ofstream(from + "/" + std::string(name), std::ios::binary) << content;
    }
    const SMLoadResult loaded = SMLoadModel(main);
    RequireReason(loaded);
    if (!loaded.IsDone()) return;
    const std::string text = CanonicalText(*loaded.project);
    const SMAccountedResult accounted = SMLoadModelAccounted(main);
    Require(accounted.IsDone(), "what is read is read when accounted for");
    RequireSameReading(text, CanonicalText(*accounted.project), "accounting leaves the model as it is");
    for (const SMLoss& loss : accounted.losses) Require(!loss.file.empty() && loss.line > 0, "a loss has a place");
    const SMSplitResult split = SMSplitModel(*loaded.project, to);
    RequireReason(split);
    if (!split.IsDone()) return;
    RequireSame(text, CanonicalText(*loaded.project), "a split leaves the model as it was");
    const SMLoadResult again = SMLoadModel(to + "/main.xml");
    Require(again.IsDone(), "what was split can be read");
    if (SettlesLater(text) || !split.diagnostics.empty()) return;  // notes tell what the files do not bring back
    const std::string joined = CanonicalText(*again.project);
    const SMSplitResult unchanged = SMSplitModel(*again.project, to);
    Require(unchanged.IsDone() && unchanged.changed.empty(), "a second split changes no file");
    Require(SMJoinModel(to + "/main.xml", from + "/joined.xml").IsDone(), "what was split can be joined");
    RequireSameReading(joined, CanonicalText(*SMLoadModel(from + "/joined.xml").project), "joined, it is what was split");
}
