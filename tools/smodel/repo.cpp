#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "tools/smodel/commands.h"
#include "tools/smodel/models.h"
#include "tools/smodel/repositories.h"
#include "tools/smodel/terminal.h"

#include <CLI/CLI.hpp>

namespace {

struct Arguments {
    std::string repository, model, project;
};

/** Takes a repository's file away again, if it was not there before, unless it came to something. */
class NewFile {
  public:
    explicit NewFile(const std::string& location)
        : m_path(location.starts_with(PREFIX) ? location.substr(PREFIX.size()) : location),
          m_wasThere(location.starts_with("postgresql:") || location.starts_with("postgres:") ||
                     std::filesystem::exists(std::filesystem::symlink_status(m_path))) {}
    ~NewFile() {
        std::error_code ignored;
        if (!m_wasThere) std::filesystem::remove(m_path, ignored);
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    void Keep() { m_wasThere = true; }

  private:
    static constexpr std::string_view PREFIX = "sqlite:";
    std::string m_path;
    bool m_wasThere;
};

int Put(const Arguments& arguments) {
    const schema_002_000::SMLoadResult loaded = ReadModel(arguments.model);
    if (!loaded.IsDone()) return StatusOf(loaded);
    NewFile file(arguments.repository);
    SMRepository repository(arguments.repository, SMRepository::createIfAbsent);
    const std::unique_ptr<SMRepositoryHelper> context = ContextFor(repository, *loaded.project);
    schema_002_000::SMPutResult put;
    {
        ProgressLine line("saving to " + repository.Name());
        put = schema_002_000::SMPutModel(*loaded.project, *context, line.Control());
    }
    PrintDiagnostics(stderr, put.diagnostics, true);
    if (put.IsDone() || !repository.Projects().empty()) file.Keep();
    if (context->MovedOn()) return STATUS_MOVED_ON;
    return Worse(StatusOf(loaded), StatusOf(put));
}

int Get(const Arguments& arguments) {
    schema_002_000::SMGetResult got;
    {
        SMRepository repository(arguments.repository);
        const std::unique_ptr<SMRepositoryHelper> context = ContextOf(repository, arguments.project);
        ProgressLine line("loading from " + repository.Name());
        got = schema_002_000::SMGetModel(*context, line.Control());
    }
    PrintDiagnostics(stderr, got.diagnostics, true);
    if (!got.IsDone()) return StatusOf(got);
    return Worse(StatusOf(got), StatusOf(SaveModel(*got.project, arguments.model)));
}

void AddRepository(CLI::App& command, Arguments& arguments) {
    command.add_option("REPO", arguments.repository, "The repository: a file name, sqlite:FILE, or postgresql://...")->required();
}

}  // namespace

void AddRepo(CLI::App& app, int& status) {
    CLI::App* const repo = app.add_subcommand("repo", "Keep models in a repository");
    repo->require_subcommand(1);

    auto putting = std::make_shared<Arguments>();
    CLI::App* const put = repo->add_subcommand("put", "Save a model, in a new repository if there is none");
    AddRepository(*put, *putting);
    put->add_option("MODEL", putting->model, "The document; - is standard input")->required();
    put->callback([putting, &status] { status = Put(*putting); });

    auto getting = std::make_shared<Arguments>();
    CLI::App* const get = repo->add_subcommand("get", "Load a model, and write it as canonical document");
    AddRepository(*get, *getting);
    get->add_option("-o,--output", getting->model, "Where to write; - is standard output")->type_name("OUT")->required();
    get->add_option("--project", getting->project, "The id or name of the project, where there are several")->type_name("PROJECT");
    get->callback([getting, &status] { status = Get(*getting); });
}
