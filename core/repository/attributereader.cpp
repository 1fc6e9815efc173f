#include "core/repository/attributereader.h"

#include "core/qvutils/text/asciifold.h"
#include "core/repository/celldate.h"

namespace qv {

namespace {

constexpr CellKind HEAD_TEXT = CellKind::text, HEAD_NUMBER = CellKind::number;

int ParameterKind(CellKind kind) {
    switch (kind) {
    case CellKind::number: return IOParameter::kindLong;
    case CellKind::flag: return IOParameter::kindBool;
    case CellKind::date: return IOParameter::kindDate;
    case CellKind::text: break;
    }
    return IOParameter::kindString;
}

std::string_view NameOfParameterKind(int kind) {
    for (const CellKind cell : {CellKind::text, CellKind::number, CellKind::flag, CellKind::date})
        if (ParameterKind(cell) == kind) return NameOf(cell);
    return "collection";
}

std::string WrongKind(CellKind kind, const IOParameter& value) {
    return "takes a " + std::string(NameOf(kind)) + ", not a " + std::string(NameOfParameterKind(value.GetKind()));
}

/** Stores end a text at its first NUL, or refuse it in words of their own. */
std::string FaultOf(std::string_view text) {
    return text.find('\0') == std::string_view::npos ? "" : "cannot hold the character NUL";
}

}  // namespace

AttributeReader::AttributeReader(const RowTable& table) : cells(table.columns.size()), m_table(table), m_history(new IOHashParam) {}

int AttributeReader::TargetOf(std::string_view name) const {
    const CatalogueTable& catalogue = *m_table.catalogue;
    const auto is = [name](std::string_view other) { return !other.empty() && AsciiEqualsIgnoreCase(name, other); };
    const bool record = &m_table == &Schema::Get().remainInfo();
    if (record || &m_table == &Schema::Get().langText()) {  // these are sent by keys, not by columns
        if (is(record ? "name" : "xml_element_id")) return id;
        if (is("xml_element_version")) return version;
        if (is("xml_element_parent_id")) return parentId;
        if (is("xml_element_parent_version")) return parentVersion;
    } else {
        if (is(catalogue.id) || is("ID")) return id;
        if (is(catalogue.version) || is("VERSION")) return version;
        if (is(catalogue.parentId) || is("PARENT_ID")) return m_table.hasParent ? parentId : ignored;
        if (is(catalogue.parentVersion) || is("PARENT_VERSION")) return m_table.hasParent ? parentVersion : ignored;
    }
    for (std::size_t cell = 0; cell < m_table.columns.size(); ++cell) {
        const CatalogueColumn& column = *m_table.columns[cell];
        if (is(record ? column.key : column.name)) return static_cast<int>(cell);
        if (column.name == "LOCALE" && is("xml_element_locale")) return static_cast<int>(cell);
    }
    return unknown;
}

std::string AttributeReader::Read(const IOParameter& attributes) {
    const auto* const hash = dynamic_cast<const IOHashParam*>(&attributes);
    if (!hash) return "was sent something else than a keyed collection";
    const std::vector<IOHashParam::Pair>& pairs = hash->pairs();
    Clear();
    Grow(pairs.size());
    for (std::size_t at = 0; at < pairs.size(); ++at)
        if (std::string fault = Take(at, pairs[at].key, pairs[at].value.get()); !fault.empty()) return fault;
    if (head.id.empty()) return "was sent a row without an id";
    return {};
}

/** Stands in for the collection that an object fills, and takes each value as it comes. What else may be asked of a collection it refuses.
 */
class AttributeReader::Filling : public IOParameter {
  public:
    explicit Filling(AttributeReader& reader) : m_reader(reader) { addReference(); }
    ~Filling() override { m_reader.m_held.clear(); }

