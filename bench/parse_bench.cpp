// The parser and the printer alone, without a model, beside a bare pass over the same bytes.
#include <string>
#include <vector>

#include "bench/support/framedocument.h"
#include "bench/support/measure.h"
#include "bench/support/xerces_floor.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

namespace {

/** Takes all events and asks for nothing. */
class NoHandler : public QvNeutralHandler {
  public:
    void startElement(const I18NString&, const I18NString&, const I18NString&, const QvXMLAttributes&) override {}
};

/** Asks for what a builder asks for: values of attributes by name, and a copy of each text. */
class AskingHandler : public NoHandler {
  public:
    void characters(const I18NString& text) override { m_text = text; }
    void startElement(const I18NString&, const I18NString&, const I18NString&, const QvXMLAttributes& attrs) override {
        if (attrs.getLength() == 0) return;
        m_locale = attrs.getValue(m_localeName);
        m_name = attrs.getValue(m_nameName);
        m_type = attrs.getValue(m_typeName);
    }

  private:
    I18NString m_text, m_locale, m_name, m_type;
    const I18NString m_localeName{"locale"}, m_nameName{"name"}, m_typeName{"type"};
};

/** Keeps the events of a document and plays them to a printer. */
class Recorder : public NoHandler {
  public:
    void characters(const I18NString& text) override { m_events.push_back({Event::characters, text, {}}); }
    void startElement(const I18NString&, const I18NString&, const I18NString& qName, const QvXMLAttributes& attrs) override {
        Event event{Event::start, qName, {}};
        for (int i = 0; i < attrs.getLength(); ++i) event.attributes.push_back(attrs.getQName(i), attrs.getValue(i));
        m_events.push_back(std::move(event));
    }
    void endElement(const I18NString&, const I18NString&, const I18NString& qName) override { m_events.push_back({Event::end, qName, {}}); }

    void Play(QvContentHandler& handler) const {
        const I18NString none;
        for (const Event& event : m_events) {
            if (event.kind == Event::start)
                handler.startElement(none, none, event.text, event.attributes);
            else if (event.kind == Event::end)
                handler.endElement(none, none, event.text);
            else
                handler.characters(event.text);
        }
    }

  private:
    struct Event {
        enum Kind { start, end, characters } kind;
        I18NString text;
        QvXMLAttributesImpl attributes;
    };
    std::vector<Event> m_events;
};

const std::string& Document() {
    static const std::string document = bench::FrameDocument::Make(10'000'000);
    return document;
}

void Parse(QvContentHandler& handler) {
    QvSAX2Parser parser;
    parser.setContentHandler(&handler);
    parser.parse(Document().data(), Document().size());
}

template <class Handler>
void BM_Parse(benchmark::State& state) {
    Handler handler;
    bench::XercesFloor floor;
    bench::Ratio ratio(state, 1.4, 1.1);
    ratio.Run([&] { floor.Parse(Document()); }, [&] { Parse(handler); });
}
BENCHMARK(BM_Parse<NoHandler>)->Name("BM_ParseForNobody")->Iterations(10)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Parse<AskingHandler>)->Name("BM_ParseForAttributesAndText")->Iterations(10)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_Print(benchmark::State& state) {
    Recorder recorder;
    Parse(recorder);
    bench::XercesFloor floor;
    bench::Ratio ratio(state, 0.4, 0.2);
    ratio.Run([&] { floor.Parse(Document()); },
              [&] {
                  QvFileWriter target("/dev/null");
                  QvSAX2PrintHandler printer("UTF-8", false, target, false);
                  recorder.Play(printer);
                  target.close();
              });
}
BENCHMARK(BM_Print)->Iterations(10)->UseManualTime()->Unit(benchmark::kMillisecond);

/** A fragment as kept XML has it: what matters is the cost of a parse as such. */
void BM_ParseFragments(benchmark::State& state) {
    static const std::string_view fragment = "<expression><refobj>[Layer].[order 17].[amount]</refobj> &gt; 100</expression>";
    constexpr int times = 20'000;
    NoHandler handler;
    bench::XercesFloor floor;
    bench::Ratio ratio(state, 1.2, 0.8);
    ratio.Run(
        [&] {
            for (int i = 0; i < times; ++i) floor.Parse(fragment);
        },
        [&] {
            QvSAX2Parser parser;
            parser.setContentHandler(&handler);
            for (int i = 0; i < times; ++i) parser.parse(fragment.data(), fragment.size());
        });
}
BENCHMARK(BM_ParseFragments)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
