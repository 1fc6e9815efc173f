#pragma once

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/repository/attributereader.h"
#include "core/repository/idbook.h"
#include "core/repository/siblingorder.h"
#include "core/repository/tablerows.h"
#include "core/repository/textdigests.h"

namespace qv {

/**
 * What stands in the revision that a save is based on, fetched table by table when the save first comes to one. A save that succeeds
 * tells what it did, so that the next one on top of it finds all that it needs in memory.
 */
class SaveState {
  public:
    explicit SaveState(StoreSession& session);
    SaveState(const SaveState&) = delete;
    SaveState& operator=(const SaveState&) = delete;
    ~SaveState() { DropChanges(); }

    /** Forgets what was fetched. A base of 0 has nothing. */
    void Start(std::int64_t project, std::int64_t base);
    bool empty() const { return m_base == 0; }

    TableRows& Rows(const RowTable& table);
    void FetchAll();
    const SiblingOrder& Order();
    /** The last version of an id that no longer stands; 0 when there is none. */
    std::int64_t EndedVersion(const RowTable& table, const RowHead& key);
    IdBook& ids() { return m_ids; }
    /** Of the object's texts in other locales. */
    TextDigest StoredTexts(std::string_view id) { return m_texts.Stored(m_session, m_project, m_base, id); }
    /** The rows below a parent in the order of the last save. */
    std::vector<const char*> Below(const RowTable& table, std::string_view parent);

    /** These note what the running save does; null stands for a row that ends. Rows are shared. Nobody sees any of it before `Settle`. */
    void NoteRow(IdEntry& entry, const char* row);
    void NoteText(std::string_view id, const TextDigest& digest) { m_texts.NoteText(id, digest); }
    /** `at` is the record's place in its table; TableRows::NONE for a new one. */
    void NoteRecord(TableRows::Index at, const char* row);
    void NoteOrder() { m_orderChanged = true; }
    /** What was noted does not tell all. */
    void NoteUnknown() { m_unknown = true; }
    /** The save has ended well and made the revision `base`, or found nothing to do on top of it. */
    void Settle(std::int64_t project, std::int64_t base);

    /** Reads an object's row from memory; a fault is the text that tells it. */
    std::string ReadAttributes(const RowTable& table, IOObject& object);
    AttributeReader& Attributes(const RowTable& table);

  private:
    struct RowNote {
        IdEntry* entry;
        const char* row;
    };
    struct RecordNote {
        TableRows::Index at;
        const char* row;
    };

    void ApplyChanges();
    void DropChanges();
    void ForgetEnded();

    StoreSession& m_session;
    std::int64_t m_project = 0, m_base = 0;
    std::vector<std::unique_ptr<TableRows>> m_rows;
    std::vector<std::unique_ptr<std::unordered_map<std::string, std::int64_t>>> m_ended;
    std::vector<std::size_t> m_endedAsked;
    std::vector<std::unique_ptr<AttributeReader>> m_attributes;
    std::unique_ptr<SiblingOrder> m_order;
    IdBook m_ids;
    TextDigests m_texts;
    std::deque<RowNote> m_rowNotes;
    std::deque<RecordNote> m_recordNotes;
    bool m_orderChanged = false, m_unknown = false;
};

}  // namespace qv
