#include "core/qvutils/params/ioparams.h"

#include "core/qvutils/text/asciifold.h"

#include <string>

namespace {

std::uint32_t HashKey(std::string_view key) {
    return static_cast<std::uint32_t>(qv::AsciiHashIgnoreCase(key));
}

I18NString Line(const I18NString& indent, std::string_view text) {
    I18NString line(indent);
    return line.append(text);
}

I18NString ValueText(const IOParameter* value, const I18NString& indent) {
    return value ? value->toString(indent) : Line(indent, "none");
}

template <class Base, class Values>
class Walk : public Base {
  public:
    Walk(const IOParameter* owner, const Values& values) : m_owner(const_cast<IOParameter*>(owner)), m_values(values) {}
    bool atEnd() const override { return m_at >= m_values.size(); }
    void advance() override { ++m_at; }

  protected:
    const auto& Current() const {
        if (atEnd()) throw IOParamException("An iterator was used behind its end.");
        return m_values[m_at];
    }

  private:
    QvSmartPtr<IOParameter> m_owner;
    const Values& m_values;
    std::size_t m_at = 0;
};

class ArrayWalk : public Walk<IOParamIterator, std::vector<QvSmartPtr<IOParameter>>> {
  public:
    using Walk::Walk;
    QvSmartPtr<IOParameter> value() const override { return Current(); }
};

class PairWalk : public Walk<IOParamPairIterator, std::vector<IOHashParam::Pair>> {
  public:
    using Walk::Walk;
    QvSmartPtr<IOParameter> value() const override { return Current().value; }
    QvULString key() const override { return Current().key; }
};

}  // namespace

IOQvStringParam* IOQvStringParam::Null() {
    auto* const param = new IOQvStringParam;
    param->m_null = true;
    return param;
}

I18NString IOQvStringParam::toString(const I18NString& indent) const {
    if (m_null) return Line(indent, "null");
    I18NString text = Line(indent, "\"");
    text += m_value;
    return text.append("\"");
}

IOLongParam* IOLongParam::Null() {
    auto* const param = new IOLongParam;
    param->m_null = true;
    return param;
}

I18NString IOLongParam::toString(const I18NString& indent) const {
    return Line(indent, m_null ? "null" : std::to_string(m_value));
}

IOBoolParam* IOBoolParam::Null() {
    auto* const param = new IOBoolParam;
    param->m_null = true;
    return param;
}

I18NString IOBoolParam::toString(const I18NString& indent) const {
    return Line(indent, m_null ? "null" : m_value ? "true" : "false");
}

I18NString QvDateParam::toString(const I18NString& indent) const {
    return IsNull() ? Line(indent, "null") : Line(indent, m_value.ToString().utf8());
}

QvSmartPtr<IOParameter> IOArrayParam::At(int index) const {
    if (index < 0 || index >= Size())
        throw IOParamException("A sequence of " + std::to_string(Size()) + " was asked for place " + std::to_string(index) + ".");
    return m_values[static_cast<std::size_t>(index)];
}

QvSmartPtr<IOParamIterator> IOArrayParam::GetIterator() const {
    return new ArrayWalk(this, m_values);
}

I18NString IOArrayParam::toString(const I18NString& indent) const {
    const I18NString inner = indent + "  ";
    I18NString text = Line(indent, "[\n");
    for (const QvSmartPtr<IOParameter>& value : m_values) {
        text += ValueText(value.get(), inner);
        text.append("\n");
    }
    text += Line(indent, "]");
    return text;
}

std::vector<IOHashParam::Pair>::const_iterator IOHashParam::Find(const QvULString& key, std::uint32_t hash) const {
    auto pair = m_pairs.begin();
    while (pair != m_pairs.end() && !(pair->hash == hash && qv::AsciiEqualsIgnoreCase(pair->key.utf8(), key.utf8()))) ++pair;
    return pair;
}

QvSmartPtr<IOParameter> IOHashParam::GetByName(const QvULString& key) const {
    const auto pair = Find(key, HashKey(key.utf8()));
    if (pair == m_pairs.end()) throw IOParamException("There is no parameter '" + std::string(key.utf8()) + "'.");
    return pair->value;
}

bool IOHashParam::HasKey(const QvULString& key) const {
    return Find(key, HashKey(key.utf8())) != m_pairs.end();
}

QvSmartPtr<IOParamIterator> IOHashParam::GetIterator() const {
    return QvSmartPtr<IOParamIterator>(new PairWalk(this, m_pairs));
}

QvSmartPtr<IOParamPairIterator> IOHashParam::GetPairIterator() const {
    return new PairWalk(this, m_pairs);
}

void IOHashParam::insertOrReplace(const QvULString& key, IOParameter* value) {
    const std::uint32_t hash = HashKey(key.utf8());
    const auto pair = Find(key, hash);
    if (pair == m_pairs.end())
        m_pairs.push_back({key, value, hash});
    else
        m_pairs[static_cast<std::size_t>(pair - m_pairs.begin())].value = value;
}

void IOHashParam::erase(const QvULString& key) {
    if (const auto pair = Find(key, HashKey(key.utf8())); pair != m_pairs.end()) m_pairs.erase(pair);
}

I18NString IOHashParam::toString(const I18NString& indent) const {
    const I18NString inner = indent + "  ";
    I18NString text = Line(indent, "{\n");
    for (const Pair& pair : m_pairs) {
        text += Line(inner, pair.key.utf8());
        text.append(" = ");
        // a collection begins on the key's line, its own lines go deeper
        const I18NString value = ValueText(pair.value.get(), inner);
        text.append(value.utf8().substr(inner.utf8().size()));
        text.append("\n");
    }
    text += Line(indent, "}");
    return text;
}
