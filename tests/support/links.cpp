#include "tests/support/links.h"

using namespace schema_002_000;

namespace smtest {

namespace {

SMEnum_cardinality::Enum Cardinality(Values& values, int fixed) {
    return SMEnum_cardinality::Enum(values.Flag() ? values.Choice(fixed, 3) : -1);
}

}  // namespace

void FillRelationship(SMRelationshipBase2& relationship, Values& values) {
    relationship.SetName(values.Name("relationship name").c_str());
    relationship.SetQvRefID(values.Text("warehouse-relationship").c_str());
    const I18NString left = values.Text("[ns].[left subject]").c_str(), right = values.Text("[ns].[right subject]").c_str();
    const auto leftMin = Cardinality(values, 0), leftMax = Cardinality(values, 1);
    const auto rightMin = Cardinality(values, 1), rightMax = Cardinality(values, 2);
    relationship.SetLeftReference(left, leftMin, leftMax, false);
    relationship.SetRightReference(right, rightMin, rightMax, false);
    relationship.displayOrder = values.Number(4);
    FillBase(relationship, values);
}

}  // namespace smtest
