#pragma once

#include "core/qvutils/params/ioparams.h"
#include "objects/base/smenum_002_000.h"
#include "objects/base/smlog_002_000.h"
#include "objects/base/smsmallenum_002_000.h"

namespace schema_002_000 {

class SMXMLObject2;

/** The table of a class and its four key columns; an empty name stands for a column that the table does not have. */
struct SMTable {
    SMTable(const char* table, const char* id, const char* version, const char* parentId, const char* parentVersion)
        : name(I18NString::Immortal(table)),
          idColumn(I18NString::Immortal(id)),
          versionColumn(I18NString::Immortal(version)),
          parentIdColumn(I18NString::Immortal(parentId)),
          parentVersionColumn(I18NString::Immortal(parentVersion)) {}

    I18NString name, idColumn, versionColumn, parentIdColumn, parentVersionColumn;
};

/** Declares, and defines from the class's table, the four column getters that each stored class has. */
#define SM_DECLARE_KEY_COLUMNS                       \
    I18NString GetVersionCol() const override;       \
    I18NString GetIdCol() const override;            \
    I18NString GetParentVersionCol() const override; \
    I18NString GetParentIdCol() const override;
#define SM_DEFINE_KEY_COLUMNS(Class, TABLE)         \
    I18NString Class::GetVersionCol() const {       \
        return TABLE.versionColumn;                 \
    }                                               \
    I18NString Class::GetIdCol() const {            \
        return TABLE.idColumn;                      \
    }                                               \
    I18NString Class::GetParentVersionCol() const { \
        return TABLE.parentVersionColumn;           \
    }                                               \
    I18NString Class::GetParentIdCol() const {      \
        return TABLE.parentIdColumn;                \
    }

/** The name of a column, made once at load: rows are filled by the million. */
inline QvULString SMColumn(const char* name) {
    return QvULString::Immortal(name);
}

/** A collection on the stack, with a reference of its own: whoever shares it for a while (an iterator does) does not delete it. */
template <class T>
class SMLocal : public T {
  public:
    SMLocal() { this->addReference(); }
};

/** Fills a row, one column a line. A column that is left out is NULL in the new row. */
class SMRowWriter {
  public:
    explicit SMRowWriter(IOParameter& attrs) : m_attrs(attrs) {}
    void Text(const QvULString& column, const I18NString& value) { m_attrs.insertOrReplace(column, new IOQvStringParam(value)); }
    void TextIfSet(const QvULString& column, const I18NString& value) {
        if (!value.empty()) Text(column, value);
    }
    void Number(const QvULString& column, long value) { m_attrs.insertOrReplace(column, new IOLongParam(value)); }
    void NumberIfSet(const QvULString& column, long value) {
        if (value >= 0) Number(column, value);
    }
    void Flag(const QvULString& column, bool value) { m_attrs.insertOrReplace(column, new IOBoolParam(value)); }
    void FlagIfTrue(const QvULString& column, bool value) {
        if (value) Flag(column, true);
    }
    void Date(const QvULString& column, const QvDate& value) { m_attrs.insertOrReplace(column, new QvDateParam(value)); }
    void DateIfSet(const QvULString& column, const QvDate& value) {
        if (value.IsSet()) Date(column, value);
    }
    /** The inside of the kept element; the empty text when there is none. */
    void InnerXml(const QvULString& column, const SMXMLObject2* kept);
    void InnerXmlIfSet(const QvULString& column, const SMXMLObject2* kept) {
        if (kept) InnerXml(column, kept);
    }
    /** The kept element with its tags; the empty text when there is none. */
    void WholeXml(const QvULString& column, const SMXMLObject2* kept);
    void WholeXmlIfSet(const QvULString& column, const SMXMLObject2* kept) {
        if (kept) WholeXml(column, kept);
    }

  private:
    IOParameter& m_attrs;
};

/** Bare reads: a key that the row lacks raises IOParamException; NULL reads as "", 0, false or an unset date. */
inline I18NString TextOf(const IOParameter& row, const QvULString& key) {
    return row.GetByName(key)->GetQvStringValue();
}
inline long NumberOf(const IOParameter& row, const QvULString& key) {
    return row.GetByName(key)->GetLongValue();
}
inline bool FlagOf(const IOParameter& row, const QvULString& key) {
    return row.GetByName(key)->GetBoolValue();
}

/** A bare read of an enumeration's text. */
template <class E>
typename E::Enum EnumAt(const IOParameter& row, const QvULString& key) {
    return EnumOf<E>(TextOf(row, key));
}
/**
 * A bare read of an element that is to be kept; null for an empty text. A column holds the inside of the element or, as some
 * stores have it, the whole of it: a text that begins with the start tag is taken as it stands, any other one is wrapped.
 */
QvSmartPtr<SMXMLObject2> KeptXmlOf(const IOParameter& row, const QvULString& tag);
/** The same from a column that holds the whole element. */
QvSmartPtr<SMXMLObject2> WholeXmlOf(const IOParameter& row, const QvULString& tag);

/** The value under a key that the row may lack or hold as NULL; null then. */
QvSmartPtr<IOParameter> IfPresent(const IOParameter& row, const QvULString& key);

/** Reads that leave the field as it is when the row lacks the key or holds NULL. */
void ReadIfPresent(const IOParameter& row, const QvULString& key, I18NString& field);
void ReadIfPresent(const IOParameter& row, const QvULString& key, QvULString& field);
void ReadIfPresent(const IOParameter& row, const QvULString& key, int& field);
void ReadIfPresent(const IOParameter& row, const QvULString& key, long& field);
void ReadIfPresent(const IOParameter& row, const QvULString& key, bool& field);
template <class E>
void ReadIfPresent(const IOParameter& row, const QvULString& key, SMSmallEnum<E>& field) {
    if (const auto value = IfPresent(row, key)) field = EnumOf<E>(value->GetQvStringValue());
}
/** As KeptXmlOf; an empty text leaves the field too. */
void ReadKeptXmlIfPresent(const IOParameter& row, const QvULString& tag, QvSmartPtr<SMXMLObject2>& field);
template <class E>
void ReadEnumIfPresent(const IOParameter& row, const QvULString& key, typename E::Enum& field) {
    if (const auto value = IfPresent(row, key)) field = EnumOf<E>(value->GetQvStringValue());
}

/** Logs a row that could not be read whole; what has been read stays. */
void LogReadFailure(const IOParameter& row, const SMLogWords& words, const std::exception& failure);

/** Runs `fill`; a missing or ill-typed parameter is logged in the class's words and leaves the rest of the fields as they are. */
template <class Fill>
void FillGuarded(const IOParameter& row, const SMLogWords& words, Fill fill) {
    try {
        fill();
    } catch (const IOParamException& failure) {
        LogReadFailure(row, words, failure);
    }
}

/** A new hash under `key` of `params`; `params` owns it. */
IOHashParam* AddHash(IOHashParam& params, const QvULString& key);

}  // namespace schema_002_000
