#include "tests/support/facts.h"

#include <vector>

#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/repository/catalogue.h"
#include "tests/support/documents.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;

namespace smtest {

namespace {

class Collector {
  public:
    Facts facts;

    void Note(const std::string& kind, const std::string& field, const std::string& value) {
        if (!value.empty()) ++facts[{kind + "." + field, value}];
    }

    void Property(const std::string& kind, const std::string& name, const std::string& type, const std::string& value) {
        const bool isField =
            name == "id" || name == "version" || name == "qvref" || name == "qvdbref" || name == "qvqs_type" || name == "physicalName";
        if (isField)
            Note(kind, name, value);
        else
            Note(kind, "property", name + "|" + type + "|" + value);
    }
};

/** Whether an element of this tag is an object. */
bool IsKind(const std::string& tag) {
    static const std::set<std::string> kinds = [] {
        std::set<std::string> tags;
        const ProjectPtr project = NewProject();
        for (const ModelClass& entry : ModelClasses())
            tags.insert(Str(SMEnum_xmltag::GetInstance()->_enum2string(entry.make(*project)->GetSMType())));
        return tags;
    }();
    return kinds.count(tag) > 0;
}

const qv::CatalogueTable* TableOf(const SMObjectBase& object, const std::string& tag) {
    if (const qv::CatalogueKind* kind = qv::FindKind(tag); kind && object.GetIdCol().empty()) return qv::FindTable(kind->table);
    for (const qv::CatalogueTable& table : qv::CatalogueTables())
        if (table.id == object.GetIdCol().utf8() && table.version == object.GetVersionCol().utf8()) return &table;
    return nullptr;
}

/** The face of the document: texts and attributes of each element, below the innermost element that is an object. */
class DocumentFacts : public QvNeutralHandler {
  public:
    explicit DocumentFacts(Collector& collector) : m_collector(collector) {}

    void startElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes& attrs) override {
        Element element;
        element.tag = Str(localName);
        const bool isKind = IsKind(element.tag);
        element.kind = isKind || m_open.empty() ? element.tag : m_open.back().kind;
        element.path = isKind || m_open.empty() ? "" : Below(m_open.back().path, element.tag);
        for (int i = 0; i < attrs.getLength(); ++i) {
            const std::string name = Str(attrs.getQName(i)), value = Str(attrs.getValue(i));
            if (element.tag == "property" || name == "locale")
                element.attributes[name] = value;
            else
                m_collector.Note(element.kind, Below(element.path, name), value);
        }
        if (!m_open.empty()) m_open.back().isLeaf = false;
        m_open.push_back(std::move(element));
    }
    void characters(const I18NString& text) override { m_open.back().text += Str(text); }
    void endElement(const I18NString&, const I18NString&, const I18NString&) override {
        Element element = std::move(m_open.back());
        m_open.pop_back();
        if (!element.isLeaf) return;
        if (element.tag == "property")
            m_collector.Property(element.kind, element.attributes["name"], element.attributes["type"], element.text);
        else if (!element.attributes["locale"].empty() && element.attributes["locale"] != "en")
            m_collector.Note(element.kind, element.path + "(other)", element.attributes["locale"] + "|" + element.text);
        else if (!element.path.empty())
            m_collector.Note(element.kind, element.path, element.text);
    }

  private:
    struct Element {
        std::string tag, kind, path, text;
        std::map<std::string, std::string> attributes;
        bool isLeaf = true;
    };
    static std::string Below(const std::string& path, const std::string& name) { return path.empty() ? name : path + "." + name; }

    Collector& m_collector;
    std::vector<Element> m_open;
};

std::string Plain(const IOParameter& value) {
    if (value.IsNull()) return "";
    switch (value.GetKind()) {
    case IOParameter::kindLong: return std::to_string(value.GetLongValue());
    case IOParameter::kindBool: return value.GetBoolValue() ? "true" : "false";
    case IOParameter::kindDate: return Str(value.GetDateValue().ToString());
    default: return Str(value.GetQvStringValue());
    }
}

/** The face of the rows, under the keys by which rows are read. */
void RowFacts(Collector& collector, SMObjectBase& object, const std::string& kind) {
    const qv::CatalogueTable* table = TableOf(object, kind);
    if (!table) return;
    const QvSmartPtr<IOHashParam> attrs = new IOHashParam, history = new IOHashParam;
    object.getAttributes(*attrs, *history);
    for (const auto& pair : attrs->pairs())
        if (const qv::CatalogueColumn* column = qv::FindColumn(*table, std::string(pair.key.utf8())); column && !column->key.empty())
            collector.Note(kind, std::string(column->key), Plain(*pair.value));
}

/** The face of memory, as far as all objects have it, and where the object stands. */
void MemoryFacts(Collector& collector, SMObjectBase& object, const std::string& place) {
    const std::string kind = Str(SMEnum_xmltag::GetInstance()->_enum2string(object.GetSMType()));
    collector.Note(kind, "id", Str(object.GetId()));
    collector.Note(kind, "version", std::to_string(object.GetVersionNo()));
    collector.Note(kind, "lastChanged", Str(object.GetLastChangedDate().ToString()));
    collector.Note(kind, "place", place);
    DocumentFacts properties(collector);
    ParseInto(properties, "<" + kind + ">" + Str(object.WritePropertiesToString()) + "</" + kind + ">");
    RowFacts(collector, object, kind);

    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    object.getChildObjects(children);
    int number = 0;
    for (const auto& child : children)
        MemoryFacts(collector, static_cast<SMObjectBase&>(*child), Str(object.GetId()) + " " + std::to_string(++number));
}

}  // namespace

Facts FactsOf(SMObjectBase& object) {
    Collector collector;
    MemoryFacts(collector, object, "");
    DocumentFacts document(collector);
    if (auto* project = dynamic_cast<SMProject2*>(&object)) {
        ParseInto(document, WriteProject(*project));
        collector.facts.erase({"project.xmlns", Str(GetModelNamespaceUri())});
    } else {
        ParseInto(document, WriteElement(object));
    }
    return collector.facts;
}

std::set<std::string> DifferingFields(const Facts& a, const Facts& b) {
    std::set<std::string> fields;
    for (const auto& [fact, count] : a)
        if (const auto other = b.find(fact); other == b.end() || other->second != count) fields.insert(fact.first);
    for (const auto& [fact, count] : b)
        if (!a.count(fact)) fields.insert(fact.first);
    return fields;
}

}  // namespace smtest
