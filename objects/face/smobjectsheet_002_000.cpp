#include "objects/face/smobjectsheet_002_000.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/base/smobjectbuilder_002_000.h"
#include "objects/face/smguard_002_000.h"

namespace schema_002_000 {

namespace {

using Names = std::set<std::string, std::less<>>;

/** Fills a sheet from the events by which an object writes itself. */
class SheetReader : public QvXmlBuildBase {
  public:
    /** Both are borrowed. `apart`: the elements of children that have sheets of their own. */
    SheetReader(SMObjectSheet& sheet, const Names& apart) : m_sheet(sheet), m_apart(apart) {}

    /** An element that the object writes as bytes. */
    void ReadKept(std::string_view xml) {
        if (m_skipped > 0) return;
        const std::size_t open = m_open.size(), fields = m_sheet.fields.size();
        m_kept = true;
        try {
            QvSAX2Parser parser;
            parser.setContentHandler(this);
            parser.parse(xml.data(), xml.size());
        } catch (const TklRuntimeError&) {
            m_open.resize(open);
            m_inline = 0;
            m_sheet.fields.resize(fields);
            m_sheet.fields.push_back({PathOf("unreadable"), std::string(xml)});
        }
        m_kept = false;
    }

    void realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes& attrs) override {
        const std::string name(localName.utf8());
        if (m_skipped > 0 || (!m_kept && !m_open.empty() && m_apart.count(name))) {
            ++m_skipped;
        } else if (m_inline > 0) {
            ++m_inline;
        } else {
            Open(name, attrs);
            if (m_kept && (name == "expression" || name == "sql")) m_inline = 1;
        }
    }
    void realCharacters(const I18NString& text) override {
        if (m_skipped == 0 && !m_open.empty()) m_open.back().text += text.utf8();
    }
    void realEndElement(const I18NString&, const I18NString&, const I18NString&) override {
        if (m_skipped > 0) {
            --m_skipped;
        } else if (m_inline > 1) {
            --m_inline;
        } else {
            m_inline = 0;
            const Element element = std::move(m_open.back());
            m_open.pop_back();
            if (!element.hasChildren && !element.text.empty()) Take(element);
        }
    }

  private:
    struct Element {
        std::string path, text;
        /** Of a text in a language, and of a property; empty for other elements. */
        std::string locale, name, type;
        bool hasChildren = false;
    };

    std::string PathOf(const std::string& name) const { return m_open.size() > 1 ? m_open.back().path + "/" + name : name; }
    void Open(const std::string& name, const QvXMLAttributes& attrs) {
        Element element;
        if (!m_open.empty()) {
            element.path = PathOf(name);
            m_open.back().hasChildren = true;
        }
        for (int i = 0; i < attrs.getLength(); ++i) {
            const std::string attribute(attrs.getQName(i).utf8()), value(attrs.getValue(i).utf8());
            if (m_open.size() == 1 && attribute == "locale")
                element.locale = value;
            else if (m_open.size() == 1 && name == "property")
                (attribute == "name" ? element.name : element.type) = value;
            else if (!value.empty())
                m_sheet.fields.push_back({element.path + "@" + attribute, value});
        }
        m_open.push_back(std::move(element));
    }
    void Take(const Element& element) {
        if (!element.locale.empty())
            m_sheet.texts.push_back({element.path, element.locale, element.text});
        else if (element.name.empty())
            m_sheet.fields.push_back({element.path, element.text});
        else if (element.type != "hidden" || (element.name != "id" && element.name != "version"))
            m_sheet.properties.push_back({element.name, element.type, element.text});
    }

    SMObjectSheet& m_sheet;
    const Names& m_apart;
    std::vector<Element> m_open;
    /** Depth within an element that is left out, and within one whose inside is one text. */
    int m_skipped = 0, m_inline = 0;
    bool m_kept = false;
};

/** Takes the elements that an object writes as bytes, one a call. */
class KeptTarget : public QvXMLFormatTarget {
  public:
    explicit KeptTarget(SheetReader& reader) : m_reader(reader) {}

  protected:
    void overflow(const char* bytes, std::size_t length) override { m_reader.ReadKept({bytes, length}); }

  private:
    SheetReader& m_reader;
};

SMObjectLine LineOf(const SMObjectBase& object) {
    SMObjectLine line = SMDescribeObject(object);
    if (line.objectId.empty()) line.objectId = SMAddressOf(object);
    return line;
}

bool IsInside(const SMObjectBase& inner, const SMObjectBase& outer) {
    const SMObjectBase* object = &inner;
    while (object && object != &outer) object = object->GetParentSMObj();
    return object != nullptr;
}

void FindRelatives(const SMReferenceIndex& index, const SMObjectBase& object, SMObjectSheet& sheet) {
    for (const SMObjectBase* container = object.GetParentSMObj(); container; container = container->GetParentSMObj())
        sheet.containers.push_back(LineOf(*container));
    std::reverse(sheet.containers.begin(), sheet.containers.end());
    for (const SMObjectBase* other : index.GetObjects())
        if (other->parent == &object && (other->IsFolder() || !SMAddressOf(*other).empty())) sheet.children.push_back(LineOf(*other));
}

void FindReferences(const SMReferenceIndex& index, const SMObjectBase& object, SMObjectSheet& sheet) {
    const std::string& address = sheet.object.objectId;
    for (const SMObjectBase* other : index.GetObjects()) {
        const bool isOwn = IsInside(*other, object);
        SMForEachReference(*other, [&](std::string_view field, std::string_view text) {
            const bool refersHere = !address.empty() && text == address;
            if (!isOwn && !refersHere) return;
            const SMReferencePlace place = SMPlaceOfReference(*other, field);
            if (place.holder == &object) sheet.references.push_back({place.field, std::string(text), index.Find(text) != nullptr});
            if (refersHere) sheet.referrers.push_back({LineOf(*place.holder), place.field});
        });
    }
}

void ReadElement(const SMObjectBase& object, SMObjectSheet& sheet) {
    Names apart;
    for (const SMObjectLine& child : sheet.children) apart.insert(child.kind);
    SheetReader reader(sheet, apart);
    KeptTarget target(reader);
    object.WriteXMLElement(&reader, target);
}

}  // namespace

SMObjectSheet SMSheetOf(const SMReferenceIndex& index, const SMObjectBase& object) {
    SMQuietSink quiet;
    const SMLogScope scope(quiet);
    SMObjectSheet sheet;
    sheet.object = LineOf(object);
    sheet.version = object.GetVersionNo();
    FindRelatives(index, object, sheet);
    FindReferences(index, object, sheet);
    ReadElement(object, sheet);
    return sheet;
}

}  // namespace schema_002_000
