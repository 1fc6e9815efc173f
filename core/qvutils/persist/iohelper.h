#pragma once

#include <functional>
#include <utility>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/params/ionames.h"
#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/persist/ioobject.h"

class QvXMLFormatTarget;

/** What is known of a stored record of remaining info. */
struct SM_API RemainingInfoEntry {
    long version = 0;
    long parentVersion = 0;
    QvULString value;
};

/**
 * The persistence context. Every operation is virtual, so that a caller or a test can supply its own; this base knows nothing,
 * stores nothing and says yes: each object that is written through it needs a row.
 */
class SM_API IOHelper {
  public:
    IOHelper() = default;
    IOHelper(const IOHelper&) = delete;
    IOHelper& operator=(const IOHelper&) = delete;
    virtual ~IOHelper() = default;

    /** 3 for a MultiFileHelper. */
    virtual int GetHelperKind() const { return 0; }
    /** Clears `results`, then fills it with the rows, each a keyed collection. */
    virtual bool DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam& results);
    virtual bool DoWriteAction(const I18NString& action, const IOHashParam& params);
    /**
     * False when the context knows that a read of a kind below a parent would give no rows (records of remaining info count as the
     * kind "SM_REMAIN_INFO"): the question need then not be put together. Most objects have no children of most kinds.
     */
    virtual bool MayHaveRows(const I18NString& objectName, const QvULString& parentId);
    /** Ends the write of an object or of a record of remaining info. Neutral: it is not called for every object. */
    virtual bool EndObject() { return true; }
    /** The storage of an object kind, by its tag: see PrepareReadAttributes. Null for an unknown kind. */
    virtual QvSmartPtr<IOParameter> GetObjectMapping(const QvULString& elementName) const;
    virtual void doReadAddToMiniObjectMap(const IOObject* object);
    /** `id` is the record's id; the versions are the record's own and its owner's. */
    virtual void doReadAddToRemainingInfoMap(const QvULString& id, int version, int parentVersion, const QvULString& value);
    /** What was read, written, or stands in the store of a record; null when nothing is known. Good until the next write. */
    virtual const RemainingInfoEntry* doWriteLookUpRemainingInfo(const QvULString& id) const;
    virtual bool GetFixingLostRemainingInfo() const { return m_fixingLostRemainingInfo; }
    virtual void SetFixingLostRemainingInfo(bool fixing) { m_fixingLostRemainingInfo = fixing; }

    /**
     * Called before a whole model is saved: a context that keeps, beside the rows, the document of what is saved gives a target that
     * takes it, good until the save has ended. Null from one that does not.
     */
    virtual QvXMLFormatTarget* DocumentTarget() { return nullptr; }

    /** Carry out IOObject::write and IOObject::compare_write. This base gives a missing id and the version 1, and sends the row. */
    virtual bool WriteObject(IOObject& object);
    virtual bool CompareStored(IOObject& object);

    /**
     * Called for each object that is about to be written, or was made from its row: to tell how far an operation has come, or to end
     * it by an exception, which passes on to the caller of the operation.
     */
    void SetVisitor(std::function<void(const IOObject&)> visitor) { m_visitor = std::move(visitor); }
    void Visit(const IOObject& object) const {
        if (m_visitor) m_visitor(object);
    }

  private:
    std::function<void(const IOObject&)> m_visitor;
    bool m_fixingLostRemainingInfo = false;
};

/** The maps that a caller may have filled with what a model holds. */
class SM_API MapId2MiniObject {
  public:
    struct MiniObject {
        int version = 0;
        QvULString parentId;
        QvULString diffable;
    };
    virtual ~MapId2MiniObject() = default;
    virtual void Clear();
    virtual void AddObject(const IOObject* object);
    /** Null when the id is not known. */
    const MiniObject* Find(const QvULString& id) const;
    std::size_t Size() const { return m_objects.size(); }

  private:
    std::map<QvULString, MiniObject> m_objects;
};

class SM_API MapId2RemainingInfo {
  public:
    virtual ~MapId2RemainingInfo() = default;
    virtual void Clear();
    virtual void AddObject(const QvULString& id, int version, int parentVersion, const QvULString& value);
    const RemainingInfoEntry* Find(const QvULString& id) const;
    std::size_t Size() const { return m_entries.size(); }

  private:
    std::map<QvULString, RemainingInfoEntry> m_entries;
};
