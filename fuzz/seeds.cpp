// smodel-fuzz-seeds OUT DOCUMENT... [-- WHOLE...]: cuts documents into small inputs of every kind for each target, OUT/seeds/TARGET/NUMBER,
// takes WHOLE ones as they are, and writes the words of the model as OUT/words.dict.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr std::size_t SMALL = 60, LARGE = 3'000;

/** An element as text, with what tells its shape: the names in it. */
struct Element {
    std::string name, start, inside, text;
    std::set<std::string> names;
    std::vector<std::unique_ptr<Element>> children;

    std::string Whole() const { return start + inside + "</" + name + ">"; }
};

std::string EscapedText(std::string_view text) {
    I18NString escaped;
    QvStringWriter writer(escaped);
    QvSAX2PrintHandler("UTF-8", false, writer, true).characters(I18NString(text));
    return std::string(escaped.utf8());
}

std::string StartTag(const I18NString& name, const QvXMLAttributes& attrs) {
    I18NString tag;
    QvStringWriter writer(tag);
    QvSAX2PrintHandler printer("UTF-8", false, writer, true);
    printer.startElement(I18NString(), name, name, attrs);
    return std::string(tag.utf8());
}

class ElementReader : public QvNeutralHandler {
  public:
    std::unique_ptr<Element> root;

    void startElement(const I18NString&, const I18NString&, const I18NString& qName, const QvXMLAttributes& attrs) override {
        auto element = std::make_unique<Element>();
        element->name = std::string(qName.utf8());
        element->start = StartTag(qName, attrs);
        element->names.insert(element->name);
        for (int i = 0; i < attrs.getLength(); ++i) element->names.insert("@" + std::string(attrs.getQName(i).utf8()));
        m_open.push_back(std::move(element));
    }
    void characters(const I18NString& text) override {
        m_open.back()->text += text.utf8();
        if (text.utf8().find_first_not_of(" \n\t") != std::string_view::npos) m_open.back()->inside += EscapedText(text.utf8());
    }
    void endElement(const I18NString&, const I18NString&, const I18NString&) override {
        std::unique_ptr<Element> element = std::move(m_open.back());
        m_open.pop_back();
        if (m_open.empty()) {
            root = std::move(element);
            return;
        }
        Element& parent = *m_open.back();
        parent.inside += element->Whole();
        parent.names.insert(element->names.begin(), element->names.end());
        parent.children.push_back(std::move(element));
    }

  private:
    std::vector<std::unique_ptr<Element>> m_open;
};

/** The inputs of each target, one for each shape. */
class Seeds {
  public:
    void Add(const char* target, const std::string& shape, const std::string& input) {
        if (m_shapes.emplace(target, shape).second) m_inputs[target].push_back(input);
    }
    void Write(const fs::path& out) const {
        for (const auto& [target, inputs] : m_inputs) {
            const fs::path directory = out / "seeds" / target;
            fs::remove_all(directory);
            fs::create_directories(directory);
            for (std::size_t at = 0; at < inputs.size(); ++at)
                std::ofstream(directory / std::to_string(at), std::ios::binary) << inputs[at];
            std::printf("%s: %zu seeds\n", target.c_str(), inputs.size());
        }
    }

  private:
    std::set<std::pair<std::string, std::string>> m_shapes;
    std::map<std::string, std::vector<std::string>> m_inputs;
};

std::string ShapeOf(const std::set<std::string>& names) {
    std::string shape;
    for (const std::string& name : names) shape += name + " ";
    return shape;
}

/** A text with one letter for all letters, one digit for all digits. */
std::string ShapeOf(std::string_view text) {
    std::string shape;
    for (const char c : text) {
        const char kind = c >= '0' && c <= '9' ? '9' : (c | 0x20) >= 'a' && (c | 0x20) <= 'z' ? 'a' : c;
        if (shape.empty() || shape.back() != kind) shape += kind;
    }
    return shape;
}

std::string Document(const std::string& content) {
    return "<project id=\"p\"><name>p</name><locales><locale>en</locale></locales><defaultLocale>en</defaultLocale>" + content +
           "</project>";
}

