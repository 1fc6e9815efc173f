// The part of sections that deals with the objects that link others.
#include "objects/containers/smsectionchildren_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smobjects", "SMSectionType2"};

I18NString IdOf(const SMObjectBase* object) {
    return object ? object->GetSMID(false) : I18NString();
}

/** Sets a text; true when it was another one. */
bool Update(I18NString& field, const I18NString& text) {
    if (field == text) return false;
    field = text;
    return true;
}

}  // namespace

SMRelationship2* SMSectionType2::AddOrUpdateRelationship(const I18NString& name, SMNamedObject2* left, SMEnum_cardinality::Enum leftMin,
                                                         SMEnum_cardinality::Enum leftMax, SMNamedObject2* right,
                                                         SMEnum_cardinality::Enum rightMin, SMEnum_cardinality::Enum rightMax,
                                                         const I18NString& expression) {
    SMRelationship2* relationship = relationships.Find(name.utf8(), *this);
    if (!relationship) relationship = Create<SMRelationship2>(relationships, name);
    if (relationship->GetExpressionStr() != expression) {
        relationship->SetExpression(expression);
        relationship->SetLastChangedDateToNow();
    }
    relationship->SetLeftReference(IdOf(left), leftMin, leftMax, true);
    relationship->SetRightReference(IdOf(right), rightMin, rightMax, true);
    Record(relationship);
    return relationship;
}

SMScopeRelationship2* SMSectionType2::AddOrUpdateScopeRelationship(const I18NString& name, SMNamedObject2* left,
                                                                   SMEnum_cardinality::Enum leftMin, SMEnum_cardinality::Enum leftMax,
                                                                   SMNamedObject2* right, SMEnum_cardinality::Enum rightMin,
                                                                   SMEnum_cardinality::Enum rightMax) {
    SMScopeRelationship2* relationship = GetScopeRelationshipByName(name);
    if (!relationship) relationship = Create<SMScopeRelationship2>(scopeRelationships, name);
    relationship->SetLeftReference(IdOf(left), leftMin, leftMax, true);
    relationship->SetRightReference(IdOf(right), rightMin, rightMax, true);
    Record(relationship);
    return relationship;
}

SMShortcut2* SMSectionType2::AddOrUpdateShortcut(const I18NString& name, SMQuerySubjectType2* target) {
    SMShortcut2* shortcut = GetShortcutByName(name);
    if (!shortcut) {
        shortcut = Create<SMShortcut2>(shortcuts, name);
        Record(shortcut);
    }
    const I18NString reference = IdOf(target);
    const I18NString type = target ? target->GetTagName() : EMPTY_QVSTRING;
    if (shortcut->GetRefObj() != reference || shortcut->GetTargetType() != type) {
        shortcut->SetRefObj(reference);
        shortcut->SetTargetType(type);
        shortcut->SetLastChangedDateToNow();
    }
    return shortcut;
}

SMRelationshipShortcut2* SMSectionType2::AddOrUpdateRelationshipShortcut(const I18NString& name, SMNamedObject2* left,
                                                                         SMShortcut2* shortcut, SMRelationship2* relationship) {
    SMRelationshipShortcut2* link = relationshipShortcuts.Find(name.utf8(), *this);
    if (!link) link = Create<SMRelationshipShortcut2>(relationshipShortcuts, name);
    bool changed = Update(link->leftRefObj, IdOf(left));
    changed = Update(link->rightRefObj, IdOf(shortcut)) || changed;
    changed = Update(link->relationshipRef, IdOf(relationship)) || changed;
    if (changed) link->SetLastChangedDateToNow();
    Record(link);
    return link;
}

SMShortcut2* SMSectionType2::GetShortcutByName(const I18NString& name) const {
    return shortcuts.Find(name.utf8(), *this);
}

SMScopeRelationship2* SMSectionType2::GetScopeRelationshipByName(const I18NString& name) const {
    return scopeRelationships.Find(name.utf8(), *this);
}

void SMSectionType2::DeleteShortcutById(const I18NString& shortcutId) {
    SMDeleteById(shortcuts, m_displayOrder, shortcutId);
}

void SMSectionType2::DeleteScopeRelationshipById(const I18NString& relationshipId) {
    SMDeleteById(scopeRelationships, m_displayOrder, relationshipId);
}

void SMSectionType2::DeleteScopeRelationship(SMScopeRelationship2* relationship) {
    static constexpr const char* METHOD = "DeleteScopeRelationship";
    const QvSmartPtr<SMScopeRelationship2> held = scopeRelationships.Take(relationship);  // lives until both lists are done with it
    if (!held) SMLog(SM_MISUSE, WORDS, METHOD, "Could not find a scope relationship we were supposed to delete.");
    if (!m_displayOrder.RemovePointer(relationship))
        SMLog(SM_MISUSE, WORDS, METHOD, "Could not find a scope relationship to delete in the order list.");
    SMOrphan(held);
}

}  // namespace schema_002_000
