#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smobjectsheet_002_000.h"
#include "objects/face/smreferences_002_000.h"

using namespace schema_002_000;

void fuzz::Document(std::string_view input) {
    const Model model = LoadModel(input);
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
