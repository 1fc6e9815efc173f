#pragma once

#include "core/qvutils/params/ioparameter.h"
#include "objects/catalogue/edbtype_002_000.h"

namespace schema_002_000 {

/**
 * An object of the warehouse that a model maps to. It is a value of the host too, so that it can travel as a parameter. Columns
 * have it as a virtual base: no static_cast leads down from it, and a class derived from a column initialises it.
 */
class SM_API DBObject : public IOParameter {
  public:
    DBObject() = default;
    explicit DBObject(const I18NString& name) : m_name(name) {}

    const I18NString& GetName() const { return m_name; }
    virtual void setName(const I18NString& name) { m_name = name; }
    /** The name in the database, where that differs from the name in the model. */
    const I18NString& GetDBName() const { return m_dbName; }
    void SetDBName(const I18NString& name) { m_dbName = name; }
    const I18NString& GetSchema() const { return m_schema; }
    void SetSchema(const I18NString& schema) { m_schema = schema; }
    /** Kept for the caller; nothing here reads it. */
    const I18NString& GetDescription() const { return m_description; }
    void SetDescription(const I18NString& description) { m_description = description; }
    EDB_TYPE getType() const { return m_type; }
    void setType(EDB_TYPE type) { m_type = type; }

    /** What the object knows beyond the properties that all share: nothing here. */
    virtual I18NString print() const { return I18NString(); }

    int GetKind() const override { return kindNone; }
    I18NString toString(const I18NString& indent) const override;

    /** The kind with this exact name; unknown for any other text, the names of the two kinds below among them. */
    static EDB_TYPE String2DT(const I18NString& text);
    /** The name of the kind, "null" for a number without a name. The text lives to the end of the process. */
    static const I18NString& DT2String(EDB_TYPE type);

    /** Kinds that have a name only. */
    static const I18NString HIERARCHY;
    static const I18NString HIERARCHY_VIEW;

  private:
    I18NString m_name;
    I18NString m_dbName;
    I18NString m_schema;
    I18NString m_description;
    EDB_TYPE m_type = EDB_TYPE::unknown;
};

}  // namespace schema_002_000
