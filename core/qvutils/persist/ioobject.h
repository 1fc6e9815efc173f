#pragma once

#include "core/qvutils/base/qvdate.h"
#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/base/qvulcollection.h"
#include "core/qvutils/base/tklreferencecount.h"
#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/text/qvulstring.h"

class IOHelper;
class IOObject;

/** Takes the texts of an object one by one, and owns none of them. */
class SM_API IOTextVisitor {
  public:
    virtual void Visit(const I18NString& element, const QvULString& locale, const QvULString& text) = 0;

  protected:
    IOTextVisitor() = default;
    IOTextVisitor(const IOTextVisitor&) = default;
    IOTextVisitor& operator=(const IOTextVisitor&) = default;
    ~IOTextVisitor() = default;
};

/** Base of what a persistence context stores. */
class SM_API IOObject : public TklReferenceCount {
  public:
    /** `parent` is borrowed and may be null. The flag is reserved and always false. */
    IOObject(IOObject* parent, bool reserved);

    virtual void constructFromIOParameter(const IOParameter& row) = 0;
    virtual bool read(IOHelper& helper) = 0;
    virtual const QvULString& GetId() const { return id; }
    virtual void SetId(const QvULString& newId) { id = newId; }
    virtual int GetVersionNo() const { return versionNo; }
    virtual void SetVersionNo(int version) { versionNo = version; }
    virtual const QvDate& GetLastChangedDate() const { return lastChanged; }
    virtual void SetLastChangedDate(const QvDate& date) { lastChanged = date; }
    /**
     * Fills the row of this object, by column name. The base puts id, version, parent id and parent version under the four column
     * getters' names (where a getter is empty: "ID", "VERSION", "PARENT_ID", "PARENT_VERSION") and "LASTCHANGED".
     */
    virtual void getAttributes(IOParameter& attrs, IOParameter& historyAttrs);
    virtual I18NString GetVersionCol() const = 0;
    virtual I18NString GetIdCol() const = 0;
    virtual I18NString GetParentVersionCol() const = 0;
    virtual I18NString GetParentIdCol() const = 0;
    /**
     * Fills the query for the rows of the kind `objectName` below this object: OBJECT = the kind, TABLE_NAME empty,
     * HISTORY_ATTRIBUTES empty, CLAUSES = { XML_ELEMENT_PARENT_ID, XML_ELEMENT_PARENT_VERSION } of this object; `parentId`, when not
     * null, stands in for its id.
     */
    virtual void getInputParams(IOHashParam& params, I18NString objectName, const QvULString* parentId);
    virtual int GetModelType() = 0;
    /** 1 for model objects. */
    virtual int BasicObjType() const { return 0; }
    /** A text that names the object in messages. */
    virtual void getPath(I18NString& out) const = 0;
    virtual void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const = 0;
    /** A text that tells states of the object apart; empty: the whole row has to be compared. */
    virtual void AssignDiffableString(QvULString& out) const;
    virtual QvSmartVector<IOObject> GetSubIOObjects();
    /** Inserts a row and writes what hangs below. Called by the context alone. */
    virtual bool write_no_seq_inc(IOHelper& helper) = 0;
    /** Writes what hangs below, without a row. Called by the context alone, or by write_no_seq_inc. */
    virtual bool write_next(IOHelper& helper) = 0;
    /** Visits the texts that write_no_seq_inc sends besides the row: those in other locales than the row's own. */
    virtual void VisitTexts(IOTextVisitor& visitor) const;
    /** True when the object needs a row: none is stored, or the stored one differs in anything but versions. */
    virtual bool compare_write(IOHelper& helper);

    /**
     * The one entry by which an object is written, by its parent or by a caller. The context gives an object without an id one,
     * decides whether a row is needed and calls write_no_seq_inc or write_next. False: a step failed and was logged.
     */
    bool write(IOHelper& helper);

    // in this order for size: the first stands in the padding behind the reference count
    int versionNo = 0;
    QvULString id;
    /** Borrowed; null for a root. */
    IOObject* parent;
    QvDate lastChanged;
    int displayOrder = 0;
    /** A number that the host keeps for the object; the library only copies it. */
    int hostSequence = 0;
};
