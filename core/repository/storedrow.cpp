#include "core/repository/storedrow.h"

#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/text/asciifold.h"
#include "core/repository/celldate.h"

namespace qv {

/** A value of a stored row. It can be filled anew when only its layout holds it. */
class StoredValue : public IOParameter {
  public:
    explicit StoredValue(CellKind kind) : m_kind(kind) {}

    void Fill(const Cell& cell) {
        m_null = cell.kind == Cell::null;
        m_number = cell.number;
        if (m_kind != CellKind::text) return;
        if (cell.kind == Cell::integer)
            m_text.assign(std::to_string(cell.number));
        else if (m_text.utf8() != cell.view)  // else the text goes on being shared: words repeat from row to row
            m_text.assign(cell.view);
    }

    int GetKind() const override {
        switch (m_kind) {
        case CellKind::number: return kindLong;
        case CellKind::flag: return kindBool;
        case CellKind::date: return kindDate;
        case CellKind::text: break;
        }
        return kindString;
    }
    bool IsNull() const override { return m_null; }
    I18NString GetQvStringValue() const override { return m_kind == CellKind::text ? m_text : IOParameter::GetQvStringValue(); }
    QvULString GetQvULStringValue() const override { return m_kind == CellKind::text ? m_text : IOParameter::GetQvStringValue(); }
    long GetLongValue() const override { return m_kind == CellKind::number ? m_number : IOParameter::GetLongValue(); }
    double GetDoubleValue() const override {
        return m_kind == CellKind::number ? static_cast<double>(m_number) : IOParameter::GetDoubleValue();
    }
    bool GetBoolValue() const override { return m_kind == CellKind::flag ? m_number != 0 : IOParameter::GetBoolValue(); }
    QvDate GetDateValue() const override { return m_kind == CellKind::date ? DateOf(m_number) : IOParameter::GetDateValue(); }
    I18NString toString(const I18NString& indent) const override {
        if (m_null) return indent + "null";
        switch (m_kind) {
        case CellKind::number: return IOLongParam(m_number).toString(indent);
        case CellKind::flag: return IOBoolParam(m_number != 0).toString(indent);
        case CellKind::date: return QvDateParam(DateOf(m_number)).toString(indent);
        case CellKind::text: break;
        }
        return IOQvStringParam(m_text).toString(indent);
    }

  private:
    const CellKind m_kind;
    bool m_null = true;
    std::int64_t m_number = 0;
    I18NString m_text;
};

namespace {

/** Rows that a layout keeps for the next ones. */
constexpr std::size_t MAX_SPARE = 256;

class SlotWalk : public IOParamPairIterator {
  public:
    SlotWalk(const StoredRow& row, RowLayout& layout) : m_row(const_cast<StoredRow*>(&row)), m_layout(layout) {}
    bool atEnd() const override { return m_at >= m_layout.Size(); }
    void advance() override { ++m_at; }
    QvSmartPtr<IOParameter> value() const override {
        Check();
        return m_layout.Value(*m_row, m_at);
    }
    QvULString key() const override {
        Check();
        return m_layout.Key(m_at);
    }

