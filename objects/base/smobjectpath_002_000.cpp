// Ids and paths of model objects.
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/text/qvmarkedkeytokenizer.h"
#include "core/qvutils/text/qvstringutils.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WALK_WORDS = {"smobjects", "SMObjectBase"};
constexpr int MODEL_TYPE_NAMESPACE = 21;
constexpr int REMAINING_INFO_ID_LENGTH = 50;

}  // namespace

const I18NString SM_TAG_REFOBJ_OPEN = I18NString::Immortal("<refobj>");
const I18NString SM_TAG_REFOBJ_CLOSE = I18NString::Immortal("</refobj>");

void SMObjectBase::AddEscapedString(bool escape, I18NString& out, const I18NString& s) {
    out += escape ? QvStringUtils::EscapeString(s) : s;
}

void SMObjectBase::AppendToSMObjectID(bool escape, I18NString& out, const I18NString& s) {
    out += ".[";
    AddEscapedString(escape, out, s);
    out += "]";
}

I18NString SMObjectBase::BuildSMObjectID(bool escape, const I18NString& a, const I18NString& b, const I18NString& c, const I18NString& d,
                                         const I18NString& e) {
    I18NString out("[");
    AddEscapedString(escape, out, a);
    out += "]";
    for (const I18NString* part : {&b, &c, &d, &e}) {
        if (part->empty()) break;
        AppendToSMObjectID(escape, out, *part);
    }
    return out;
}

void SMObjectBase::DeconstructSMObjectID(const I18NString& id, I18NString& a, I18NString& b, I18NString& c) {
    QvMarkedKeyTokenizer tokens(id, "[", "]");
    for (I18NString* part : {&a, &b, &c}) {
        if (!tokens.hasMoreTokens()) return;
        *part = tokens.nextToken(nullptr, nullptr);
    }
}

I18NString SMObjectBase::GetSMID(bool) const {
    return I18NString();
}

I18NString SMObjectBase::GetRefObjEscSMID() const {
    return SM_TAG_REFOBJ_OPEN + GetSMID(true) + SM_TAG_REFOBJ_CLOSE;
}

SMObjectBase* SMObjectBase::GetContainingObjectOfType(SMEnum_xmltag::Enum a, SMEnum_xmltag::Enum b) const {
    for (IOObject* ancestor = parent; ancestor; ancestor = ancestor->parent) {
        if (!IsSMObject(ancestor)) {
            SMLog(SM_MISUSE, WALK_WORDS, "GetContainingObjectOfType",
                  "GetContainingObjectOfType called on an object whose parent is not an SM object");
            continue;
        }
        auto* object = static_cast<SMObjectBase*>(ancestor);
        if (object->GetSMType() == a || object->GetSMType() == b) return object;
    }
    SMLog(SM_MISUSE, WALK_WORDS, "GetContainingObjectOfType",
          "GetContainingObjectOfType() called on an object that is not inside something of  the required type.");
    return nullptr;
}

const QvULString& SMObjectBase::GetContainingNamespaceName() const {
    const SMObjectBase* container = GetContainingObjectOfType(SMEnum_xmltag::Enum::namespace_, SMEnum_xmltag::Enum(-1));
    return container ? container->GetNameForSMPath() : EMPTY_QVULSTRING;
}

QvULString SMObjectBase::GetSMPath(I18NString& path) const {
    path = GetNameForSMPath();
    if (path.empty()) return QvULString();
    path = "[" + path + "]";
    bool prepend = true;
    QvULString topNamespace;
    for (SMObjectBase* ancestor = GetParentSMObj(); ancestor; ancestor = ancestor->GetParentSMObj()) {
        if (ancestor->IsFolder()) continue;
        if (prepend) path = "[" + I18NString(ancestor->GetNameForSMPath()) + "]." + path;
        if (ancestor->GetModelType() != MODEL_TYPE_NAMESPACE) continue;
        prepend = false;
        if (ancestor->parent && ancestor->parent == ancestor->m_project) return topNamespace;
        topNamespace = ancestor->GetNameForSMPath();
    }
    TklAssertError(0, "TKL_ASSERT(false);").hurl({"smobjectbase_002_000", __LINE__}, "smobjectbase_002_000", "TKL_THROW");
}

void SMObjectBase::getPath(I18NString& out) const {
    out = GetSMID(false);
    if (!out.empty()) return;
    out = "(" + m_tags->_enum2string(GetSMType()) + ").(" + I18NString(GetNameForSMPath()) + ").(" + I18NString(GetId()) + ")";
}

void SMObjectBase::GetRemainingInfoId(const QvULString& ownerId, const I18NString& tag, I18NString& out) {
    out = ownerId;
    out += "/";
    out += tag;
    if (out.length() > REMAINING_INFO_ID_LENGTH) out.erase(REMAINING_INFO_ID_LENGTH, -1);
}

}  // namespace schema_002_000
