#pragma once

#include <cstdint>
#include <vector>

#include "core/qvutils/params/ioparameter.h"

/** Kinds of values. A null value is present, answers IsNull() and gives "", 0, false or an unset date. */

class SM_API IOQvStringParam : public IOParameter {
  public:
    IOQvStringParam() noexcept : m_null(false) {}
    explicit IOQvStringParam(const I18NString& value) : m_value(value), m_null(false) {}
    static IOQvStringParam* Null();
    int GetKind() const override { return kindString; }
    bool IsNull() const override { return m_null; }
    I18NString GetQvStringValue() const override { return m_value; }
    QvULString GetQvULStringValue() const override { return m_value; }
    I18NString toString(const I18NString& indent) const override;

  private:
    I18NString m_value;
    bool m_null;
};

class SM_API IOLongParam : public IOParameter {
  public:
    explicit IOLongParam(long value = 0) noexcept : m_value(value), m_null(false) {}
    static IOLongParam* Null();
    int GetKind() const override { return kindLong; }
    bool IsNull() const override { return m_null; }
    long GetLongValue() const override { return m_value; }
    double GetDoubleValue() const override { return static_cast<double>(m_value); }
    I18NString toString(const I18NString& indent) const override;

  private:
    long m_value;
    bool m_null;
};

class SM_API IOBoolParam : public IOParameter {
  public:
    explicit IOBoolParam(bool value = false) noexcept : m_value(value), m_null(false) {}
    static IOBoolParam* Null();
    int GetKind() const override { return kindBool; }
    bool IsNull() const override { return m_null; }
    bool GetBoolValue() const override { return m_value; }
    I18NString toString(const I18NString& indent) const override;

  private:
    bool m_value;
    bool m_null;
};

/** An unset date is a null value. */
class SM_API QvDateParam : public IOParameter {
  public:
    explicit QvDateParam(const QvDate& value = QvDate(false)) noexcept : m_value(value) {}
    int GetKind() const override { return kindDate; }
    bool IsNull() const override { return !m_value.IsSet(); }
    QvDate GetDateValue() const override { return m_value; }
    I18NString toString(const I18NString& indent) const override;

  private:
    QvDate m_value;
};

/** A sequence. */
class SM_API IOArrayParam : public IOParameter {
  public:
    int GetKind() const override { return kindArray; }
    QvSmartPtr<IOParameter> At(int index) const override;
    int Size() const override { return static_cast<int>(m_values.size()); }
    QvSmartPtr<IOParamIterator> GetIterator() const override;
    void push_back(IOParameter* value) override { m_values.emplace_back(value); }
    void clear() override { m_values.clear(); }
    I18NString toString(const I18NString& indent) const override;

  private:
    std::vector<QvSmartPtr<IOParameter>> m_values;
};

/** A keyed collection in the order of insertion. Keys are found without regard to ASCII case: columns are upper case, tags mixed. */
class SM_API IOHashParam : public IOParameter {
  public:
    int GetKind() const override { return kindHash; }
    QvSmartPtr<IOParameter> GetByName(const QvULString& key) const override;
    bool HasKey(const QvULString& key) const override;
    int Size() const override { return static_cast<int>(m_pairs.size()); }
    QvSmartPtr<IOParamIterator> GetIterator() const override;
    QvSmartPtr<IOParamPairIterator> GetPairIterator() const override;
    void insertOrReplace(const QvULString& key, IOParameter* value) override;
    void erase(const QvULString& key) override;
    void clear() override { m_pairs.clear(); }
    I18NString toString(const I18NString& indent) const override;

    struct Pair {
        QvULString key;
        QvSmartPtr<IOParameter> value;
        /** Of the key, blind to case. */
        std::uint32_t hash;
    };
    const std::vector<Pair>& pairs() const noexcept { return m_pairs; }

  private:
    std::vector<Pair>::const_iterator Find(const QvULString& key, std::uint32_t hash) const;
    std::vector<Pair> m_pairs;
};
