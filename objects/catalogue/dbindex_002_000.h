#pragma once

#include "objects/catalogue/dbobject_002_000.h"

namespace schema_002_000 {

/** An index of a table, known to its columns by its id. */
class SM_API DBIndex : public DBObject {
  public:
    const QvULString& GetId() const { return m_id; }
    void SetId(const QvULString& id) { m_id = id; }

  private:
    QvULString m_id;
};

}  // namespace schema_002_000
