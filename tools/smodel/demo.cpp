#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <cerrno>
#include <cstdlib>

#include "tools/smodel/commands.h"
#include "tools/smodel/demopage.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/kinds.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/terminal.h"

namespace {

using namespace schema_002_000;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::size_t MOST_NOTES = 4;
constexpr std::size_t MOST_DIFFERENCES = 12;
constexpr std::size_t MOST_COMPARED = 2'000;

struct Arguments {
    std::vector<std::string> models;
    std::string directory;
};

/** Where the repositories and documents go: a directory of the user's, or one that goes with this. */
class Workplace {
  public:
    explicit Workplace(const std::string& given) : m_path(given), m_isOurs(given.empty()) {
        if (!m_isOurs) {
            fs::create_directories(m_path);
            return;
        }
        std::string name = (fs::temp_directory_path() / "smodel-demo-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::system_error(errno, std::generic_category(), name);
        m_path = name;
    }
    ~Workplace() {
        std::error_code ignored;
        if (m_isOurs) fs::remove_all(m_path, ignored);
    }
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;
    fs::path File(const std::string& name) const { return m_path / name; }

  private:
    fs::path m_path;
    bool m_isOurs;
};

/** What became of the models. */
struct Totals {
    std::size_t models = 0, same = 0;
};

/** How long an operation takes. */
template <class Operation>
auto Timed(std::chrono::duration<double>& time, Operation&& operation) {
    const auto start = Clock::now();
    auto result = operation();
    time = Clock::now() - start;
    return result;
}

std::string Text(const SMProject2& project, bool indent) {
    I18NString text;
    QvStringWriter writer(text);
    SMSaveOptions options;
    options.indent = indent;
    SMWriteModel(project, writer, options);
    return std::string(text.utf8());
}

/** What the reading told, each kind of event once. */
std::vector<std::string> Events(const std::vector<SMDiagnostic>& diagnostics) {
    std::vector<std::pair<std::string, std::size_t>> events;
    for (const SMDiagnostic& diagnostic : diagnostics) {
        const auto known = std::find_if(events.begin(), events.end(), [&](const auto& event) { return event.first == diagnostic.message; });
        if (known == events.end())
            events.emplace_back(diagnostic.message, 1);
        else
            ++known->second;
    }
    std::vector<std::string> lines;
    for (const auto& event : events) lines.push_back(Grouped(event.second) + " x " + event.first);
    return lines;
}

int Compare(const SMProject2& put, const SMProject2& got, Totals& totals) {
    ++totals.models;
    if (Text(put, false) == Text(got, false)) {
        ++totals.same;
        page::Good("The document got is the document put, to the byte.");
        return STATUS_CLEAN;
    }
    const std::string before = Text(put, true), after = Text(got, true);
    const std::vector<LineChange> changes = DiffLines(before, after, MOST_COMPARED);
    page::Bad("The document got differs from the document put in " + Counted(changes.size(), "line") + ":");
    page::Differences(changes, MOST_DIFFERENCES);
    return STATUS_FINDINGS;
}

/** Keeps what a step told for the page; what made it fail is printed at once. */
bool Went(const SMResult& step, std::vector<SMDiagnostic>& told) {
    if (!step.IsDone()) PrintDiagnostics(stderr, step.diagnostics, true);
    told.insert(told.end(), step.diagnostics.begin(), step.diagnostics.end());
    return step.IsDone();
}

/** The steps behind the reading. */
int Round(SMProject2& project, const std::string& repositoryFile, const std::string& documentFile, std::size_t bytes, Totals& totals) {
    std::vector<SMDiagnostic> told;
    std::chrono::duration<double> time{};
    std::error_code ignored;
    fs::remove(repositoryFile, ignored);
    SMRepository repository("sqlite:" + repositoryFile, SMRepository::createIfAbsent);

    auto context = repository.NewProject();
    const SMPutResult put = Timed(time, [&] { return SMPutModel(project, *context, ProgressLine("saving").Control()); });
    if (!Went(put, told)) return StatusOf(put);
    page::Step("put", time, bytes, Counted(static_cast<std::size_t>(context->Counters().rowsWritten), "row") + " written");

    context = ContextOf(repository, std::string());
    const SMGetResult got = Timed(time, [&] { return SMGetModel(*context, ProgressLine("loading").Control()); });
    if (!Went(got, told)) return StatusOf(got);
    page::Step("get", time, bytes, Counted(static_cast<std::size_t>(context->Counters().rowsRead), "row") + " read");

    const SMSaveResult saved = Timed(time, [&] { return SMSaveModel(*got.project, documentFile); });
    if (!Went(saved, told)) return StatusOf(saved);
    page::Step("write", time, bytes, Counted(saved.bytes, "byte") + " of canonical document");

    page::Kinds(project);
    page::Tree(project);
    const int status = Worse(StatusOf(put), Worse(StatusOf(got), Compare(project, *got.project, totals)));
    page::Notes("The saving and loading told:", Events(told), MOST_NOTES);
    return status;
}

int ShowModel(const std::string& model, const std::string& name, const Workplace& workplace, Totals& totals) {
    std::error_code unreadable;
    const std::uintmax_t size = fs::file_size(model, unreadable);
    const std::size_t bytes = unreadable ? 0 : static_cast<std::size_t>(size);
    std::chrono::duration<double> time{};
    const SMLoadResult loaded = Timed(time, [&] { return ReadModel(model, true); });
    if (!loaded.IsDone()) return StatusOf(loaded);
    page::Title(model, bytes);
    std::size_t objects = 0;
    for (const KindCount& kind : CountKinds(*loaded.project)) objects += kind.count;
    page::Step("read", time, bytes, Counted(objects, "object"));
    const int status = Round(*loaded.project, workplace.File(name + ".db").string(), workplace.File(name + ".xml").string(), bytes, totals);
    page::Notes("The reading told:", Events(loaded.diagnostics), MOST_NOTES);
    return Worse(StatusOf(loaded), status);
}

int Demo(const Arguments& arguments) {
    const Workplace workplace(arguments.directory);
    int status = STATUS_CLEAN;
    Totals totals;
    for (std::size_t i = 0; i < arguments.models.size() && !Interrupted(); ++i) {
        const std::string& model = arguments.models[i];
        status = Worse(status, ShowModel(model, std::to_string(i + 1) + "-" + fs::path(model).stem().string(), workplace, totals));
    }
    if (Interrupted()) return InterruptedStatus();
    page::Summary(totals.models, totals.same);
    return status;
}

}  // namespace

void AddDemo(const Command& app) {
    const auto [command, arguments] = app.Add<Arguments>("demo", "Take models to a new repository and back, and show what happens", Demo);
    command.Arguments("MODEL", arguments.models, "Documents");
    command.Option("--keep", "DIR", arguments.directory, "Leave the repositories and documents in this directory");
    AddLimits(command);
}
