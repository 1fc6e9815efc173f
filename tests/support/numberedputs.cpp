#include "tests/support/numberedputs.h"

#include <csignal>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/repository/smrepository.h"

namespace {

constexpr int SECTIONS = 30;

std::string NameOf(const TestNode& node) {
    for (const auto& [name, value] : node.columns)
        if (name == QvULString("NAME")) return std::string(QvSmartPtr<IOParameter>(value())->GetQvStringValue().utf8());
    return "";
}

void Number(TestNode& project, long number) {
    const std::string text = std::to_string(number);
    project.Named(text).records["put"] = "<put>" + text + "</put>";
    for (const QvSmartPtr<TestNode>& child : project.children) {
        child->Named(text);
        child->records["put"] = "<put>" + text + "</put>";
    }
}

}  // namespace

void NumberedPuts::MakeFirst(const std::string& location) {
    SMRepository repository(location, SMRepository::createIfAbsent);
    QvSmartPtr<TestNode> project = new TestNode(nullptr, "SM_PROJECT", "p");
    for (int section = 0; section < SECTIONS; ++section) project->AddSection("");
    Number(*project, 1);
    if (!project->write(*repository.NewProject())) throw TklRuntimeError("the first put failed");
}

long NumberedPuts::PutNext(const std::string& location, std::string* told) {
    std::unique_ptr<SMRepository> repository;
    return PutNext(repository, location, told);
}

long NumberedPuts::PutNext(std::unique_ptr<SMRepository>& opened, const std::string& location, std::string* told) {
    CaughtLog log;
    long done = 0;
    try {
        if (!opened) opened = std::make_unique<SMRepository>(location);
        SMRepository& repository = *opened;
        const auto context = repository.OpenProject(1);
        if (const QvSmartPtr<TestNode> project = ReadTestProject(*context)) {
            const long number = std::stol(NameOf(*project)) + 1;
            project->Remove(project->Child(0));
            project->AddSection("");
            Number(*project, number);
            if (project->write(*context)) done = number;
        }
        if (told && !log.messages.empty()) *told = log.messages.front();
    } catch (const TklRuntimeError& error) {
        if (told) *told = error.what();
    }
    if (done == 0) opened = nullptr;
    return done;
}

long NumberedPuts::Standing(const std::string& location, std::string& fault) {
    SMRepository repository(location);
    const auto context = repository.OpenProject(1);
    const QvSmartPtr<TestNode> project = ReadTestProject(*context);
    if (!project) {
        fault = "it cannot be read";
        return 0;
    }
    const std::string name = NameOf(*project), record = "<put>" + name + "</put>";
    if (project->children.size() != SECTIONS) fault = "there are " + std::to_string(project->children.size()) + " sections";
    if (project->records.at("put") != record) fault = "the project's record is of another put";
    for (const QvSmartPtr<TestNode>& child : project->children)
        if (NameOf(*child) != name || child->records["put"] != record) fault = "a section of put " + NameOf(*child) + " in put " + name;
    // each put is a revision
    if (std::to_string(context->Revision()) != name) fault = "put " + name + " is revision " + std::to_string(context->Revision());
    return std::stol(name);
}

Putter::Putter(const std::string& location) {
    int ends[2];
    if (::pipe(ends) != 0) throw TklRuntimeError("no pipe for the test");
    m_process = ::fork();
    if (m_process < 0) throw TklRuntimeError("no process for the test");
    m_told = ends[0];
    if (m_process > 0) {
        ::close(ends[1]);
        ::fcntl(m_told, F_SETFL, O_NONBLOCK);
        return;
    }
    std::unique_ptr<SMRepository> repository;
    for (;;) {
        const long number = NumberedPuts::PutNext(repository, location);
        if (number == 0)
            ::usleep(5000);
        else if (::write(ends[1], &number, sizeof number) != sizeof number)
            ::_exit(0);
    }
}

void Putter::Kill() {
    if (m_process <= 0) return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
    Acknowledged();
    ::close(std::exchange(m_told, -1));
}

long Putter::Acknowledged() {
    for (long number; ::read(m_told, &number, sizeof number) == sizeof number;) m_last = number;
    return m_last;
}
