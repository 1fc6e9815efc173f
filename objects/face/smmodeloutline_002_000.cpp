#include "objects/face/smmodeloutline_002_000.h"

#include <algorithm>

#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/face/smguard_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

namespace schema_002_000 {

namespace {

constexpr std::size_t ELEMENTS_PER_TICK = 4'096;

/** Builds the project, and notes at each element whether a new object has begun with it. */
class OutlineBuilder : public SMProjectBuilder {
  public:
    OutlineBuilder(SMProject2* project, std::vector<SMModelOutline::Element>& elements, const SMControl& control)
        : SMProjectBuilder(project), m_elements(elements), m_ticker(control, SMProgress::elements, ELEMENTS_PER_TICK) {}

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        m_ticker.Add(1);
        SMProjectBuilder::startElement(uri, localName, qName, attrs);
        const IOObject* const around = m_open.empty() ? nullptr : m_open.back().object;
        const IOObject* const object = InnermostObject();
        m_open.push_back({m_count++, object, qName});
        if (object != around) Keep(static_cast<const SMObjectBase*>(object));
    }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        SMProjectBuilder::endElement(uri, localName, qName);
        if (m_open.back().place != SMModelOutline::NONE) m_elements[m_open.back().place].end = m_count;
        m_open.pop_back();
    }

  private:
    struct Open {
        std::size_t number;
        const IOObject* object;
        I18NString name;
        std::size_t place = SMModelOutline::NONE;
    };

    /** Keeps the innermost open element, and those around it that are not kept yet. */
    void Keep(const SMObjectBase* object) {
        std::size_t parent = SMModelOutline::NONE;
        for (Open& open : m_open) {
            if (open.place == SMModelOutline::NONE) {
                open.place = m_elements.size();
                m_elements.push_back({open.number, open.number + 1, parent, open.name, nullptr});
            }
            parent = open.place;
        }
        // the builder had it to change, and so may whoever asks for the outline
        m_elements[parent].object = const_cast<SMObjectBase*>(object);
    }

    std::vector<SMModelOutline::Element>& m_elements;
    SMTicker m_ticker;
    std::size_t m_count = 0;
    std::vector<Open> m_open;
};

}  // namespace

SMModelOutline::SMModelOutline(std::string_view document, const SMControl& control, const SMXMLLimits& limits)
    : m_document(document), m_limits(limits), m_project(new SMProject2) {
    m_project->m_partFiles.SetRoot(".");
    OutlineBuilder builder(m_project, m_elements, control);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    parser.setLimits(limits);
    parser.parse(document.data(), document.size());
    IndexIds();
}

std::size_t SMModelOutline::PlaceOf(std::size_t number) const {
    const auto found = std::lower_bound(m_elements.begin(), m_elements.end(), number,
                                        [](const Element& element, std::size_t wanted) { return element.number < wanted; });
    if (found == m_elements.end() || found->number != number) return NONE;
    return static_cast<std::size_t>(found - m_elements.begin());
}

void SMModelOutline::IndexIds() {
    m_byId.clear();
    for (std::size_t place = 0; place < m_elements.size(); ++place)
        if (m_elements[place].object && !m_elements[place].object->GetId().empty())
            m_byId.emplace(m_elements[place].object->GetId().utf8(), place);
}

std::size_t SMModelOutline::Find(std::string_view id) const {
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? NONE : found->second;
}

std::size_t SMModelOutline::Around(std::size_t place) const {
    do place = m_elements[place].parent;
    while (place != NONE && (!m_elements[place].object || m_elements[place].object->GetId().empty()));
    return place;
}

}  // namespace schema_002_000
