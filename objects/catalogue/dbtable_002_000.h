#pragma once

#include "objects/base/smnameindex_002_000.h"
#include "objects/catalogue/dbcolumn_002_000.h"

namespace schema_002_000 {

/** A table of the warehouse with its columns in order. A column may stand in several tables, and more than once in one. */
class SM_API DBTable : public DBObject {
  public:
    DBTable() = default;
    explicit DBTable(const I18NString& name) : DBObject(name) {}
    DBTable(const DBTable&) = delete;
    DBTable& operator=(const DBTable&) = delete;
    ~DBTable() override;

    const QvULString& GetId() const { return m_id; }
    void SetId(const QvULString& id) { m_id = id; }

    /** Puts the column, which the table then shares, behind the others. Null is ignored. */
    void AddColumn(DBColumn* column);
    /** Takes the column out where it stands first. Nothing happens when the table does not list it. */
    void RemoveColumn(DBColumn* column);
    const QvSmartVector<DBColumn>& GetColumns() const { return m_columns; }
    /** The first column with the id, or null; borrowed. It keeps an index of ids and so takes constant time. */
    DBColumn* FindColumnById(const QvULString& id) const;

  private:
    friend class DBColumn;

    /** A column of this table is about to change its id. */
    void NoteIdChange(const DBColumn& column, const QvULString& to);
    void Unlist(DBColumn& column);

    QvULString m_id;
    QvSmartVector<DBColumn> m_columns;
    SMNameEpoch m_epoch;
    mutable SMNameIndex m_index;
};

}  // namespace schema_002_000
