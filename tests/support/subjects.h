#pragma once

#include "objects/dimensional/smhierarchy2_002_000.h"
#include "objects/dimensional/smmeasurefolder2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"
#include "objects/query/smqueryitemfolder2_002_000.h"
#include "objects/query/smquerysubjecttype2_002_000.h"
#include "tests/support/items.h"
#include "tests/support/values.h"

namespace schema_002_000 {
class SMDimension2;
class SMLevel2;
class SMMeasure2;
}  // namespace schema_002_000

namespace smtest {

/** Containers for objects that cannot stand in a namespace: made, with their tags as ids, if they are not there. */
schema_002_000::SMDimension2* DimensionOf(schema_002_000::SMProject2& project);
schema_002_000::SMHierarchy2* HierarchyOf(schema_002_000::SMProject2& project);

/** What all subjects have in common: texts, properties, kept fragments, filters, and a definition. */
void FillSubject(schema_002_000::SMQuerySubjectType2& subject, Values& values);
/** What both kinds of query have in common. */
void FillQuery(schema_002_000::SMDefinition2::DefinitionQueryBase& query, Values& values);
void FillDBQuery(schema_002_000::SMDefinition2::DBQuery& query, Values& values);
/** An element kept as it stands; null now and then where values are random. */
QvSmartPtr<schema_002_000::SMXMLObject2> KeptXml(const char* tag, const char* inner, Values& values);

/** Fills a child without content of its own: a name and an identity. */
template <class T>
T* Named(T* child, const char* name, Values& values) {
    child->AddName("en", values.Name(name).c_str());
    FillIdentity(*child, values);
    return child;
}

/** A named child that takes the next display order number of its owner. */
template <class T, class Owner>
T* NewChild(Owner& owner, const char* name, Values& values) {
    auto* child = new T(&owner, owner.GetSMProject());
    child->displayOrder = owner.TakeDisplayOrder();
    return Named(child, name, values);
}

/** An item, and a folder with one item, of an owner that numbers its children. */
template <class Owner>
void FillItems(Owner& owner, Values& values) {
    using namespace schema_002_000;
    for (int count = values.Count(1); count > 0; --count) {
        owner.AddQueryItem(NewChild<SMQueryItem2>(owner, "inner item", values));
        auto* folder = NewChild<SMQueryItemFolder2>(owner, "inner item folder", values);
        folder->AddQueryItem(NewChild<SMQueryItem2>(*folder, "item of a folder", values));
        owner.AddQueryItemFolder(folder);
    }
}

}  // namespace smtest
