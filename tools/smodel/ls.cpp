#include <memory>
#include <string>

#include "objects/face/smmodelwalk_002_000.h"
#include "tools/smodel/commands.h"
#include "tools/smodel/interrupt.h"
#include "tools/smodel/json.h"
#include "tools/smodel/limits.h"
#include "tools/smodel/models.h"
#include "tools/smodel/terminal.h"

namespace {

using schema_002_000::SMObjectLine;

struct Arguments {
    std::string model;
    bool json = false;
};

std::string Row(const SMObjectLine& line) {
    return Field(line.kind) + "\t" + Field(line.objectId) + "\t" + Field(line.path) + "\t" + Field(line.id) + "\n";
}

std::string Json(const SMObjectLine& line) {
    const nlohmann::ordered_json object{{"kind", line.kind}, {"objectId", line.objectId}, {"path", line.path}, {"id", line.id}};
    return JsonText(object, -1);
}

int List(const Arguments& arguments) {
    const LeaveAtOnce nothingToTidyUp;
    const schema_002_000::SMLoadResult loaded = ReadModel(arguments.model);
    if (!loaded.IsDone()) return StatusOf(loaded);
    std::string separator = "[\n";
    schema_002_000::SMForEachObject(*loaded.project, [&](const schema_002_000::SMObjectBase& object, int) {
        const SMObjectLine line = schema_002_000::SMDescribeObject(object);
        Print(arguments.json ? separator + Json(line) : Row(line));
        separator = ",\n";
    });
    if (arguments.json) Print("\n]\n");
    return StatusOf(loaded);
}

}  // namespace

void AddLs(const Command& app) {
    const auto [command, arguments] =
        app.Add<Arguments>("ls", "List the objects of a model: kind, object id, path and id, a tab between them", List);
    command.Argument("MODEL", arguments.model, "The document; - is standard input");
    command.Flag("--json", arguments.json, "Print an array of objects");
    AddLimits(command);
}
