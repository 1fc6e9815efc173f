#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smobjectsheet_002_000.h"
#include "objects/face/smreferences_002_000.h"

using namespace schema_002_000;

namespace {

/** Bounds that small documents meet too, one or another by `choice`. */
SMXMLLimits LowLimits(std::size_t choice) {
    SMXMLLimits limits;
    switch (choice % 8) {
    case 0: limits.depth = 5; break;
    case 1: limits.elements = 30; break;
    case 2: limits.attributes = 1; break;
    case 3: limits.attributeBytes = 8; break;
    case 4: limits.textBytes = 20; break;
    case 5: limits.names = 20; break;
    case 6: limits.documentBytes = 400; break;
    default: limits.entityCharacters = limits.entityReferences = 3; break;
    }
    return limits;
}

/** A document within low bounds is the same model; one beyond them is refused for that. */
void RequireBoundsHold(std::string_view input, const fuzz::Model& model) {
    SMLoadOptions options;
    options.name = "input";
    options.baseDirectory = "/dev/null";
    options.limits = LowLimits(input.size());
    const SMLoadResult bounded = SMLoadModelBytes(input, options);
    fuzz::RequireReason(bounded);
    fuzz::Require(!bounded.IsDone() || model.project, "bounds let nothing through that is refused without them");
    if (bounded.IsDone()) fuzz::RequireSameReading(model.text, fuzz::CanonicalText(*bounded.project), "bounds leave the model as it is");
}

}  // namespace

void fuzz::Document(std::string_view input) {
    const Model model = LoadModel(input);
    RequireBoundsHold(input, model);
    if (!model.project) return;
    SMCheckReferences(*model.project);
    const SMReferenceIndex index(*model.project);
    std::size_t shown = 0;
    for (const SMObjectBase* object : index.GetObjects()) {
        const std::string address = SMAddressOf(*object);
        Require(address.empty() || index.Find(address), "an object with an address is found by it");
        SMDescribeObject(*object);
        if (++shown <= 4) SMSheetOf(index, *object);  // each looks at the whole model
    }
}