std::string Namespace(const std::string& content) {
    return "<namespace><name locale=\"en\">n</name>" + content + "</namespace>";
}

/** The letter by which the target "remaininginfo" knows a kind. */
char LetterOf(const std::string& kind) {
    static const std::map<std::string, char> LETTERS{
        {"project", 'p'},  {"namespace", 'n'},   {"querySubject", 'q'}, {"queryItem", 'i'},         {"definition", 'd'},
        {"filter", 'f'},   {"calculation", 'c'}, {"parameterMap", 'm'}, {"package", 'k'},           {"securityView", 's'},
        {"function", 'u'}, {"dataSource", 't'},  {"level", 'l'},        {"scopeRelationship", 'r'}, {"dimension", 'x'}};
    const auto found = LETTERS.find(kind);
    return found == LETTERS.end() ? '\0' : found->second;
}

const Element* ChildOf(const Element& element, std::string_view name) {
    for (const auto& child : element.children)
        if (child->name == name) return child.get();
    return nullptr;
}

void CutTexts(const Element& element, Seeds& seeds) {
    if (element.text.size() > 200 || !element.children.empty()) return;
    const std::string shape = ShapeOf(element.text);
    seeds.Add("values", shape, element.text + "\0yyyy-MM-dd"s);
    if (element.text.find('[') == std::string::npos) return;
    seeds.Add("objectid", shape, element.text);
    const std::string name = element.text.substr(1, element.text.find(']') - 1);
    seeds.Add("rename", shape, element.text + '\0' + name + "\0new name\0"s + "other\0"s + name + '\0');
}

void CutObjects(const Element& element, Seeds& seeds) {
    const std::string whole = element.Whole(), shape = ShapeOf(element.names);
    static const std::map<std::string, std::string> SECTIONS{
        {"dataSource", "dataSources"}, {"parameterMap", "parameterMaps"}, {"securityView", "securityViews"}, {"package", "packages"}};
    const auto section = SECTIONS.find(element.name);
    const std::string inside =
        section == SECTIONS.end() ? Namespace(whole) : "<" + section->second + ">" + whole + "</" + section->second + ">";
    const std::string document = Document(element.name == "namespace" ? whole : inside);
    seeds.Add("document", shape, document);
    seeds.Add("accounting", shape, document);
    seeds.Add("storing", shape, document);
    seeds.Add("files", shape, document);
}

void Cut(const Element& element, Seeds& seeds) {
    const std::size_t size = element.start.size() + element.inside.size();
    const std::string shape = ShapeOf(element.names);
    if (size >= SMALL && size <= LARGE) {
        seeds.Add("keptxml", shape, element.Whole());
        if (ChildOf(element, "name")) CutObjects(element, seeds);
    }
    if (const char letter = LetterOf(element.name)) {
        for (const auto& child : element.children)
            if (child->inside.size() < LARGE)
                seeds.Add("remaininginfo", element.name + " " + ShapeOf(child->names), letter + child->name + '\0' + child->Whole() + '\0');
    }
    if (element.name == "determinant") {
        const Element *key = ChildOf(element, "key"), *attributes = ChildOf(element, "attributes");
        seeds.Add("determinant", shape, (key ? key->Whole() : "") + '\0' + (attributes ? attributes->Whole() : ""));
    }
    CutTexts(element, seeds);
    for (const auto& child : element.children) Cut(*child, seeds);
}

/** Edits of rows, for each reader one that changes cells all over the rows. */
void AddRows(Seeds& seeds) {
    for (const char reader : "ghbtocf"s)
        for (int row = 0; row < 256; row += 5)
            for (const char* what : {"i7", "n", "d", "r", "t<a>b</a>", "ci"}) {
                const std::string edit = {'\0', static_cast<char>(row), static_cast<char>(row % 23), what[0]};
                seeds.Add("rows", reader + edit, reader + edit + (what + 1) + '\0');
            }
}

