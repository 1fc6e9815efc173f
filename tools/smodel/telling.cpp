#include "tools/smodel/telling.h"

#include "tools/smodel/repositories.h"
#include "tools/smodel/terminal.h"
#include "tools/smodel/textdiff.h"

using nlohmann::ordered_json;

namespace {

/** Values longer than this, and those of several lines, are told by the lines that differ. */
constexpr std::size_t LONGEST_INLINE = 60;
constexpr std::size_t MOST_LINES = 50;

std::string DiffText(std::string_view before, std::string_view after, const std::string& indent) {
    std::string text;
    const std::vector<LineChange> changes = DiffLines(before, after, MOST_LINES);
    for (const LineChange& change : changes)
        text += indent + change.sign + std::to_string(change.number) + ": " + Printable(change.line) + "\n";
    return text + (changes.size() == MOST_LINES ? indent + "...\n" : "");
}

bool IsShort(const std::string& text) {
    return text.size() <= LONGEST_INLINE && text.find('\n') == std::string::npos;
}

std::string Quoted(bool isThere, const std::string& text) {
    return isThere ? "\"" + Printable(text) + "\"" : "nothing";
}

std::string Told(const SMRepositoryValue& value, SMRepositoryChange::What what) {
    const std::string before = TextOf(value.before), after = TextOf(value.after), name = "  " + Printable(TextOf(value.name)) + ": ";
    if (!IsShort(before) || !IsShort(after)) return name + "\n" + DiffText(before, after, "    ");
    if (what == SMRepositoryChange::added) return name + Quoted(value.isThereAfter, after) + "\n";
    if (what == SMRepositoryChange::removed) return name + Quoted(value.isThereBefore, before) + "\n";
    return name + Quoted(value.isThereBefore, before) + " -> " + Quoted(value.isThereAfter, after) + "\n";
}

const char* Word(SMRepositoryChange::What what) {
    return what == SMRepositoryChange::added ? "added" : what == SMRepositoryChange::removed ? "removed" : "changed";
}

ordered_json Json(bool isThere, const I18NString& text) {
    return isThere ? ordered_json(TextOf(text)) : ordered_json(nullptr);
}

std::string TagPerLine(std::string_view document) {
    std::string lines;
    for (std::size_t i = 0; i < document.size(); ++i) {
        lines += document[i];
        if (document[i] == '>' && i + 1 < document.size() && document[i + 1] == '<') lines += '\n';
    }
    return lines;
}

}  // namespace

std::string Told(const SMRepositoryChange& change) {
    std::string text = std::string(Word(change.what)) + " " + Printable(TextOf(change.kind) + " " + PathText(change)) +
                       Printable(" (" + TextOf(change.id) + ")") + "\n";
    for (const SMRepositoryValue& value : change.values) text += Told(value, change.what);
    return text + (change.order ? "  the order of what it holds\n" : "");
}

ordered_json Json(const std::vector<SMRepositoryChange>& changes) {
    ordered_json array = ordered_json::array();
    for (const SMRepositoryChange& change : changes) {
        ordered_json values = ordered_json::array(), path = ordered_json::array();
        for (const SMRepositoryValue& value : change.values)
            values.push_back({{"name", TextOf(value.name)},
                              {"before", Json(value.isThereBefore, value.before)},
                              {"after", Json(value.isThereAfter, value.after)}});
        for (const I18NString& name : change.path) path.push_back(TextOf(name));
        array.push_back({{"what", Word(change.what)},
                         {"kind", TextOf(change.kind)},
                         {"id", TextOf(change.id)},
                         {"parentId", TextOf(change.parentId)},
                         {"path", path},
                         {"values", values},
                         {"order", change.order}});
    }
    return array;
}

std::string DocumentDiff(std::string_view before, std::string_view after, const std::string& indent) {
    return before == after ? std::string() : DiffText(TagPerLine(before), TagPerLine(after), indent);
}
