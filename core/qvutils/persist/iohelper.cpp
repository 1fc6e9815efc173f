#include "core/qvutils/persist/iohelper.h"

#include "core/qvutils/base/qvuuid.h"

bool IOHelper::DoReadAction(const I18NString&, const IOHashParam&, IOArrayParam& results) {
    results.clear();
    return true;
}

bool IOHelper::MayHaveRows(const I18NString&, const QvULString&) {
    return true;
}

bool IOHelper::DoWriteAction(const I18NString&, const IOHashParam&) {
    return true;
}

QvSmartPtr<IOParameter> IOHelper::GetObjectMapping(const QvULString&) const {
    return nullptr;
}

void IOHelper::doReadAddToMiniObjectMap(const IOObject*) {}

void IOHelper::doReadAddToRemainingInfoMap(const QvULString&, int, int, const QvULString&) {}

const RemainingInfoEntry* IOHelper::doWriteLookUpRemainingInfo(const QvULString&) const {
    return nullptr;
}

bool IOHelper::WriteObject(IOObject& object) {
    if (object.GetId().empty()) object.SetId(QvUUIDGen::Create().GetAsQvULString());
    if (!object.compare_write(*this)) return object.write_next(*this);
    if (object.GetVersionNo() < 1) object.SetVersionNo(1);
    return object.write_no_seq_inc(*this);
}

bool IOHelper::CompareStored(IOObject&) {
    return true;
}

void MapId2MiniObject::Clear() {
    m_objects.clear();
}

void MapId2MiniObject::AddObject(const IOObject* object) {
    if (!object) return;
    MiniObject& entry = m_objects[object->GetId()];
    entry.version = object->GetVersionNo();
    entry.parentId = object->parent ? object->parent->GetId() : QvULString();
    object->AssignDiffableString(entry.diffable);
}

const MapId2MiniObject::MiniObject* MapId2MiniObject::Find(const QvULString& id) const {
    const auto found = m_objects.find(id);
    return found == m_objects.end() ? nullptr : &found->second;
}

void MapId2RemainingInfo::Clear() {
    m_entries.clear();
}

void MapId2RemainingInfo::AddObject(const QvULString& id, int version, int parentVersion, const QvULString& value) {
    m_entries[id] = {version, parentVersion, value};
}

const RemainingInfoEntry* MapId2RemainingInfo::Find(const QvULString& id) const {
    const auto found = m_entries.find(id);
    return found == m_entries.end() ? nullptr : &found->second;
}
