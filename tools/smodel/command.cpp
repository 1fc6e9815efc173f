#include "tools/smodel/command.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "tools/smodel/status.h"

#include <CLI/CLI.hpp>

namespace {

std::string RefuseEmpty(const std::string& text) {
    return text.empty() ? "is given an empty text: give a value (is a variable unset?), or leave it out where it is optional" : "";
}

}  // namespace

Command Command::AddGroup(const char* name, const char* about) const {
    CLI::App* const group = m_app->add_subcommand(name, about);
    group->require_subcommand(1);
    return {*group, *m_status};
}

Command Command::AddRunning(const char* name, const char* about, std::function<int()> run) const {
    CLI::App* const command = m_app->add_subcommand(name, about);
    command->callback([run = std::move(run), status = m_status] {
        try {
            *status = run();
        } catch (const UsageError& error) {
            throw CLI::ValidationError(error.argument, error.why);
        }
    });
    return {*command, *m_status};
}

void Command::Argument(const char* name, std::string& value, const char* about, Use use) const {
    m_app->add_option(name, value, about)->required(use == Use::required)->check(RefuseEmpty);
}

void Command::Arguments(const char* name, std::vector<std::string>& values, const char* about) const {
    m_app->add_option(name, values, about)->required();
}

void Command::Option(const char* names, const char* placeholder, std::string& value, const char* about, Use use) const {
    m_app->add_option(names, value, about)
        ->type_name(placeholder)
        ->required(use == Use::required)
        ->check(RefuseEmpty)
        ->capture_default_str();
}

void Command::Text(const char* names, const char* placeholder, std::string& value, const char* about) const {
    m_app->add_option(names, value, about)->type_name(placeholder);
}

void Command::Text(const char* names, const char* placeholder, std::optional<std::string>& value, const char* about) const {
    m_app->add_option(names, value, about)->type_name(placeholder);
}

void Command::Number(const char* names, const char* placeholder, long& value, const char* about, const char* wanted) const {
    const auto check = [wanted](const std::string& text) {
        long number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        const bool isNumber = error == std::errc() && end == text.data() + text.size() && number > 0;
        return isNumber ? std::string() : "'" + text + "' is no " + wanted;
    };
    m_app->add_option(names, value, about)->type_name(placeholder)->required()->check(check);
}

void Command::Choice(const char* names, const char* placeholder, std::vector<std::string>& value, const std::vector<std::string>& all,
                     const char* about) const {
    m_app->add_option(names, value, about)->delimiter(',')->check(CLI::IsMember(all))->type_name(placeholder)->capture_default_str();
}

void Command::EachOf(const char* names, const char* placeholder, std::function<bool(const std::string&)> take, const char* about) const {
    const auto takeAll = [names, take = std::move(take)](const std::vector<std::string>& values) {
        try {
            for (const std::string& value : values)
                if (!take(value)) throw CLI::Success();
        } catch (const UsageError& error) {
            throw CLI::ValidationError(error.argument, error.why);
        }
    };
    m_app->add_option_function<std::vector<std::string>>(names, takeAll, about)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->trigger_on_parse()
        ->type_name(placeholder);
}

void Command::Flag(const char* name, bool& value, const char* about) const {
    m_app->add_flag(name, value, about);
}

void Command::Exclude(const char* one, const char* other) const {
    m_app->get_option(one)->excludes(m_app->get_option(other));
}

void Command::Footer(const char* text) const {
    m_app->footer(text);
}

CommandLine::CommandLine(const char* about, const char* name, const char* version, const char* footer)
    : m_app(std::make_unique<CLI::App>(about, name)) {
    m_app->set_version_flag("--version", version);
    m_app->require_subcommand(1);
    m_app->footer(footer);
}

CommandLine::~CommandLine() = default;

int CommandLine::Run(int argc, char** argv) {
    std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        words.push_back("--help");
    }
    std::reverse(words.begin(), words.end());  // the last one first is how they are taken
    try {
        m_app->parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return m_app->exit(error) == 0 ? STATUS_CLEAN : STATUS_UNUSABLE;
    }
    return m_status;
}
