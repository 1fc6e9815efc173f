#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/qvutils/base/qvdate.h"
#include "core/repository/smrepositoryhelper.h"

namespace qv {
class StoreBackend;
}

/** What a repository tells of one of its projects. */
struct SM_API SMRepositoryProject {
    /** Known to the repository alone; it never changes. */
    long number = 0;
    QvULString id;
    I18NString name;
    /** Of the last save. */
    long revision = 0;
    QvDate savedAt;
};

/**
 * A store of model projects. All operations raise TklRuntimeError, with the name of the store, for what cannot be opened, is no
 * repository, or has a format that this build does not read.
 */
class SM_API SMRepository {
  public:
    enum Mode { existing, createIfAbsent };

    /**
     * `location` is a file name, "sqlite:" and a file name, or the address of a schema in a server, "postgresql://...". Words of
     * other kinds of stores are refused; what stands behind the word is not repeated in the message, for it may hold a password.
     */
    explicit SMRepository(const std::string& location, Mode mode = existing);
    /** A store of the caller's. */
    explicit SMRepository(std::shared_ptr<qv::StoreBackend> backend, Mode mode = existing);
    ~SMRepository();
    SMRepository(const SMRepository&) = delete;
    SMRepository& operator=(const SMRepository&) = delete;

    /** By number, which is the order in which they came. */
    std::vector<SMRepositoryProject> Projects();
    /** The revisions of a project, by number. Pruning takes the oldest away. */
    std::vector<SMRepositoryRevision> Revisions(long project);
    /** What is different in revision `to` from what stood in `from`; 0 stands for nothing at all. */
    std::vector<SMRepositoryChange> Changes(long project, long from, long to);
    /** How many objects these are; from nothing at all it is much cheaper. */
    SMRepositoryChangeCounts CountChanges(long project, long from, long to);
    /**
     * Where to look for an address that is not there any more: the revisions, the newest first, in which one made of these names, its last
     * one behind, can have stood for the last time. Empty when nothing was ever called by the last one.
     */
    std::vector<long> LastRevisionsOf(long project, const std::vector<std::string>& names);
    /** What is wrong with the rows of a revision by themselves, a text each: rows that readers would not find, or find twice. */
    std::vector<std::string> Faults(long project, long revision);
    /**
     * The revisions in which an object, known by its id, came, changed or went; or a part of it: what hangs below it and cannot be named by
     * an address of its own (a definition, a determinant, a prompt, a role, a folder, an entry of a map).
     */
    std::vector<SMRepositoryRevision> RevisionsOf(long project, const QvULString& id);
    /**
     * The values of an object as it stands, then those of its parts, "definition.SQL" or "determinant [Key].CANGROUP", each with the
     * revision that set it.
     */
    std::vector<SMRepositoryBlame> Blame(long project, const QvULString& id);
    /**
     * Takes away what only revisions older than the newest `keep` hold, at least one of which stays. The one operation that forgets.
     * `watch`, if there is one, is called now and then, the last time, with true, directly before the commit; what it throws ends the
     * removal, undone, and passes on.
     */
    SMRepositoryPruned Prune(long project, long keep, const std::function<void(bool committing)>& watch = {});
    /** A context for a project that is not yet there; its first save makes it. */
    std::unique_ptr<SMRepositoryHelper> NewProject();
    std::unique_ptr<SMRepositoryHelper> OpenProject(long number);
    /** By id or else by name. Raises also when several projects fit. */
    std::unique_ptr<SMRepositoryHelper> OpenProject(const QvULString& idOrName);
    const std::string& Name() const { return m_name; }

  private:
    template <class Ask>
    auto AskHistory(long project, Ask&& ask);

    std::shared_ptr<qv::StoreBackend> m_backend;
    std::string m_name;
};
