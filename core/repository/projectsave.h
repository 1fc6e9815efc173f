#pragma once

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "core/repository/idadoption.h"
#include "core/repository/ownerrecords.h"
#include "core/repository/rowwriter.h"
#include "core/repository/savestate.h"
#include "core/repository/siblingnumbers.h"

namespace qv {

/**
 * The save of a project, or of a part of it: from the outermost write of an object to its end. What goes wrong in between is logged
 * once and makes the whole fail.
 */
class ProjectSave {
  public:
    ProjectSave(StoreSession& session, IOHelper& helper, std::int64_t project, std::int64_t base);

    /** IOHelper's operations of writing, under their names there. */
    bool WriteObject(IOObject& object);
    bool CompareStored(IOObject& object);
    bool DoWriteAction(const I18NString& action, const IOHashParam& params);
    const RemainingInfoEntry* LookUpRemainingInfo(const QvULString& id);

    /** Goes the way of a save and gathers what it would change, row by row, without writing anything. Ids and versions are given as in a
     * save. */
    bool Compare(IOObject& object, ChangeList& changes);

    /** A save is under way. */
    bool Running() const { return m_running; }
    std::int64_t project() const { return m_project; }
    std::int64_t base() const { return m_base; }
    /** Bases the next save on another revision. */
    void SetBase(std::int64_t base);
    bool MovedOn() const { return m_movedOn; }

    /** What the revisions of the saves to come tell of themselves. */
    void WatchSending(RowWriter::Watcher watcher) { m_writer.WatchSending(std::move(watcher)); }
    void WatchSaved(std::function<void(long revision)> watcher) { m_writer.WatchSaved(std::move(watcher)); }
    void Describe(std::string author, std::string message);
    /** A target for the document of what the next save writes. */
    QvXMLFormatTarget& RecordDocument();

  private:
    /** The children of one table that were written below an object, by id, in their order. */
    struct Children {
        const RowTable* table;
        std::vector<std::string_view> ids;
    };
    /** An object that is being written. */
    struct Frame {
        IOObject* object = nullptr;
        IdEntry* entry = nullptr;
        std::vector<Children> children;
        OwnerRecords records;
    };

    bool Begin(IOObject* outermost);
    void Commit();
    /** However a save went: what was not committed is undone, and the next one can begin. */
    void End();
    /** Gives false, and makes the save fail, when the work does or the store raises. */
    template <class Work>
    bool Guarded(const char* method, Work&& work);
    template <class Work>
    bool RunAsSave(const char* method, IOObject* outermost, Work&& work);

    bool WriteOne(IOObject& object);
    bool WriteRow(IOObject& object, const IdEntry& entry, bool freshId);
    /** Gives an object that lacks an id one. True when it was made just now, so that no row can ever have had it. */
    bool SettleId(IOObject& object, const RowTable& table);
    bool Differs(IOObject& object, const RowTable& table);
    bool RowDiffers(IOObject& object, const RowTable& table, const IdEntry& entry);
    bool TextsDiffer(const IOObject& object);
    /** What is saved is all of what a document says, not what rows alone can hold. */
    bool IsOfDocument() const { return m_document || m_writer.Comparing(); }
    Frame& Push(IOObject& object, IdEntry& entry);
    void Pop();
    /** Looks at what hangs below an object that was written. */
    void Close(Frame& frame);
    void CloseOrder(std::string_view parent, const RowTable& table, const std::vector<std::string_view>& ids);
    /** An object that was written alone, and is new below its parent, comes behind its siblings. */
    void PlaceAmongSiblings(const IOObject& object, const IdEntry& entry);

    bool Dispatch(const I18NString& action, const IOHashParam& params);
    bool Insert(const IOHashParam& params);
    bool InsertText(const IOHashParam& params);
    bool InsertRecord(const IOHashParam& params);
    /** Puts stored values in the place of those that memory cannot have, and tells whether there were any. */
    bool KeepStored(const RowTable& table, const char* stored, std::vector<Cell>& cells);

    /**
     * Readers date what was stored without a date. Takes a date away that may be due to that, if the row has none; tells whether it did.
     */
    bool DropDateOfReading(const RowTable& table, const char* stored, std::vector<Cell>& cells) const;

    void EndUnvisited(IOObject& outermost);
    void EndRecordsOfGone(bool whole);
    void EndOrdersOfGone(bool whole);
    bool IsGone(IdEntry& entry, bool whole);
    /** True when the owner of the id went, or was never there. */
    bool IsGone(std::string_view owner, bool whole);
    bool IsUnreadChild(const IdEntry& entry, const IdEntry* parent) const;

    Frame* Top() { return m_open > 0 ? &m_frames[m_open - 1] : nullptr; }
    bool Fail(const char* method, const std::string& message);

    const Schema& m_schema;
    StoreSession& m_session;
    IOHelper& m_helper;
    std::int64_t m_project, m_base;
    /** The moment since which objects may have been read here. */
    std::int64_t m_opened;
    SaveState m_state;
    RowWriter m_writer;
    IdAdoption m_adoption;
    SiblingNumbers m_numbers;

    bool m_running = false;
    bool m_failed = false, m_movedOn = false;
    /** The save under way has done all that it had to. */
    bool m_done = false;
    /** The objects being written, from the outermost inwards; frames behind `m_open` wait to be used again. */
    std::deque<Frame> m_frames;
    std::size_t m_open = 0;
    RowArena m_arena;
    std::string m_author, m_message;
    std::unique_ptr<DocumentRecorder> m_document;
    std::string m_projectId, m_projectName;
    bool m_projectChanged = false;
    /** Parents, by id and table of child, below which children were written that no reader asks for. */
    std::set<std::string> m_writtenUnread;
    OwnerRecords m_looseRecords;
    RemainingInfoEntry m_entry;
};

}  // namespace qv
