#pragma once

#include <string>

#include "core/qvutils/base/qvuuid.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"

/** Gives an object and all below it the ids and versions that an earlier save would have given: a save then finds nothing to give. */
inline void IdentifyAll(IOObject& object) {
    object.SetId(QvUUIDGen::Create().GetAsQvULString());
    object.SetVersionNo(1);
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    object.getChildObjects(children);
    for (const QvSmartPtr<IOObject>& child : children) IdentifyAll(*child);
}

/**
 * A model in memory of query items with texts in two languages, 100 to a subject, 100 subjects to a namespace. `changing` becomes the
 * item in the middle.
 */
inline QvSmartPtr<schema_002_000::SMProject2> ItemModel(std::size_t items, schema_002_000::SMQueryItem2*& changing) {
    using namespace schema_002_000;
    constexpr std::size_t ITEMS = 100, SUBJECTS = 100;
    const QvULString french("fr");
    const QvSmartPtr<SMProject2> project = new SMProject2();
    project->SetName("items");
    project->SetDefaultLocale("en");
    auto* const root = new SMNamespace2(project, project);
    project->SetRootNamespace(root);
    root->ChangeDefaultName("Model");
    SMNamespace2* layer = nullptr;
    SMQuerySubject2* subject = nullptr;
    for (std::size_t i = 0; i < items; ++i) {
        if (i % (ITEMS * SUBJECTS) == 0)
            layer = root->AddOrUpdateNamespace(("Layer " + std::to_string(i / (ITEMS * SUBJECTS))).c_str(), "");
        if (i % ITEMS == 0) subject = layer->AddOrUpdateQuerySubject(("Subject " + std::to_string(i / ITEMS)).c_str(), "");
        const std::string number = std::to_string(i);
        SMQueryItem2* const item = subject->AddOrReturnExistingQueryItem(
            ("Item " + number).c_str(), ("COLUMN_" + number).c_str(), ("[Source].[Table].[COLUMN_" + number + "] * 2").c_str(),
            SMEnum_usage::fact, SMEnum_datatype::decimal, 18, 4, 20, true, SMEnum_aggregationRule::sum, SMEnum_aggregationRule::average,
            ("What the business calls item " + number).c_str());
        item->AddName(french, ("Article " + number).c_str());
        if (i == items / 2) changing = item;
    }
    IdentifyAll(*project);
    return project;
}
