#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/** What a run of the command left. */
struct ToolRun {
    /** The exit status; 128 and the signal's number for a run that a signal ended. */
    int status = -1;
    std::string out, err;
};

/** A run of the command in the background, its input and outputs in files. */
class RunningTool {
  public:
    /** Words after `NAME=value` words, which go to the environment, are arguments. `input` is what standard input holds. */
    RunningTool(const std::vector<std::string>& words, const std::string& input);
    ~RunningTool();
    RunningTool(const RunningTool&) = delete;
    RunningTool& operator=(const RunningTool&) = delete;
    pid_t Process() const { return m_process; }
    /** Whether it holds a file open. */
    bool HasOpen(const std::string& path) const;
    /** Sends a signal, and waits until the process has taken it. */
    void Interrupt(int signal) const;
    /** Stops it where it is. False when it has ended already. */
    bool Pause() const;
    /** Lets it go on with a signal that it takes before all else. */
    ToolRun ResumeWith(int signal);
    ToolRun Wait();

  private:
    pid_t m_process = -1;
    int m_in = -1, m_out = -1, m_err = -1;
};

/** Runs the command to its end. */
ToolRun RunTool(const std::vector<std::string>& words, const std::string& input = {});

/** Runs it with its outputs on a terminal; all that comes stands in `out`. */
ToolRun RunToolOnTerminal(const std::vector<std::string>& words);

/** A directory that goes with the test. */
class TestDirectory {
  public:
    TestDirectory();
    ~TestDirectory();
    TestDirectory(const TestDirectory&) = delete;
    TestDirectory& operator=(const TestDirectory&) = delete;
    std::string Path(const std::string& name) const { return m_path + "/" + name; }
    /** Writes a file, and returns its path. */
    std::string Write(const std::string& name, const std::string& text) const;
    std::string Read(const std::string& name) const;
    /** Names of the files, sorted. */
    std::vector<std::string> Files() const;

  private:
    std::string m_path;
};
