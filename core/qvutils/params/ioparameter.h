#pragma once

#include <exception>
#include <string>

#include "core/qvutils/base/qvdate.h"
#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/base/tklreferencecount.h"
#include "core/qvutils/text/qvulstring.h"

/** A value was asked for a kind that it does not hold, or a keyed collection for a key that it lacks. */
class SM_API IOParamException : public std::exception {
  public:
    explicit IOParamException(std::string what) : m_what(std::move(what)) {}
    const char* what() const noexcept override { return m_what.c_str(); }

  private:
    std::string m_what;
};

class IOParameter;

/** Walks the values of a collection, in their order. Counted; it shares the collection. */
class SM_API IOParamIterator : public TklReferenceCount {
  public:
    virtual bool atEnd() const = 0;
    virtual void advance() = 0;
    virtual QvSmartPtr<IOParameter> value() const = 0;
};

/** Walks keys and values of a keyed collection, in the order of insertion. */
class SM_API IOParamPairIterator : public IOParamIterator {
  public:
    virtual QvULString key() const = 0;
};

/**
 * Base of the values that carry a row, a list of rows or a query between the model and the persistence context. What a kind does
 * not hold, it refuses with IOParamException: there are no conversions between kinds.
 */
class SM_API IOParameter : public TklReferenceCount {
  public:
    /** kindFields: an object that gives its fields by name. */
    enum Kind : int {
        kindNone = 0,
        kindString = 1,
        kindFields = 2,
        kindLong = 4,
        kindBool = 8,
        kindDate = 0x10,
        kindArray = 0x40,
        kindHash = 0x80
    };

    virtual int GetKind() const = 0;
    virtual bool IsNull() const { return false; }
    virtual I18NString GetQvStringValue() const;
    virtual QvULString GetQvULStringValue() const;
    virtual long GetLongValue() const;
    virtual double GetDoubleValue() const;
    virtual bool GetBoolValue() const;
    virtual QvDate GetDateValue() const;

    /** The value under a key, found without regard to ASCII case; raises when there is none. */
    virtual QvSmartPtr<IOParameter> GetByName(const QvULString& key) const;
    /** True when the key is there, its value null or not. False for what is no keyed collection. */
    virtual bool HasKey(const QvULString& key) const;
    virtual QvSmartPtr<IOParameter> At(int index) const;
    virtual int Size() const;
    virtual QvSmartPtr<IOParamIterator> GetIterator() const;
    virtual QvSmartPtr<IOParamPairIterator> GetPairIterator() const;
    /** Takes a counted reference to the value. An existing key keeps its place. */
    virtual void insertOrReplace(const QvULString& key, IOParameter* value);
    virtual void push_back(IOParameter* value);
    virtual void erase(const QvULString& key);
    virtual void clear();
    /** Brings a value into the form in which it is kept; nothing for the kinds of this library. */
    virtual void AdjustValue() {}
    /** Text for a log, each line behind `indent`. */
    virtual I18NString toString(const I18NString& indent) const = 0;
};
