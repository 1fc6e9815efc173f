#include "core/repository/siblingnumbers.h"

#include <algorithm>
#include <vector>

#include "core/repository/ascendingnumbers.h"

namespace qv {

namespace {

/** The number in the row of a child of the parent. */
std::optional<std::int64_t> StoredNumber(const IdEntry* entry, std::string_view parent) {
    if (!entry || !entry->row || entry->table->orderColumn < 0 || rowcodec::ParentId(*entry->table, entry->row) != parent)
        return std::nullopt;
    const Cell cell = rowcodec::BodyCell(*entry->table, entry->row, static_cast<std::size_t>(entry->table->orderColumn));
    return cell.kind == Cell::null ? std::nullopt : std::optional(cell.number);
}

}  // namespace

void SiblingNumbers::Start(bool relative) {
    m_relative = relative && !m_state.empty();
    m_settled.clear();
    m_numbers.clear();
}

std::optional<Cell> SiblingNumbers::For(const IOObject& object, const RowTable& table, const IdEntry* entry) {
    if (!m_relative || table.orderColumn < 0 || !object.parent) return std::nullopt;
    if (m_settled.count(object.parent) == 0) {
        const std::string_view parent = object.parent->GetId().utf8();
        const std::optional<std::int64_t> stored = StoredNumber(entry, parent);
        if (stored ? *stored == object.displayOrder : !HasRow(parent)) return std::nullopt;
        Settle(object);
    }
    const auto found = m_numbers.find(&object);
    return found == m_numbers.end() ? std::nullopt : std::optional(Cell::Number(found->second));
}

bool SiblingNumbers::HasRow(std::string_view id) const {
    const IdEntry* entry = m_state.ids().Find(id);
    while (entry && !entry->row) entry = entry->sameId;
    return entry != nullptr;
}

void SiblingNumbers::Settle(const IOObject& current) {
    IOObject* const parent = current.parent;
    m_settled.insert(parent);
    struct Child {
        const IOObject* object;
        NumberedSibling sibling;
    };
    std::vector<Child> children;
    for (IOObject* const child : ChildrenOf(*parent)) {
        const RowTable* const table = Schema::Get().FindByIdColumn(child->GetIdCol().utf8());
        if (!table || table->orderColumn < 0 || child->parent != parent) continue;
        m_state.Rows(*table);
        const bool lacks = child != &current && m_adoption.Lacks(*child);
        const std::string adopted = lacks ? m_adoption.IdFor(*child, *table, 0) : std::string();
        const IdEntry* const entry = m_state.ids().Find(lacks ? std::string_view(adopted) : child->GetId().utf8(), *table);
        Child numbered{child, {child->displayOrder, {}, false, 0}};
        numbered.sibling.stored = StoredNumber(entry, parent->GetId().utf8());
        numbered.sibling.pinned = entry && entry->object == child && child != &current;
        children.push_back(numbered);
    }
    std::stable_sort(children.begin(), children.end(), [](const Child& a, const Child& b) { return a.sibling.memory < b.sibling.memory; });
    std::vector<NumberedSibling> siblings;
    for (const Child& child : children) {
        if (siblings.empty() || siblings.back().memory != child.sibling.memory) {
            siblings.push_back(child.sibling);
            continue;
        }
        // equal ones stay equal
        siblings.back().pinned |= child.sibling.pinned;
        if (siblings.back().stored != child.sibling.stored) siblings.back().stored.reset();
    }
    NumberSiblings(siblings);
    auto sibling = siblings.begin();
    for (const Child& child : children) {
        while (sibling->memory != child.sibling.memory) ++sibling;
        if (sibling->number != sibling->memory) m_numbers.emplace(child.object, sibling->number);
    }
}

}  // namespace qv
