#include <string>
#include <vector>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/base/smxmlobject2_002_000.h"
#include "objects/face/smkeptreferences_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

using namespace schema_002_000;

namespace {

/** Keeps the root element of a document, as the builders of the model keep an element of theirs. */
class KeepingBuilder : public QvXmlBuildBase {
  public:
    explicit KeepingBuilder(SMXMLObject2* kept) : m_kept(kept) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override {
        PushWithStart(new SMXMLObjectBuilder(m_kept), uri, localName, qName, attrs);
    }
    void realCharacters(const I18NString&) override {}
    void realEndElement(const I18NString&, const I18NString&, const I18NString&) override {}

  private:
    SMXMLObject2* m_kept;
};

QvSmartPtr<SMXMLObject2> Keep(std::string_view xml) {
    const QvSmartPtr<SMXMLObject2> kept = new SMXMLObject2("kept");
    KeepingBuilder builder(kept);
    QvSAX2Parser parser;
    parser.setContentHandler(&builder);
    try {
        parser.parse(xml.data(), xml.size());
    } catch (const TklRuntimeError&) {
        return {};
    }
    return kept;
}

std::vector<std::string> ReferencesIn(std::string_view xml, SMKeptNames names) {
    std::vector<std::string> texts;
    SMForEachKeptReference(xml, names, [&](std::string_view text) { texts.emplace_back(text); });
    return texts;
}

void FindInAnything(std::string_view xml) {
    try {
        ReferencesIn(xml, SMKeptNames::tablesToo);
    } catch (const TklRuntimeError&) {
        // no XML
    }
}

void RenameAnything(std::string_view xml, SMRenameList2& list) {
    TklByteBuffer buffer(64, 64);
    buffer.appendChars(xml.data(), xml.size());
    try {
        list.PerformRenamesEscaped(buffer);
    } catch (const TklRuntimeError&) {
        fuzz::Require(buffer.view().empty(), "a fragment that is no XML is empty after a rename");
    }
}

}  // namespace

void fuzz::KeptXml(std::string_view input) {
    SMRenameList2 list;
    list.AddRenameNamespace("a", "b");
    FindInAnything(input);
    RenameAnything(input, list);
    const QvSmartPtr<SMXMLObject2> kept = Keep(input);
    if (!kept) return;

    const std::string text(kept->buffer.view());
    const QvSmartPtr<SMXMLObject2> again = Keep(text);
    Require(again && again->buffer.view() == text, "what is kept is kept the same again");
    const std::string asDocument = "<?xml version=\"1.0\"?>" + text;  // not the form in which elements are kept
    for (const SMKeptNames names : {SMKeptNames::references, SMKeptNames::tablesToo})
        Require(ReferencesIn(text, names) == ReferencesIn(asDocument, names), "references are found by scanning as by parsing");

    I18NString inner;
    kept->GetInnerXMLStr(inner);
    Require(!kept->ChangeInnerXML(inner.c_str()) || inner.empty(), "the inside of an element is no change");
    again->RenameObjects(list);
    Require(Keep(again->buffer.view()), "what a rename leaves is XML");
    std::map<QvULString, QvULString> ids{{"a", "b"}};
    again->RegenerateIds(ids);
}
