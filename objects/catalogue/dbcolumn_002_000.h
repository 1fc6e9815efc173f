#pragma once

#include <map>

#include "core/qvutils/base/tkldbtypes.h"
#include "core/qvutils/text/smallmap.h"
#include "objects/catalogue/dbobject_002_000.h"

namespace schema_002_000 {

class DBForeignKey;
class DBIndex;
class DBTable;

/** A column of a table of the warehouse. As a parameter it gives its fields by name. */
class SM_API DBColumn : public virtual DBObject {
  public:
    using ForeignKeys = qv::SmallSortedMap<I18NString, DBForeignKey*>;
    using Indexes = qv::SmallSortedMap<I18NString, DBIndex*>;

    DBColumn() = default;
    explicit DBColumn(const I18NString& name) : DBObject(name) {}
    DBColumn(const I18NString& name, SqlColType dataType, int size, int precision, int scale, bool allowNulls)
        : DBObject(name), m_dataType(dataType), m_size(size), m_precision(precision), m_scale(scale), m_allowNulls(allowNulls) {}
    /** A copy stands in the same keys and indexes, though these know nothing of it, and in no table. */
    DBColumn(const DBColumn&) = default;
    DBColumn& operator=(const DBColumn&) = delete;

    virtual int getObjType() const { return 4; }
    /** Compares with another column and logs every difference. False when there is one, and, without an event, for null. */
    virtual bool validate(const DBColumn* other) const;
    I18NString print() const override;
    /**
     * The field under its exact name as a text, made anew; null for a name that is no field. "wh_id" is the stored id, also for a
     * kind that has a fixed one. Raises IOParamException only.
     */
    QvSmartPtr<IOParameter> GetByName(const QvULString& key) const override;
    virtual int GetSupportedCapabilities() const { return kindFields; }
    int GetKind() const override { return GetSupportedCapabilities(); }

    SqlColType GetDataType() const { return m_dataType; }
    void SetDataType(SqlColType type) { m_dataType = type; }
    int GetSize() const { return m_size; }
    void SetSize(int size) { m_size = size; }
    int GetPrecision() const { return m_precision; }
    void SetPrecision(int precision) { m_precision = precision; }
    int GetScale() const { return m_scale; }
    void SetScale(int scale) { m_scale = scale; }
    bool GetAllowNulls() const { return m_allowNulls; }
    void SetAllowNulls(bool allow) { m_allowNulls = allow; }
    const QvULString& GetId() const { return m_id; }
    /** Tells the tables that list the column, which find columns by id. */
    void SetId(const QvULString& id);
    const QvULString& GetGroupId() const { return m_groupId; }
    void SetGroupId(const QvULString& id) { m_groupId = id; }

    /** The item of the warehouse that the column is: the stored id if there is one, else the fixed id of the column's kind, else empty. */
    QvULString GetWarehouseItemId() const;
    void SetWarehouseItemId(const QvULString& id) { m_warehouseItemId = id; }
    bool IsExternalWarehouseItemId() const { return !m_warehouseItemId.empty(); }
    /**
     * Gives the column a new id, which is returned, and enters old id -> new id in the map, unless the old one is there. If the map
     * holds the warehouse item id, a fixed one too, the mapped value becomes the stored one.
     */
    QvULString RegenerateIds(std::map<QvULString, QvULString>& idMap);

    /** Keys and indexes are borrowed and stand under the id that they had when they were set; of equal ids the first stays. Null is
     * ignored. */
    void setInFKey(DBForeignKey* key);
    void unsetInFKey(DBForeignKey* key);
    const ForeignKeys& GetFKeys() const { return m_fkeys; }
    void setInIndex(DBIndex* index);
    void unsetInIndex(DBIndex* index);
    const Indexes& GetIndexes() const { return m_indexes; }
    bool hasIndex() const { return !m_indexes.empty(); }

    /**
     * Equal for a comparison of tables: sizes do not count, nor do types when this column has a date or a time, of which databases
     * have different ones. So it is not symmetric.
     */
    bool operator==(const DBColumn& other) const;

  private:
    friend class DBTable;

    /** The tables that list the column, borrowed, and how often. A copy is a new column and stands in none. */
    struct Listings {
        Listings() = default;
        Listings(const Listings&) noexcept {}
        Listings& operator=(const Listings&) = delete;
        qv::SmallSortedMap<DBTable*, int> tables;
    };

    SqlColType m_dataType = SqlColType::unknown;
    int m_size = 0;
    int m_precision = 0;
    int m_scale = 0;
    bool m_allowNulls = true;
    QvULString m_id;
    QvULString m_warehouseItemId;
    QvULString m_groupId;
    ForeignKeys m_fkeys;
    Indexes m_indexes;
    Listings m_listings;
};

}  // namespace schema_002_000
