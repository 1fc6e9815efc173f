#include "core/repository/idadoption.h"

#include <algorithm>
#include <map>

namespace qv {

std::vector<IOObject*> ChildrenOf(const IOObject& object) {
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    children.push_back(nullptr);  // behind an item without a key the collection does not look at keys
    object.getChildObjects(children);
    std::vector<IOObject*> found;
    for (const QvSmartPtr<IOObject>& child : children)
        if (child) found.push_back(child.get());
    return found;
}

namespace {

std::string CellText(const RowTable& table, const char* row, int column) {
    return column < 0 ? std::string() : std::string(rowcodec::BodyCell(table, row, static_cast<std::size_t>(column)).view);
}

}  // namespace

void IdAdoption::Start(IOObject& outermost) {
    m_outermost = &outermost;
    m_claimed.clear();
    m_knowsClaims = false;
    m_found.clear();
    m_given.clear();
}

bool IdAdoption::Lacks(const IOObject& object) const {
    if (object.GetId().empty()) return true;
    for (const IdEntry* entry = m_state.ids().Find(object.GetId().utf8()); entry; entry = entry->sameId)
        if (entry->object) return entry->object != &object;
    return false;
}

std::string IdAdoption::IdFor(IOObject& object, const RowTable& table, std::size_t place) {
    if (m_state.empty()) return {};
    if (m_found.find(&object) == m_found.end()) Resolve(object, table, place);
    const auto found = m_found.find(&object);
    return found == m_found.end() ? std::string() : found->second;
}

const std::unordered_set<std::string>& IdAdoption::Claimed() {
    if (m_knowsClaims) return m_claimed;
    m_knowsClaims = true;
    std::vector<IOObject*> open = {m_outermost};
    while (!open.empty()) {
        IOObject* const object = open.back();
        open.pop_back();
        if (!object->GetId().empty()) m_claimed.emplace(object->GetId().utf8());
        const std::vector<IOObject*> children = ChildrenOf(*object);
        open.insert(open.end(), children.begin(), children.end());
    }
    return m_claimed;
}

void IdAdoption::Describe(Described& described, const RowTable& table) {
    // an object without an id has no acceptable row, but what its row says of kind and name is there all the same
    m_state.ReadAttributes(table, *described.object);
    const std::vector<Cell>& cells = m_state.Attributes(table).cells;
    if (table.typeColumn >= 0) described.type = cells[static_cast<std::size_t>(table.typeColumn)].view;
    if (table.nameColumn >= 0) described.name = cells[static_cast<std::size_t>(table.nameColumn)].view;
}

std::vector<IdAdoption::Described> IdAdoption::Siblings(IOObject& object, const RowTable& table, std::size_t place) {
    std::vector<Described> siblings;
    bool listed = false;
    if (object.parent) {
        for (IOObject* const child : ChildrenOf(*object.parent)) {
            if (Schema::Get().FindByIdColumn(child->GetIdCol().utf8()) != &table) continue;
            siblings.push_back({child, {}, {}});
            listed |= child == &object;
        }
    }
    if (!listed) siblings.assign(1, {&object, {}, {}, place});
    std::map<std::string, std::size_t> places;
    for (Described& sibling : siblings) {
        Describe(sibling, table);
        if (listed) sibling.place = places[sibling.type]++;
    }
    return siblings;
}

void IdAdoption::Resolve(IOObject& object, const RowTable& table, std::size_t place) {
    const std::string parent(object.parent ? object.parent->GetId().utf8() : std::string_view());
    struct Stored {
        std::string id, type, name;
        std::size_t place;
        bool free;
    };
    std::vector<Stored> stored;
    std::map<std::string, std::size_t> places;
    for (const char* const row : m_state.Below(table, parent)) {
        Stored entry{std::string(rowcodec::Id(row)), CellText(table, row, table.typeColumn), CellText(table, row, table.nameColumn), 0,
                     true};
        const IdEntry* const known = m_state.ids().Find(entry.id);
        entry.free = !(known && known->object) && Claimed().count(entry.id) == 0 && m_given.count(entry.id) == 0;
        entry.place = places[entry.type]++;
        stored.push_back(std::move(entry));
    }
    if (stored.empty()) return;

    std::vector<Described> siblings = Siblings(object, table, place);
    const auto adopt = [&](const Described& sibling, auto&& fits) {
        if (!Lacks(*sibling.object) || m_found.count(sibling.object) != 0) return;
        const auto found = std::find_if(stored.begin(), stored.end(),
                                        [&](const Stored& entry) { return entry.free && entry.type == sibling.type && fits(entry); });
        if (found == stored.end()) return;
        found->free = false;
        m_given.insert(found->id);
        m_found.emplace(sibling.object, found->id);
    };
    for (const Described& sibling : siblings)
        if (!sibling.name.empty()) adopt(sibling, [&](const Stored& entry) { return entry.name == sibling.name; });
    for (const Described& sibling : siblings) adopt(sibling, [&](const Stored& entry) { return entry.place == sibling.place; });
    // those that found nothing are new, and need not be looked at again
    for (const Described& sibling : siblings)
        if (Lacks(*sibling.object)) m_found.emplace(sibling.object, std::string());
}

}  // namespace qv
