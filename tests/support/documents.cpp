#include "tests/support/documents.h"

#include <fstream>
#include <ostream>
#include <sstream>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/qvutils/xml/qvsax2parser.h"

using namespace schema_002_000;

void PrintTo(const I18NString& text, std::ostream* out) {
    *out << '"' << text.utf8() << '"';
}
void PrintTo(const QvULString& text, std::ostream* out) {
    *out << '"' << text.utf8() << '"';
}
void PrintTo(const QvDate& date, std::ostream* out) {
    *out << '"' << date.ToString().utf8() << '"';
}

namespace smtest {

namespace {

/** Hides the element around a fragment from the builder that the fragment is for. */
class InsideReader : public QvNeutralHandler {
  public:
    explicit InsideReader(QvContentHandler& inner) : m_inner(inner) {}
    void characters(const I18NString& text) override { m_inner.characters(text); }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        if (--m_depth > 0) m_inner.endElement(uri, localName, qName);
    }
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        if (m_depth++ > 0) m_inner.startElement(uri, localName, qName, attrs);
    }

  private:
    QvContentHandler& m_inner;
    int m_depth = 0;
};

std::string Section(const std::string& tag, const std::string& attributes, const std::string& content) {
    return "<" + tag + attributes + ">" + content + "</" + tag + ">";
}

std::string Indented(const std::string& xml) {
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, true);
    handler.SetIndent(true);
    try {
        ParseInto(handler, xml);
    } catch (const TklRuntimeError& error) {
        return xml + "\n(" + error.what() + ")";
    }
    return text.c_str();
}

}  // namespace

std::string Document::Text() const {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project id=\"" + id + "\" xmlns=\"" + Str(GetModelNamespaceUri()) +
                       "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:schemaLocation=\"" + Str(GetModelSchemaLocation()) +
                       "\">" + Section("name", "", name) + "<locales>";
    for (const std::string& locale : locales) text += Section("locale", "", locale);
    return text + "</locales>" + Section("defaultLocale", "", defaultLocale) + root +
           Section("dataSources", dataSourcesAttributes, dataSources) + Section("parameterMaps", "", parameterMaps) +
           Section("securityViews", "", securityViews) + Section("packages", "", packages) + "</project>";
}

std::string SectionElement(std::string_view tag, std::string_view name, std::string_view content) {
    const std::string element(tag);
    return "<" + element + "><name locale=\"en\">" + std::string(name) + "</name><lastChanged></lastChanged>" +
           "<property name=\"id\" type=\"hidden\"></property><property name=\"version\" type=\"hidden\">0</property>" +
           std::string(content) + "</" + element + ">";
}

std::string NamespaceElement(std::string_view name, std::string_view content) {
    return SectionElement("namespace", name, content);
}

std::string FolderElement(std::string_view name, std::string_view content) {
    return SectionElement("folder", name, content);
}

ProjectPtr NewProject() {
    ProjectPtr project = new SMProject2();
    project->SetDefaultLocale("en");
    return project;
}

ProjectPtr NewProject(const char* rootName) {
    ProjectPtr project = NewProject();
    auto* root = new SMNamespace2(project, project);
    root->SetNameDontTouchNamespaceMap(rootName);
    project->SetRootNamespace(root);
    return project;
}

void ParseInto(QvContentHandler& handler, const std::string& document) {
    QvSAX2Parser parser;
    parser.setContentHandler(&handler);
    parser.parse(document.data(), document.size());
}

void ParseInside(QvContentHandler& builder, const std::string& elements) {
    InsideReader reader(builder);
    ParseInto(reader, "<inside>" + elements + "</inside>");
}

ProjectPtr ParseProject(const std::string& document) {
    ProjectPtr project = new SMProject2();
    SMProjectBuilder builder(project);
    ParseInto(builder, document);
    return project;
}

std::string WriteProject(const SMProject2& project, IOHelper* helper) {
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, false);
    project.WriteXMLDocument(helper, &handler, writer);
    return text.c_str();
}

std::string WriteElement(const SMObjectBase& object, bool indent) {
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, true);
    handler.SetIndent(indent);
    object.WriteXMLElement(nullptr, &handler, writer);
    return text.c_str();
}

testing::AssertionResult SameXml(const std::string& expected, const std::string& actual) {
    if (expected == actual) return testing::AssertionSuccess();
    std::istringstream expectedLines(Indented(expected)), actualLines(Indented(actual));
    std::string expectedLine, actualLine;
    for (int line = 1;; ++line) {
        const bool more = static_cast<bool>(std::getline(expectedLines, expectedLine));
        if (!std::getline(actualLines, actualLine)) actualLine = "(end)";
        if (!more) expectedLine = "(end)";
        if (expectedLine != actualLine)
            return testing::AssertionFailure() << "line " << line << " expected " << expectedLine << "\nbut is " << actualLine
                                               << "\nexpected: " << expected << "\nactual:   " << actual;
        if (!more) break;
    }
    return testing::AssertionFailure() << "expected: " << expected << "\nactual:   " << actual;
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace smtest
