#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/qvutils/params/ioparameter.h"
#include "core/repository/rowcodec.h"

namespace qv {

class StoredRow;
class StoredValue;

/**
 * The keys of the rows of one kind, and the working memory that all its rows share: the cells of the row last looked at, a value
 * for each key, which is used again when nobody else holds it, and the rows that came back. Counted; rows share it.
 */
class RowLayout : public TklReferenceCount {
  public:
    /** `kind` is null for records of remaining info. */
    RowLayout(const RowTable& table, const CatalogueKind* kind);
    ~RowLayout() override;

    /** A row that takes over the compact row, which it releases. */
    QvSmartPtr<IOParameter> MakeRow(const char* row, std::string_view computedType);

    const RowTable& table() const { return m_table; }
    int Size() const { return static_cast<int>(m_slots.size()); }
    const QvULString& Key(int slot) const { return m_slots[static_cast<std::size_t>(slot)].key; }
    /** -1 when the rows have no such key. */
    int SlotOf(const QvULString& key);
    QvSmartPtr<IOParameter> Value(const StoredRow& row, int slot);

  private:
    friend class StoredRow;

    struct Slot {
        enum Source { id, version, parentId, parentVersion, cell, computed, nothing };
        QvULString key;
        Source source;
        std::size_t column;
        CellKind readAs;
        QvSmartPtr<StoredValue> value;
    };
    /** A key text seen before. It is held, so its address stays its own. */
    struct Seen {
        QvULString key;
        int slot = -1;
    };
    static constexpr std::size_t SEEN = 128;

    void AddSlot(std::string_view key, Slot::Source source, CellKind readAs, std::size_t column = 0);
    void Load(const StoredRow& row);
    Cell CellOf(const StoredRow& row, const Slot& slot) const;
    /** Takes a row back that nobody holds any more. */
    void Recycle(StoredRow* row);

    const RowTable& m_table;
    std::vector<Slot> m_slots;
    std::array<Seen, SEEN> m_seen;
    const StoredRow* m_loaded = nullptr;
    RowHead m_head;
    std::vector<Cell> m_cells;
    std::vector<StoredRow*> m_spare;
};

/** One row as a reader sees it: a keyed collection that cannot be changed. Keys that the kind has not are missing. */
class StoredRow : public IOParameter {
  public:
    explicit StoredRow(RowLayout& layout) : m_layout(&layout) {}
    ~StoredRow() override;
    void cleanup() override;

    int GetKind() const override { return kindHash; }
    int Size() const override { return m_layout->Size(); }
    QvSmartPtr<IOParameter> GetByName(const QvULString& key) const override;
    bool HasKey(const QvULString& key) const override { return m_layout->SlotOf(key) >= 0; }
    QvSmartPtr<IOParamIterator> GetIterator() const override;
    QvSmartPtr<IOParamPairIterator> GetPairIterator() const override;
    I18NString toString(const I18NString& indent) const override;

  private:
    friend class RowLayout;

    /** Held while the row is in use, so that the layout outlives it; null in a spare row. */
    QvSmartPtr<RowLayout> m_layout;
    const char* m_row = nullptr;
    std::string_view m_computedType;
};

}  // namespace qv
