#include "core/qvutils/persist/ioobject.h"

#include "core/qvutils/params/ionames.h"
#include "core/qvutils/persist/iohelper.h"

namespace {

void Put(IOParameter& row, const I18NString& column, const char* fallback, IOParameter* value) {
    const QvSmartPtr<IOParameter> held(value);  // before there may be no memory for its name
    row.insertOrReplace(column.empty() ? QvULString(fallback) : QvULString(column), value);
}

}  // namespace

IOObject::IOObject(IOObject* parentObject, bool) : parent(parentObject) {}

void IOObject::getAttributes(IOParameter& attrs, IOParameter&) {
    static const QvULString LASTCHANGED = QvULString::Immortal("LASTCHANGED");
    Put(attrs, GetIdCol(), "ID", new IOQvStringParam(GetId()));
    Put(attrs, GetVersionCol(), "VERSION", new IOLongParam(GetVersionNo()));
    Put(attrs, GetParentIdCol(), "PARENT_ID", new IOQvStringParam(parent ? I18NString(parent->GetId()) : I18NString()));
    Put(attrs, GetParentVersionCol(), "PARENT_VERSION", new IOLongParam(parent ? parent->GetVersionNo() : 0));
    attrs.insertOrReplace(LASTCHANGED, new QvDateParam(GetLastChangedDate()));
}

void IOObject::getInputParams(IOHashParam& params, I18NString objectName, const QvULString* parentId) {
    QvSmartPtr<IOHashParam> clauses = new IOHashParam;
    clauses->insertOrReplace(IOParamTag::XML_ELEMENT_PARENT_ID, new IOQvStringParam(parentId ? *parentId : GetId()));
    clauses->insertOrReplace(IOParamTag::XML_ELEMENT_PARENT_VERSION, new IOLongParam(GetVersionNo()));
    params.insertOrReplace(IOParamTag::OBJECT, new IOQvStringParam(objectName));
    params.insertOrReplace(IOParamTag::TABLE_NAME, new IOQvStringParam);
    params.insertOrReplace(IOParamTag::HISTORY_ATTRIBUTES, new IOHashParam);
    params.insertOrReplace(IOParamTag::CLAUSES, clauses.get());
}

void IOObject::AssignDiffableString(QvULString& out) const {
    out = QvULString();
}

QvSmartVector<IOObject> IOObject::GetSubIOObjects() {
    return {};
}

void IOObject::VisitTexts(IOTextVisitor&) const {}

bool IOObject::compare_write(IOHelper& helper) {
    return helper.CompareStored(*this);
}

bool IOObject::write(IOHelper& helper) {
    helper.Visit(*this);
    return helper.WriteObject(*this);
}
