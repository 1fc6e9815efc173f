#include "core/repository/projectsave.h"

namespace qv {

void ProjectSave::EndUnvisited(IOObject& outermost) {
    if (m_state.empty()) return;
    m_state.FetchAll();
    const bool whole = outermost.GetIdCol().utf8() == m_schema.Find("SM_PROJECT")->catalogue->id;
    for (IdEntry& entry : m_state.ids().entries())
        if (entry.row && !entry.object && IsGone(entry, whole)) {
            m_writer.End(*entry.table, entry.row);
            m_state.NoteRow(entry, nullptr);
        }
    EndRecordsOfGone(whole);
    EndOrdersOfGone(whole);
}

bool ProjectSave::IsUnreadChild(const IdEntry& entry, const IdEntry* parent) const {
    if (!parent || !parent->object) return false;
    for (const UnreadChild& unread : UnreadChildren())
        if (parent->table->name() == unread.parentTable && entry.table->name() == unread.childTable)
            return m_writtenUnread.count(std::string(parent->id) + '\0' + std::string(unread.childTable)) == 0;
    return false;
}

/** A stored row goes when the way up from it meets an object that was visited; one that reaches the top was not below the save. */
bool ProjectSave::IsGone(IdEntry& entry, bool whole) {
    std::vector<IdEntry*> path;
    IdEntry::Fate fate = whole ? IdEntry::ends : IdEntry::stays;
    IdEntry* at = &entry;
    while (at && path.size() <= m_state.ids().entries().size()) {
        if (at->fate != IdEntry::open) {
            fate = at->fate;
            break;
        }
        path.push_back(at);
        IdEntry* parent = m_state.ids().Find(rowcodec::ParentId(*at->table, at->row));
        while (parent && !parent->object && parent->sameId) parent = parent->sameId;
        if (parent && parent->object) {
            fate = IsUnreadChild(*at, parent) ? IdEntry::stays : IdEntry::ends;
            break;
        }
        at = parent;
    }
    for (IdEntry* const passed : path) passed->fate = fate;
    return fate == IdEntry::ends;
}

bool ProjectSave::IsGone(std::string_view owner, bool whole) {
    IdEntry* const first = m_state.ids().Find(owner);
    if (!first) return whole;
    for (const IdEntry* entry = first; entry; entry = entry->sameId)
        if (entry->object || entry->fate == IdEntry::stays) return false;
    return first->fate == IdEntry::ends;
}

void ProjectSave::EndRecordsOfGone(bool whole) {
    const RowTable& table = m_schema.remainInfo();
    const TableRows& rows = m_state.Rows(table);
    for (TableRows::Index index = 0; index < rows.size(); ++index) {
        const char* const row = rows.Row(index);
        if (!row || !IsGone(rowcodec::ParentId(table, row), whole)) continue;
        m_writer.End(table, row);
        m_state.NoteRecord(index, nullptr);
    }
}

void ProjectSave::EndOrdersOfGone(bool whole) {
    m_state.Order().Each([&](std::string_view parent, std::string_view table, const SiblingOrder::Record& record) {
        if (!IsGone(parent, whole)) return;
        m_writer.EndOrder(parent, table, record.first);
        m_state.NoteOrder();
    });
}

}  // namespace qv
