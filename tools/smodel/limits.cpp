#include "tools/smodel/limits.h"

#include <charconv>
#include <string>
#include <string_view>

#include "tools/smodel/terminal.h"

namespace {

SMXMLLimits& Limits() {
    static SMXMLLimits limits;
    return limits;
}

/** The limits with their defaults, one a line. */
std::string List() {
    std::string list;
    for (const SMXMLLimitInfo& info : SMXMLLimitInfos()) {
        std::string line = "  " + std::string(info.name) + "=" + qv::SizeText(SMXMLLimits().*info.bound);
        line.append(line.size() < 24 ? 24 - line.size() : 1, ' ').append(info.meaning);
        list += line + "\n";
    }
    return list;
}

[[noreturn]] void Refuse(const std::string& why) {
    throw UsageError{"--limits", why + "; there are, with their defaults:\n" + List()};
}

/** Digits, and K, M or G behind them. */
std::size_t Value(std::string_view text) {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
    const std::size_t place = unit.size() == 1 ? std::string_view("KMG").find(unit[0]) : std::string_view::npos;
    const bool hasUnit = place != std::string_view::npos;
    const std::size_t shift = hasUnit ? 10 * (place + 1) : 0;
    if (error != std::errc() || (!unit.empty() && !hasUnit) || value > (SIZE_MAX >> shift))
        Refuse("\"" + std::string(text) + "\" is no number, with or without K, M or G behind it");
    return value << shift;
}

void Set(std::string_view assignment) {
    const std::size_t sign = assignment.find('=');
    for (const SMXMLLimitInfo& info : SMXMLLimitInfos()) {
        if (sign == std::string_view::npos || assignment.substr(0, sign) != info.name) continue;
        Limits().*info.bound = Value(assignment.substr(sign + 1));
        return;
    }
    Refuse("\"" + std::string(assignment) + "\" is no NAME=NUMBER of a limit");
}

bool Take(const std::string& assignment) {
    if (assignment != "help") {
        Set(assignment);
        return true;
    }
    Print("Limits on what is read, with their defaults:\n" + List());
    return false;
}

}  // namespace

void AddLimits(const Command& command) {
    command.EachOf("--limits", "NAME=NUMBER,...", Take, "Bounds on what is read; \"help\" lists them with their defaults");
}

const SMXMLLimits& LimitsInForce() {
    return Limits();
}
