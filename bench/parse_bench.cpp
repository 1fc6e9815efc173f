#include <cstdint>

#include "bench/support/sample_document.h"
#include "bench/support/xerces_floor.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

#include <benchmark/benchmark.h>

namespace {

/** Takes all events and asks for nothing. */
class NoHandler : public QvContentHandler {
  public:
    void characters(const I18NString&) override {}
    void endDocument() override {}
    void endElement(const I18NString&, const I18NString&, const I18NString&) override {}
    void ignorableWhitespace(const I18NString&) override {}
    void processingInstruction(const I18NString&, const I18NString&) override {}
    void startDocument() override {}
    void startElement(const I18NString&, const I18NString&, const I18NString&, const QvXMLAttributes&) override {}
    void startPrefixMapping(const I18NString&, const I18NString&) override {}
    void endPrefixMapping(const I18NString&) override {}
    void skippedEntity(const I18NString&) override {}
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

const std::string& Document() {
    static const std::string DOCUMENT = bench::SampleDocument(10 << 20);
    return DOCUMENT;
}

void CountBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(Document().size()));
}

void ParseFloor(benchmark::State& state) {
    bench::XercesFloor floor;
    for (auto _ : state) floor.Parse(Document());
    CountBytes(state);
}

template <class Handler>
void Parse(benchmark::State& state) {
    Handler handler;
    for (auto _ : state) {
        QvSAX2Parser parser;
        parser.setContentHandler(&handler);
        parser.parse(Document().data(), Document().size());
    }
    CountBytes(state);
}

void ParseAndPrint(benchmark::State& state) {
    for (auto _ : state) {
        QvFileWriter target("/dev/null");
        QvSAX2PrintHandler printer("UTF-8", false, target, false);
        QvSAX2Parser parser;
        parser.setContentHandler(&printer);
        parser.parse(Document().data(), Document().size());
        target.close();
    }
    CountBytes(state);
}

/** Prints the mix of tags and texts of the document without reading it. */
void Print(benchmark::State& state) {
    const I18NString none, element("property"), name("name"), type("type"), id("id"), hidden("hidden");
    const I18NString text("[Database Layer].[order line 17].[amount] > 100");
    QvXMLAttributesImpl noAttributes, attributes;
    attributes.push_back(name, id);
    attributes.push_back(type, hidden);
    const std::size_t elements = 50'000;
    for (auto _ : state) {
        QvFileWriter target("/dev/null");
        QvSAX2PrintHandler printer("UTF-8", false, target, false);
        for (std::size_t i = 0; i < elements; ++i) {
            printer.startElement(none, element, element, i % 4 == 0 ? attributes : noAttributes);
            printer.characters(text);
            printer.endElement(none, element, element);
        }
        target.close();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * elements) * 75);
}

BENCHMARK(ParseFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(Parse<NoHandler>)->Name("ParseEmptyHandler")->Unit(benchmark::kMillisecond);
BENCHMARK(Parse<AskingHandler>)->Name("ParseAskingHandler")->Unit(benchmark::kMillisecond);
BENCHMARK(ParseAndPrint)->Unit(benchmark::kMillisecond);
BENCHMARK(Print)->Unit(benchmark::kMillisecond);

}  // namespace
