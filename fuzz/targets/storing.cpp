#include <algorithm>

#include "core/repository/memory/memorybackend.h"
#include "core/repository/smrepository.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/face/smmodelrestore_002_000.h"
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

/** What stands as it was is restored as it is. */
void RequireRestores(const std::string& document) {
    SMModelOutline then(document), now(document);
    then.IndexIds();
    now.IndexIds();
    const auto& elements = now.Elements();
    const auto last = std::find_if(elements.rbegin(), elements.rend(), [](const SMModelOutline::Element& element) {
        return element.object && element.parent != SMModelOutline::NONE && !element.object->GetId().empty();
    });
    if (last == elements.rend()) return;
    const SMRestoreResult restored = SMRestoreObject(then, now, last->object->GetId());
    fuzz::RequireReason(restored);
    if (restored.IsDone()) fuzz::CanonicalText(*restored.project);
}

/** The revisions of a model that has got another name tell that apart, and pruned, the last one stands as it was. */
void RequireHistory(SMRepository& repository, SMProject2& project) {
    project.SetName("another name");
    fuzz::Require(SMPutModel(project, *repository.OpenProject(1)).IsDone(), "a changed model can be stored");
    const auto revisions = static_cast<long>(repository.Revisions(1).size());
    repository.Changes(1, 1, revisions);
    repository.CountChanges(1, 1, revisions);
    repository.LastRevisionsOf(1, {"n", "another name"});
    const auto document = [&] {
        I18NString text;
        QvStringWriter writer(text);
        repository.OpenProject(1)->ReadDocument(writer);
        return text;
    };
    const I18NString before = document();
    repository.Prune(1, 1);
    fuzz::Require(repository.Revisions(1).size() == 1, "one revision is left of what is pruned to one");
    fuzz::Require(document() == before, "what is pruned stands as it was");
    fuzz::Require(SMGetModel(*repository.OpenProject(1)).IsDone(), "what was pruned can be loaded");
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
    RequireRestores(model.text);
    if (HasLongIds(*model.project)) return;
    const std::vector<std::string> faults = repository.Faults(1, 1);
    Require(faults.empty(), "what was stored fits together: " + (faults.empty() ? std::string() : faults.front()));
    RequireHistory(repository, *model.project);
}
