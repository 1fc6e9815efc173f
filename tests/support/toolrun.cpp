#include "tests/support/toolrun.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/waitfor.h"

namespace {

namespace fs = std::filesystem;

/** A file without a name. */
int NamelessFile(const std::string& content) {
    std::string name = (fs::temp_directory_path() / "smodel-test-XXXXXX").string();
    const int file = ::mkstemp(name.data());
    if (file < 0) throw std::runtime_error("no file for the test");
    ::unlink(name.c_str());
    if (::write(file, content.data(), content.size()) != static_cast<ssize_t>(content.size()))
        throw std::runtime_error("no room for the test");
    ::lseek(file, 0, SEEK_SET);
    return file;
}

std::string ContentOf(int file) {
    std::string content;
    char block[4096];
    ::lseek(file, 0, SEEK_SET);
    for (ssize_t count; (count = ::read(file, block, sizeof block)) > 0;) content.append(block, static_cast<std::size_t>(count));
    return content;
}

/** Becomes the command; never returns. */
[[noreturn]] void BecomeTool(const std::vector<std::string>& words) {
    std::string program = SMODEL_TOOL;
    std::vector<char*> arguments{program.data()};
    std::vector<std::string> copies = words;
    bool inEnvironment = true;
    for (std::string& word : copies) {
        const bool isAssignment = inEnvironment && !word.empty() && word[0] >= 'A' && word[0] <= 'Z' && word.find('=') != std::string::npos;
        inEnvironment = isAssignment;
        if (isAssignment)
            ::putenv(word.data());
        else
            arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    // who runs the tests in the background may ignore what the tests send
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) ::signal(number, SIG_DFL);
    ::execv(program.c_str(), arguments.data());
    ::_exit(127);
}

bool HasNoPendingSignal(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("State:") && line.find('Z') != std::string::npos) return true;  // it ended by one
        if (line.starts_with("ShdPnd:") || line.starts_with("SigPnd:"))
            if (line.find_first_not_of("0 \t", line.find(':') + 1) != std::string::npos) return false;
    }
    return true;
}

int StatusOf(int waited) {
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
}

}  // namespace

RunningTool::RunningTool(const std::vector<std::string>& words, const std::string& input)
    : m_in(NamelessFile(input)), m_out(NamelessFile({})), m_err(NamelessFile({})) {
    m_process = ::fork();
    if (m_process < 0) throw std::runtime_error("no process for the test");
    if (m_process > 0) return;
    ::dup2(m_in, STDIN_FILENO);
    ::dup2(m_out, STDOUT_FILENO);
    ::dup2(m_err, STDERR_FILENO);
    BecomeTool(words);
}

RunningTool::~RunningTool() {
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        Wait();
    }
    for (const int file : {m_in, m_out, m_err}) ::close(file);
}

bool RunningTool::HasOpen(const std::string& path) const {
    std::error_code ignored;
    const std::string process = "/proc/" + std::to_string(m_process);
    // before it becomes the command it has the files of the test
    if (!fs::equivalent(process + "/exe", SMODEL_TOOL, ignored)) return false;
    for (const auto& entry : fs::directory_iterator(process + "/fd", ignored))
        if (fs::read_symlink(entry.path(), ignored) == fs::path(path)) return true;
    return false;
}

void RunningTool::Interrupt(int signal) const {
    ::kill(m_process, signal);
    WaitFor([&] { return HasNoPendingSignal(m_process); });
}

bool RunningTool::Pause() const {
    ::kill(m_process, SIGSTOP);
    siginfo_t changed{};
    while (::waitid(P_PID, static_cast<id_t>(m_process), &changed, WSTOPPED | WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    return changed.si_code == CLD_STOPPED;
}

ToolRun RunningTool::ResumeWith(int signal) {
    ::kill(m_process, signal);
    ::kill(m_process, SIGCONT);
    return Wait();
}

ToolRun RunningTool::Wait() {
    int waited = 0;
    while (::waitpid(m_process, &waited, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    return {StatusOf(waited), ContentOf(m_out), ContentOf(m_err)};
}

ToolRun RunTool(const std::vector<std::string>& words, const std::string& input) {
    return RunningTool(words, input).Wait();
}

ToolRun RunToolOnTerminal(const std::vector<std::string>& words) {
    int terminal = -1;
    const pid_t process = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process < 0) throw std::runtime_error("no terminal for the test");
    if (process == 0) {
        ::setenv("TERM", "xterm", 1);
        ::unsetenv("NO_COLOR");
        BecomeTool(words);
    }
    ToolRun run;
    char block[4096];
    for (ssize_t count; (count = ::read(terminal, block, sizeof block)) > 0;) run.out.append(block, static_cast<std::size_t>(count));
    int waited = 0;
    ::waitpid(process, &waited, 0);
    ::close(terminal);
    run.status = StatusOf(waited);
    return run;
}

TestDirectory::TestDirectory() {
    std::string name = (fs::temp_directory_path() / "smodel-test-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
    m_path = name;
}

TestDirectory::~TestDirectory() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::string TestDirectory::Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
}

std::string TestDirectory::Read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(Path(name), std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> TestDirectory::Files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_path)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}