std::string ReadWhole(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/** A main document with all separate files beside it that are small. */
void AddFiles(const fs::path& main, Seeds& seeds) {
    std::string input = ReadWhole(main) + '\0';
    for (const auto& entry : fs::directory_iterator(main.parent_path())) {
        const std::string extension = entry.path().extension().string();
        if ((extension == ".qvf" || extension == ".qva") && entry.file_size() <= LARGE)
            input += entry.path().filename().string() + '\0' + ReadWhole(entry.path()) + '\0';
    }
    seeds.Add("files", "main", input);
    seeds.Add("files", "one file",
              Document("<smnamespacefile id=\"r\" name=\"n\" filename=\"n.qvf\" filepath=\"\"></smnamespacefile>") + "\0n.qvf\0"s +
                  Namespace("<filter><name locale=\"en\">f</name><expression>[n].[f]</expression></filter>") + '\0');
}

/** A document as it is, which need not be one. */
void AddWhole(const std::string& name, const std::string& input, Seeds& seeds) {
    for (const char* target : {"document", "accounting", "files"}) seeds.Add(target, "whole " + name, input);
}

/** What is written in ways that no model document is, and read all the same. */
void AddForms(Seeds& seeds) {
    const std::string entities = "<!DOCTYPE project [<!ENTITY e 'text &#38; more'><!ENTITY f '&e; and &e;'><!-- c --><?pi data?>]>";
    AddWhole("entities", entities + Document(Namespace("<description>a &f; b</description><property name=\"&e;\">&e;</property>")), seeds);
    AddWhole("lost entities", entities + Document(Namespace("<stray a=\"&e;\">&f;</stray>&e;")), seeds);
    AddWhole("sections", Document(Namespace("<description>a<![CDATA[<b>&]]>c</description><stray><![CDATA[d]]></stray>")), seeds);
    AddWhole("list of attributes", "<!DOCTYPE project [<!ELEMENT a ANY><!ATTLIST project x CDATA 'y'>]>" + Document(Namespace("")), seeds);
    AddWhole("latin", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + Document(Namespace("<stray>\xE9</stray>")), seeds);
}

void WriteWords(const fs::path& path) {
    std::set<std::string> words;
    const auto add = [&](std::string_view text) {
        if (!text.empty()) words.emplace(text);
    };
#define SM_TAG(NUMBER, IDENTIFIER, TEXT) add(TEXT);
#define SM_TAG_UNUSED(IDENTIFIER)
#include "objects/base/smenum_xmltag_list.inc"
#define SM_ENUM_BEGIN(CLASS)
#define SM_ENUM_VALUE(NUMBER, IDENTIFIER, TEXT) add(TEXT);
#define SM_ENUM_END(CLASS)
#include "objects/base/smenums_list.inc"
    for (const char* word :
         {"<![CDATA[", "]]>", "<!DOCTYPE", "<!ENTITY", "&amp;",  "&lt;", "&#xD;",    "&#x0;", "<?",        "-->",       "<!--", "].[",
          "[",         "]",   "locale=",   "type=",    "hidden", "id=",  "version=", "name=", "filename=", "filepath=", "true", "false"})
        add(word);
    std::ofstream file(path);
    for (const std::string& word : words) file << '"' << word << "\"\n";
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fprintf(stderr, "usage: smodel-fuzz-seeds OUT DOCUMENT... [-- WHOLE...]\n");
        return 2;
    }
    Seeds seeds;
    AddRows(seeds);
    AddForms(seeds);
    bool isWhole = false;
    for (int i = 2; i < count; ++i) {
        const fs::path document = arguments[i];
        if (isWhole) {
            AddWhole(document.filename().string(), ReadWhole(document), seeds);
            continue;
        }
        if (document == "--") {
            isWhole = true;
            continue;
        }
        ElementReader reader;
        QvSAX2Parser parser;
        parser.setContentHandler(&reader);
        try {
            parser.parse(I18NString(std::string_view(document.string())));
        } catch (const TklRuntimeError& error) {
            std::fprintf(stderr, "%s\n", error.what());
            return 2;
        }
        Cut(*reader.root, seeds);
        if (document.filename() == "main.xml") AddFiles(document, seeds);
    }
    seeds.Write(arguments[1]);
    WriteWords(fs::path(arguments[1]) / "words.dict");
}