    int GetKind() const override { return kindHash; }
    void insertOrReplace(const QvULString& key, IOParameter* value) override {
        QvSmartPtr<IOParameter> held(value);  // before there may be no memory for its place
        m_reader.m_held.push_back(std::move(held));
        if (!fault.empty()) return;
        m_reader.Grow(m_at + 1);
        fault = m_reader.Take(m_at, key, value);
        ++m_at;
    }
    bool HasKey(const QvULString&) const override { return Refuse(), false; }
    int Size() const override { return Refuse(), 0; }
    I18NString toString(const I18NString&) const override { return Refuse(), I18NString(); }

    std::string fault;

  private:
    [[noreturn]] static void Refuse() { throw IOParamException("A row that is being filled cannot be read."); }
    AttributeReader& m_reader;
    std::size_t m_at = 0;
};

std::string AttributeReader::Read(IOObject& object) {
    try {
        Clear();
        Filling filling(*this);
        m_history->clear();
        object.getAttributes(filling, *m_history);
        if (filling.fault.empty() && head.id.empty()) return "was sent a row without an id";
        return filling.fault;
    } catch (const IOParamException&) {
        // it does more than fill
        const QvSmartPtr<IOHashParam> row = new IOHashParam, historyRow = new IOHashParam;
        object.getAttributes(*row, *historyRow);
        return Read(*row);
    }
}

void AttributeReader::Clear() {
    head = {};
    std::fill(cells.begin(), cells.end(), Cell{});
}

void AttributeReader::Grow(std::size_t columns) {
    if (m_plan.size() >= columns) return;
    m_texts.resize(columns);
    m_plan.resize(columns);  // last: it is what tells how many there are
}

void AttributeReader::Unset(int target) {
    switch (target) {
    case id: head.id = {}; break;
    case parentId: head.parentId = {}; break;
    case version: head.version = 0; break;
    case parentVersion: head.parentVersion = 0; break;
    default: cells[static_cast<std::size_t>(target)] = {}; break;
    }
}

std::string AttributeReader::Take(std::size_t at, const QvULString& column, const IOParameter* value) {
    Step& step = m_plan[at];
    if (!step.column.shared().same(column.shared()) || step.target == unknown) {
        step.column = column;
        step.target = TargetOf(column.utf8());
    }
    if (step.target == unknown) return "has no column '" + std::string(column.utf8()) + "'";
    if (step.target == ignored) return {};
    if (!value || value->IsNull()) {
        Unset(step.target);  // a column may come twice, and then the later value counts
        return {};
    }
    std::string fault = step.target < 0 ? TakeHead(at, step.target, value) : TakeCell(at, step.target, value);
    return fault.empty() ? fault : "column '" + std::string(column.utf8()) + "' " + fault;
}

std::string AttributeReader::TakeHead(std::size_t at, int target, const IOParameter* value) {
    const bool text = target == id || target == parentId;
    const CellKind kind = text ? HEAD_TEXT : HEAD_NUMBER;
    if (value->GetKind() != ParameterKind(kind)) return WrongKind(kind, *value);
    if (!text) {
        (target == version ? head.version : head.parentVersion) = value->GetLongValue();
        return {};
    }
    const std::string_view kept = Keep(at, value->GetQvStringValue());
    (target == id ? head.id : head.parentId) = kept;
    return FaultOf(kept);
}

std::string AttributeReader::TakeCell(std::size_t at, int target, const IOParameter* value) {
    const CellKind kind = m_table.columns[static_cast<std::size_t>(target)]->kind;
    if (value->GetKind() != ParameterKind(kind)) return WrongKind(kind, *value);
    Cell& cell = cells[static_cast<std::size_t>(target)];
    switch (kind) {
    case CellKind::text: cell = Cell::Text(Keep(at, value->GetQvStringValue())); return FaultOf(cell.view);
    case CellKind::number: cell = Cell::Number(value->GetLongValue()); break;
    case CellKind::flag: cell = Cell::Number(value->GetBoolValue() ? 1 : 0); break;
    case CellKind::date: cell = CellOf(value->GetDateValue()); break;
    }
    return {};
}

std::string_view AttributeReader::Keep(std::size_t at, const I18NString& text) {
    m_texts[at] = text;
    return m_texts[at].utf8();
}

}  // namespace qv
