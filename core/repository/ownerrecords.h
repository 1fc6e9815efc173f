#pragma once

#include <string>
#include <vector>

#include "core/qvutils/persist/iohelper.h"
#include "core/repository/rowwriter.h"
#include "core/repository/savestate.h"

namespace qv {

/**
 * The records of remaining info of one owner while it is written. A record is known by its name; its id is cut to fifty
 * characters, so that two names can have one id: look-ups then give them in turn, in the order in which they were written.
 */
class OwnerRecords {
  public:
    OwnerRecords() = default;
    OwnerRecords(const OwnerRecords&) = delete;
    OwnerRecords& operator=(const OwnerRecords&) = delete;
    ~OwnerRecords() { Clear(); }

    void Clear();
    /** Loads what is stored of the owner, at the first use. */
    void Load(SaveState& state, std::string_view owner);
    /** False when there is no record of the id. */
    bool LookUp(std::string_view elementId, RemainingInfoEntry& entry);
    /** Takes a record that was read into the state's attributes for it, and hands its row to the writer. */
    void Write(SaveState& state, RowWriter& writer, RowArena& arena, IOObject* owner);
    /** Ends what was neither looked up nor written, but for the records that no reader asks for. */
    void EndRest(SaveState& state, RowWriter& writer);

  private:
    struct Record {
        std::string name;
        std::int64_t version, parentVersion;
        /** Shared. */
        const char* row;
        /** Its place in the table; TableRows::NONE when it is new. */
        TableRows::Index at;
        int uses;
    };

    bool m_loaded = false;
    std::vector<Record> m_records;
    std::size_t m_lookedUp = SIZE_MAX;
};

}  // namespace qv
