#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "objects/face/smobjectsheet_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/json.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

namespace {

using nlohmann::ordered_json;
using schema_002_000::SMObjectLine;
using schema_002_000::SMObjectSheet;

constexpr std::size_t SUGGESTIONS = 5;

struct Arguments {
    std::string model, object;
    bool json = false;
};

/** The address where there is one, else where the object stands. */
const std::string& Place(const SMObjectLine& line) {
    return line.objectId.empty() ? line.path : line.objectId;
}

/** Lines of a label and a text each, the texts below one another. */
class Section {
  public:
    void Add(std::string label, std::string text) { m_rows.emplace_back(Printable(label), std::move(text)); }
    /** Without a heading when that is empty; nothing at all when there are no lines. */
    void Print(const std::string& heading) const {
        if (m_rows.empty()) return;
        if (!heading.empty()) ::Print("\n" + Paint(stdout, Colour::bold, heading) + "\n");
        std::size_t width = 0;
        for (const auto& [label, text] : m_rows) width = std::max(width, std::min(label.size(), WIDEST_LABEL));
        for (const auto& [label, text] : m_rows) PrintRow(label, text, width);
    }

  private:
    static constexpr std::size_t WIDEST_LABEL = 50;

    /** Further lines of the text stand below its first. */
    static void PrintRow(const std::string& label, const std::string& text, std::size_t width) {
        std::string row = "  " + label + std::string(label.size() < width ? width - label.size() : 0, ' ') + "  ";
        const std::string indent(width + 4, ' ');
        for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
            end = text.find('\n', start);
            if (start > 0) row += indent;
            row += Printable(std::string_view(text).substr(start, end == std::string::npos ? end : end - start)) + "\n";
        }
        ::Print(row);
    }

    std::vector<std::pair<std::string, std::string>> m_rows;
};

void PrintSheet(const SMObjectSheet& sheet) {
    Print(Paint(stdout, Colour::bold, Printable(sheet.object.kind + " " + Place(sheet.object))) + "\n");
    Section head, definition, properties, containers, children, references, referrers;
    if (!sheet.object.id.empty()) head.Add("id", sheet.object.id);
    head.Add("version", std::to_string(sheet.version));
    for (const auto& text : sheet.texts) head.Add(text.element + " (" + text.locale + ")", text.text);
    for (const auto& field : sheet.fields) definition.Add(field.path, field.text);
    for (const auto& property : sheet.properties)
        properties.Add(property.name + (property.type.empty() ? "" : " (" + property.type + ")"), property.text);
    for (const SMObjectLine& container : sheet.containers) containers.Add(container.kind, Place(container));
    for (const SMObjectLine& child : sheet.children) children.Add(child.kind, Place(child));
    for (const auto& reference : sheet.references)
        references.Add(reference.field, reference.text + (reference.resolves ? "" : "  (not in the model)"));
    for (const auto& referrer : sheet.referrers) referrers.Add(referrer.object.kind, Place(referrer.object) + "  (" + referrer.field + ")");
    head.Print("");
    definition.Print("definition");
    properties.Print("properties");
    containers.Print("stands in");
    children.Print("holds " + Counted(sheet.children.size(), "object"));
    references.Print("refers to");
    referrers.Print("referred to " + Counted(sheet.referrers.size(), "time"));
    if (sheet.referrers.empty()) Print("\nNothing refers to it.\n");
}

ordered_json Json(const SMObjectLine& line) {
    return {{"kind", line.kind}, {"objectId", line.objectId}, {"path", line.path}, {"id", line.id}};
}

/** An array with an object for each entry of a list. */
template <class List, class Make>
ordered_json Array(const List& list, Make make) {
    ordered_json array = ordered_json::array();
    for (const auto& entry : list) array.push_back(make(entry));
    return array;
}

ordered_json Json(const SMObjectSheet& sheet) {
    using Object = ordered_json;
    const auto line = [](const SMObjectLine& entry) { return Json(entry); };
    ordered_json json = Json(sheet.object);
    json["version"] = sheet.version;
    json["texts"] = Array(sheet.texts, [](const SMObjectSheet::Text& text) {
        return Object{{"element", text.element}, {"locale", text.locale}, {"text", text.text}};
    });
    json["definition"] = Array(sheet.fields, [](const SMObjectSheet::Field& field) {
        return Object{{"path", field.path}, {"text", field.text}};
    });
    json["properties"] = Array(sheet.properties, [](const SMObjectSheet::Property& property) {
        return Object{{"name", property.name}, {"type", property.type}, {"text", property.text}};
    });
    json["standsIn"] = Array(sheet.containers, line);
    json["holds"] = Array(sheet.children, line);
    json["refersTo"] = Array(sheet.references, [](const SMObjectSheet::Reference& reference) {
        return Object{{"field", reference.field}, {"text", reference.text}, {"resolves", reference.resolves}};
    });
    json["referredToBy"] = Array(sheet.referrers, [](const SMObjectSheet::Referrer& referrer) {
        ordered_json object = Json(referrer.object);
        object["field"] = referrer.field;
        return object;
    });
    return json;
}

int ComplainOfAbsence(const Arguments& arguments, const schema_002_000::SMReferenceIndex& index) {
    std::string told = arguments.model + " has no object '" + arguments.object + "'; object ids look like [namespace].[subject].[item]";
    const std::vector<std::string> alike = index.FindAlike(arguments.object, SUGGESTIONS);
    for (std::size_t i = 0; i < alike.size(); ++i) told += (i == 0 ? "; did you mean " : ", ") + alike[i];
    Complain(told + (alike.empty() ? "" : "?"));
    return STATUS_UNUSABLE;
}

int Show(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    const schema_002_000::SMLoadResult loaded = ReadModel(arguments.model);
    if (!loaded.IsDone()) return StatusOf(loaded);
    const schema_002_000::SMReferenceIndex index(*loaded.project);
    const schema_002_000::SMObjectBase* const object = index.Find(arguments.object);
    if (!object) return ComplainOfAbsence(arguments, index);
    const SMObjectSheet sheet = schema_002_000::SMSheetOf(index, *object);
    if (arguments.json)
        Print(JsonText(Json(sheet)) + "\n");
    else
        PrintSheet(sheet);
    return StatusOf(loaded);
}

}  // namespace

void AddShow(const Command& app) {
    const auto [command, arguments] =
        app.Add<Arguments>("show", "Show one object: its texts, its definition, what it holds, and who refers to it", Show);
    command.Argument("MODEL", arguments.model, "The document; - is standard input");
    command.Argument("OBJECT", arguments.object, "Its object id, as '[namespace].[subject].[item]'");
    command.Flag("--json", arguments.json, "Print a JSON object");
    AddLimits(command);
}