  private:
    void Check() const {
        if (atEnd()) throw IOParamException("An iterator was used behind its end.");
    }
    QvSmartPtr<StoredRow> m_row;
    RowLayout& m_layout;
    int m_at = 0;
};

}  // namespace

RowLayout::RowLayout(const RowTable& table, const CatalogueKind* kind) : m_table(table), m_cells(table.columns.size()) {
    m_spare.reserve(MAX_SPARE);  // a row that is given back must not need memory
    if (&table == &Schema::Get().remainInfo()) {
        AddSlot("name", Slot::id, CellKind::text);
        AddSlot("xml_element_version", Slot::version, CellKind::number);
        AddSlot("xml_element_parent_id", Slot::parentId, CellKind::text);
        AddSlot("xml_element_parent_version", Slot::parentVersion, CellKind::number);
    } else {
        AddSlot("id", Slot::id, CellKind::text);
        AddSlot("version", Slot::version, CellKind::number);
    }
    std::size_t cell = 0;
    for (const CatalogueColumn& column : table.catalogue->columns) {
        const bool stored = !column.name.empty();
        if (!column.key.empty()) AddSlot(column.key, stored ? Slot::cell : Slot::nothing, column.readAs, stored ? cell : 0);
        if (stored) ++cell;
    }
    if (kind && kind->computedType) AddSlot("object_type", Slot::computed, CellKind::text);
}

RowLayout::~RowLayout() {
    for (StoredRow* const row : m_spare) delete row;
}

void RowLayout::AddSlot(std::string_view key, Slot::Source source, CellKind readAs, std::size_t column) {
    m_slots.push_back({QvULString::Immortal(key), source, column, readAs, new StoredValue(readAs)});
}

QvSmartPtr<IOParameter> RowLayout::MakeRow(const char* row, std::string_view computedType) {
    RowUse use(row);
    StoredRow* made;
    if (m_spare.empty()) {
        made = new StoredRow(*this);
    } else {
        made = m_spare.back();
        m_spare.pop_back();
        made->m_layout = this;
    }
    made->m_row = use.HandOn();
    made->m_computedType = computedType;
    return made;
}

void RowLayout::Recycle(StoredRow* row) {
    if (m_loaded == row) m_loaded = nullptr;
    RowArena::Release(row->m_row);
    row->m_row = nullptr;
    if (m_spare.size() < MAX_SPARE)
        m_spare.push_back(row);
    else
        delete row;
}

int RowLayout::SlotOf(const QvULString& key) {
    const auto address = reinterpret_cast<std::uintptr_t>(key.utf8().data());
    Seen& seen = m_seen[(address >> 4 ^ address >> 11) % SEEN];
    if (!key.empty() && seen.key.shared().same(key.shared())) return seen.slot;
    int slot = Size() - 1;
    while (slot >= 0 && !AsciiEqualsIgnoreCase(Key(slot).utf8(), key.utf8())) --slot;
    seen.key = key;
    seen.slot = slot;
    return slot;
}

void RowLayout::Load(const StoredRow& row) {
    if (m_loaded == &row) return;
    m_head = rowcodec::Head(m_table, row.m_row);
    rowcodec::Cells(m_table, row.m_row, m_cells);
    m_loaded = &row;
}

Cell RowLayout::CellOf(const StoredRow& row, const Slot& slot) const {
    switch (slot.source) {
    case Slot::id: return Cell::Text(m_head.id);
    case Slot::version: return Cell::Number(m_head.version);
    case Slot::parentId: return Cell::Text(m_head.parentId);
    case Slot::parentVersion: return Cell::Number(m_head.parentVersion);
    case Slot::cell: return m_cells[slot.column];
    case Slot::computed: return Cell::Text(row.m_computedType);
    case Slot::nothing: break;
    }
    return {};
}

QvSmartPtr<IOParameter> RowLayout::Value(const StoredRow& row, int slotNo) {
    Slot& slot = m_slots[static_cast<std::size_t>(slotNo)];
    Load(row);
    if (slot.value->getReferenceCount() > 1) slot.value = new StoredValue(slot.readAs);
    slot.value->Fill(CellOf(row, slot));
    return slot.value.get();
}

StoredRow::~StoredRow() {
    if (m_row) RowArena::Release(m_row);
}

void StoredRow::cleanup() {
    const QvSmartPtr<RowLayout> layout = m_layout;
    m_layout = nullptr;
    layout->Recycle(this);
}

QvSmartPtr<IOParameter> StoredRow::GetByName(const QvULString& key) const {
    const int slot = m_layout->SlotOf(key);
    if (slot < 0) throw IOParamException("There is no parameter '" + std::string(key.utf8()) + "'.");
    return m_layout->Value(*this, slot);
}

QvSmartPtr<IOParamIterator> StoredRow::GetIterator() const {
    return QvSmartPtr<IOParamIterator>(new SlotWalk(*this, *m_layout));
}

QvSmartPtr<IOParamPairIterator> StoredRow::GetPairIterator() const {
    return new SlotWalk(*this, *m_layout);
}

I18NString StoredRow::toString(const I18NString& indent) const {
    IOHashParam copy;
    for (QvSmartPtr<IOParamPairIterator> pair = GetPairIterator(); !pair->atEnd(); pair->advance())
        copy.insertOrReplace(pair->key(), pair->value().get());
    return copy.toString(indent);
}

}  // namespace qv
