#pragma once

#include <string>
#include <vector>

#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/persist/ioobject.h"
#include "core/repository/rowcodec.h"

namespace qv {

/**
 * Turns the attributes that an object sends for a table into cells, and refuses what the catalogue does not know. It remembers
 * which column stood at which place, for objects of a class send the same columns in the same order.
 */
class AttributeReader {
  public:
    explicit AttributeReader(const RowTable& table);

    /** What the last `Read` found. Texts are borrowed from this reader until its next `Read`. */
    RowHead head;
    std::vector<Cell> cells;

    /** An empty text, or the reason for which the attributes were refused. */
    std::string Read(const IOParameter& attributes);
    /** The same of what an object fills in, without a collection between them where the object only fills. */
    std::string Read(IOObject& object);

  private:
    class Filling;
    enum Target : int { ignored = -1, id = -2, version = -3, parentId = -4, parentVersion = -5, unknown = -6 };
    struct Step {
        QvULString column;
        int target = unknown;
    };

    int TargetOf(std::string_view column) const;
    std::string Take(std::size_t at, const QvULString& column, const IOParameter* value);
    std::string TakeCell(std::size_t at, int target, const IOParameter* value);
    std::string TakeHead(std::size_t at, int target, const IOParameter* value);
    /** A text that stays as long as this reader does not read again. */
    std::string_view Keep(std::size_t at, const I18NString& text);
    void Unset(int target);

    void Clear();
    void Grow(std::size_t columns);

    const RowTable& m_table;
    std::vector<Step> m_plan;
    std::vector<I18NString> m_texts;
    QvSmartPtr<IOHashParam> m_history;
    /** What an object that fills has sent: it may go on using a value that it handed over. */
    QvSmartVector<IOParameter> m_held;
};

}  // namespace qv
