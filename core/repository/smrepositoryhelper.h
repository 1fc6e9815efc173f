#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "core/qvutils/persist/iohelper.h"
#include "core/repository/smrepositoryhistory.h"

namespace qv {
class StoreBackend;
}

/** What a context has done so far. */
struct SM_API SMRepositoryCounters {
    /** Distinct statements; one that runs many times counts once. */
    long statementsPrepared = 0;
    long rowsRead = 0;
    long rowsWritten = 0;
    /** Rows that a save replaced or removed. */
    long rowsEnded = 0;
};

/**
 * The persistence context on a repository, bound to one project. A load is `project->read(context)`, a save is
 * `project->write(context)`.
 *
 * A read sees one revision, whole, whoever saves meanwhile: the newest at the time when the project's own row is asked for. A save
 * is one transaction and one revision, all or nothing; a save that finds nothing changed writes nothing. It is based on the
 * revision that was read, or saved, or stood there when the context was made; when the store has moved on it fails.
 *
 * Objects must live until the outermost write has returned. No operation throws what the store raises: it is logged at level 1,
 * with table, id and object, and the operation gives false. Used from one thread at a time.
 */
class SM_API SMRepositoryHelper : public IOHelper {
  public:
    ~SMRepositoryHelper() override;

    bool DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam& results) override;
    bool DoWriteAction(const I18NString& action, const IOHashParam& params) override;
    bool MayHaveRows(const I18NString& objectName, const QvULString& parentId) override;
    QvSmartPtr<IOParameter> GetObjectMapping(const QvULString& elementName) const override;
    const RemainingInfoEntry* doWriteLookUpRemainingInfo(const QvULString& id) const override;
    bool WriteObject(IOObject& object) override;
    bool CompareStored(IOObject& object) override;

    QvXMLFormatTarget* DocumentTarget() override;

    /** Who saves, and why: stands with the revisions that saves make from now on. */
    void Describe(const I18NString& author, const I18NString& message);
    /**
     * Called now and then while a save sends what it gathered: how many rows and pieces of the document have gone, and of how many; 0 as
     * long as more may be gathered. In the last call, directly before the commit, all has gone: the two are equal. What the watcher throws
     * ends the save, undone, and passes on to the caller of the save. Null: nobody watches.
     */
    void WatchSending(std::function<void(std::size_t done, std::size_t total)> watcher);
    /** Called with its revision as soon as a save stands in the store, before the context has settled on it; it may not throw. */
    void WatchSaved(std::function<void(long revision)> watcher);
    /** Loads, and what later saves are based on, are those of this revision from now on; a save then fails unless it is the newest. */
    void ReadAt(long revision);
    /** The newest revision that stands in the store now. */
    long Newest();
    /**
     * Writes the document that was saved in the revision of this context, byte for byte. False when that revision was saved without one.
     * What the store raises comes as TklRuntimeError.
     */
    bool ReadDocument(QvXMLFormatTarget& target);
    /**
     * What a save of the object would change in the revision of this context; nothing is written. The object gets ids and versions as in
     * a save. Raises TklRuntimeError when the comparison fails.
     */
    std::vector<SMRepositoryChange> Compare(IOObject& object);

    /** 0 for a project that was not yet saved. */
    long ProjectNumber() const;
    /** The revision that a save is based on; 0 for none. */
    long Revision() const;
    /** True when the last save failed because another one came first. */
    bool MovedOn() const;
    const SMRepositoryCounters& Counters() const;

  protected:
    /** For contexts that watch or refuse what passes: `project` and `head` as the repository tells them, 0 for a new project. */
    SMRepositoryHelper(const std::shared_ptr<qv::StoreBackend>& backend, std::int64_t project, std::int64_t head);

  private:
    friend class SMRepository;
    struct State;

    std::unique_ptr<State> m_state;
};
