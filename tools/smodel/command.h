#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/** Thrown by what a command does: what the user typed for an argument cannot be meant. */
struct UsageError {
    std::string argument, why;
};

template <class Arguments>
struct AddedCommand;

/**
 * A command as the user types it: its arguments, options and flags. It stands before the parser's library, whose headers cost each file
 * that includes them many seconds. A handle, as long good as the command line; what it is given to write to is borrowed as long.
 */
class Command {
  public:
    enum class Use { optional, required };

    /** `status` takes what the command that runs gives back. */
    Command(CLI::App& app, int& status) : m_app(&app), m_status(&status) {}

    /** A command that has only commands below it. */
    Command AddGroup(const char* name, const char* about) const;
    /** A command below this one: `run` is called with what was typed, and gives the exit status. */
    template <class Arguments>
    AddedCommand<Arguments> Add(const char* name, const char* about, std::function<int(const Arguments&)> run) const {
        const auto arguments = std::make_shared<Arguments>();
        return {AddRunning(name, about, [arguments, run] { return run(*arguments); }), *arguments};
    }

    /** What stands for something must be given by more than an empty text, as an unset variable of a shell is one; so must options. */
    void Argument(const char* name, std::string& value, const char* about, Use use = Use::required) const;
    /** One or more. */
    void Arguments(const char* name, std::vector<std::string>& values, const char* about) const;
    /** `names` as "-o,--output"; `placeholder` stands for the value in the help. */
    void Option(const char* names, const char* placeholder, std::string& value, const char* about, Use use = Use::optional) const;
    /** An option whose text may be empty. */
    void Text(const char* names, const char* placeholder, std::string& value, const char* about) const;
    void Text(const char* names, const char* placeholder, std::optional<std::string>& value, const char* about) const;
    /** A number above zero; of anything else the user is told that it is "no ", and then `wanted`. */
    void Number(const char* names, const char* placeholder, long& value, const char* about, const char* wanted) const;
    /** Some of `all`, with commas between them. */
    void Choice(const char* names, const char* placeholder, std::vector<std::string>& value, const std::vector<std::string>& all,
                const char* about) const;
    /** Values with commas between them, each taken as it comes. `take` tells whether to go on; else the run ends well. */
    void EachOf(const char* names, const char* placeholder, std::function<bool(const std::string&)> take, const char* about) const;
    void Flag(const char* name, bool& value, const char* about) const;
    /** Two flags that do not go together. */
    void Exclude(const char* one, const char* other) const;
    /** What the help tells at its end. */
    void Footer(const char* text) const;

  private:
    Command AddRunning(const char* name, const char* about, std::function<int()> run) const;

    CLI::App* m_app;
    int* m_status;
};

/** The arguments live as long as the command line. */
template <class Arguments>
struct AddedCommand {
    Command command;
    Arguments& arguments;
};

/** The whole command line. */
class CommandLine {
  public:
    CommandLine(const char* about, const char* name, const char* version, const char* footer);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    Command Root() { return {*m_app, m_status}; }
    /** Runs what was typed. @return the exit status of the run */
    int Run(int argc, char** argv);

  private:
    std::unique_ptr<CLI::App> m_app;
    int m_status = 0;
};
