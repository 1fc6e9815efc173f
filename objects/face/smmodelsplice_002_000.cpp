#include "objects/face/smmodelsplice_002_000.h"

#include <algorithm>

#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

namespace schema_002_000 {

namespace {

/** Sees elements with their numbers; all else of a canonical document is text. */
class NumberedHandler : public QvContentHandler {
  public:
    void endDocument() override {}
    void ignorableWhitespace(const I18NString& text) override { characters(text); }
    void processingInstruction(const I18NString&, const I18NString&) override {}
    void startDocument() override {}
    void startPrefixMapping(const I18NString&, const I18NString&) override {}
    void endPrefixMapping(const I18NString&) override {}
    void skippedEntity(const I18NString&) override {}

  protected:
    std::size_t m_count = 0;
};

/** Takes one element out of a document, as text. */
class Extractor : public NumberedHandler {
  public:
    Extractor(std::size_t element, I18NString& text) : m_element(element), m_writer(text), m_printer("UTF-8", false, m_writer, true) {}

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        if (m_count++ == m_element || m_depth > 0) {
            ++m_depth;
            ++m_elements;
            m_printer.startElement(uri, localName, qName, attrs);
        }
    }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        if (m_depth == 0) return;
        --m_depth;
        m_printer.endElement(uri, localName, qName);
    }
    void characters(const I18NString& text) override {
        if (m_depth > 0) m_printer.characters(text);
    }
    /** How many elements the one taken is, itself included. */
    std::size_t Elements() const { return m_elements; }

  private:
    std::size_t m_element, m_depth = 0, m_elements = 0;
    QvStringWriter m_writer;
    QvSAX2PrintHandler m_printer;
};

void Parse(std::string_view document, const SMXMLLimits& limits, QvContentHandler& handler) {
    QvSAX2Parser parser;
    parser.setContentHandler(&handler);
    parser.setLimits(limits);
    parser.parse(document.data(), document.size());
}

}  // namespace

/** Prints a document on, without what goes and with what comes. */
class SMSplicer : public NumberedHandler {
  public:
    SMSplicer(SMSplice& splice, const SMSplicePlan& plan, const I18NString& element, std::size_t elements, QvXMLFormatTarget& target)
        : m_splice(splice),
          m_plan(plan),
          m_element(element),
          m_elements(elements),
          m_target(target),
          m_printer("UTF-8", false, target, false) {}

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        const std::size_t number = m_count++;
        if (m_dropped > 0) return void(++m_dropped);
        if (number == m_plan.before) Insert();
        if (m_plan.without.count(number) != 0) return void(++m_dropped);
        // an element around what comes need not be made where it is there
        if (!m_open.empty() && m_open.back() == m_plan.into && !m_plan.wrappers.empty() && m_plan.wrappers.front() == qName) {
            m_plan.into = number;
            m_plan.wrappers.pop_front();
        }
        m_open.push_back(number);
        Note({false, number}, 1);
        m_printer.startElement(uri, localName, qName, attrs);
    }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        if (m_dropped > 0) return void(--m_dropped);
        const std::size_t number = m_open.back();
        m_open.pop_back();
        if (number == m_plan.into) InsertWrapped();
        m_printer.endElement(uri, localName, qName);
        if (number == m_plan.behind) Insert();
    }
    void characters(const I18NString& text) override {
        if (m_dropped == 0) m_printer.characters(text);
    }

  private:
    /** Notes the origin of elements that were just printed, unless it goes on from the last one. */
    void Note(SMSplice::Origin origin, std::size_t count) {
        const std::size_t at = m_printed;
        m_printed += count;
        if (!m_splice.m_runs.empty() && origin.number != SMSplicePlan::NONE) {
            const SMSplice::Run& last = m_splice.m_runs.back();
            if (last.origin.isFromSource == origin.isFromSource && last.origin.number != SMSplicePlan::NONE &&
                last.origin.number + (at - last.at) == origin.number)
                return;
        }
        m_splice.m_runs.push_back({at, origin});
    }
    void Insert() {
        Note({true, m_plan.element}, m_elements);
        m_target.write(m_element.utf8());
    }
    void InsertWrapped() {
        for (const I18NString& name : m_plan.wrappers) {
            Note({}, 1);
            m_printer.startElement({}, name, name, QvXMLAttributesImpl());
        }
        Insert();
        for (auto name = m_plan.wrappers.rbegin(); name != m_plan.wrappers.rend(); ++name) m_printer.endElement({}, *name, *name);
    }

    SMSplice& m_splice;
    SMSplicePlan m_plan;
    const I18NString& m_element;
    std::size_t m_elements;
    QvXMLFormatTarget& m_target;
    QvSAX2PrintHandler m_printer;
    std::vector<std::size_t> m_open;
    /** Open elements of what goes. */
    std::size_t m_dropped = 0;
    std::size_t m_printed = 0;
};

SMSplice::SMSplice(std::string_view document, std::string_view source, const SMSplicePlan& plan, const SMXMLLimits& limits) {
    I18NString element, text;
    Extractor extractor(plan.element, element);
    Parse(source, limits, extractor);
    {
        QvStringWriter writer(text);
        SMSplicer splicer(*this, plan, element, extractor.Elements(), writer);
        Parse(document, limits, splicer);
    }
    m_document = std::string(text.utf8());
}

SMSplice::Origin SMSplice::OriginOf(std::size_t number) const {
    auto run =
        std::upper_bound(m_runs.begin(), m_runs.end(), number, [](std::size_t wanted, const Run& other) { return wanted < other.at; });
    if (run == m_runs.begin()) return {};
    --run;
    Origin origin = run->origin;
    if (origin.number != SMSplicePlan::NONE) origin.number += number - run->at;
    return origin;
}

}  // namespace schema_002_000
