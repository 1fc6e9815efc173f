#include "core/qvutils/params/ioparams.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/query/smdeterminant2_002_000.h"

using namespace schema_002_000;

namespace {

QvSmartPtr<SMDeterminant2> FromColumns(SMProject2* project, const I18NString& key, const I18NString& attributes) {
    IOHashParam row;
    row.insertOrReplace("id", new IOQvStringParam("d"));
    row.insertOrReplace("name", new IOQvStringParam("grain"));
    row.insertOrReplace("canGroup", new IOBoolParam(true));
    row.insertOrReplace("identifiesRow", new IOBoolParam(true));
    row.insertOrReplace("key", new IOQvStringParam(key));
    row.insertOrReplace("attributes", new IOQvStringParam(attributes));
    const QvSmartPtr<SMDeterminant2> determinant = new SMDeterminant2(project, project);
    determinant->constructFromIOParameter(row);
    return determinant;
}

struct Columns {
    I18NString key, attributes;
    bool operator==(const Columns&) const = default;
};

Columns ToColumns(SMDeterminant2& determinant) {
    IOHashParam attributes, history;
    determinant.getAttributes(attributes, history);
    return {attributes.GetByName("KEY_REFOBJS")->GetQvStringValue(), attributes.GetByName("ATTRIBUTES_REFOBJS")->GetQvStringValue()};
}

}  // namespace

// the two columns, parted by NUL
void fuzz::Determinant(std::string_view input) {
    const QvSmartPtr<SMProject2> project = new SMProject2;
    const I18NString key(TakePart(input)), attributes(TakePart(input));
    const QvSmartPtr<SMDeterminant2> determinant = FromColumns(project, key, attributes);
    const Columns columns = ToColumns(*determinant);
    const QvSmartPtr<SMDeterminant2> again = FromColumns(project, columns.key, columns.attributes);
    Require(again->GetKeyRefObjs() == determinant->GetKeyRefObjs(), "the keys come back from their column");
    Require(again->GetAttrRefObjs() == determinant->GetAttrRefObjs(), "the attributes come back from their column");
    Require(ToColumns(*again) == columns, "columns that were written are written the same again");
}
