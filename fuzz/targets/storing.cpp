#include "core/repository/memory/memorybackend.h"
#include "core/repository/smrepository.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"

using namespace schema_002_000;

namespace {

/** The ids of records are cut, so that those of an object with a longer id may fall together: as the format has it. */
bool HasLongIds(const SMProject2& project) {
    constexpr std::size_t LONGEST = 36;
    bool found = false;
    SMForEachObject(project, [&](const SMObjectBase& object, int) { found = found || object.GetId().utf8().size() > LONGEST; });
    return found;
}

}  // namespace

void fuzz::Storing(std::string_view input) {
    const Model model = LoadModel(input);
    if (!model.project) return;
    SMRepository repository(qv::MakeMemoryBackend("memory"), SMRepository::createIfAbsent);
    const SMPutResult put = SMPutModel(*model.project, *repository.NewProject());
    RequireReason(put);
    if (!put.IsDone()) {
        Require(repository.Projects().empty(), "what is not stored leaves nothing behind");
        return;
    }
    I18NString document;
    QvStringWriter writer(document);
    Require(repository.OpenProject(1)->ReadDocument(writer), "the document of a save is stored");
    Require(document.utf8() == model.text, "a document comes back from its store byte for byte");
    const auto again = repository.OpenProject(1);
    Require(model.project->write(*again), "what was stored can be stored again");
    if (!HasLongIds(*model.project)) Require(again->Counters().rowsWritten == 0, "a second save writes nothing");
    const SMGetResult got = SMGetModel(*repository.OpenProject(1));
    Require(got.IsDone(), "what was stored can be loaded");
    CanonicalText(*got.project);
}
