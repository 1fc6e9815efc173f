#include "objects/base/smxmlobject2_002_000.h"

#include <algorithm>

#include "core/qvutils/text/qvmarkedkeytokenizer.h"
#include "objects/transforms/smrenamelist2_002_000.h"

namespace schema_002_000 {

namespace {
constexpr std::size_t BUFFER_SIZE = 255;
constexpr std::size_t BUFFER_GROWTH = 256;
}  // namespace

SMXMLObject2::SMXMLObject2(const QvULString& tag) : tagName(tag), buffer(BUFFER_SIZE, BUFFER_GROWTH) {}

SMXMLObject2::SMXMLObject2(const QvULString& tag, const I18NString& text, bool wrap) : SMXMLObject2(tag) {
    if (wrap)
        SetInnerXML(text.c_str());
    else
        buffer.appendChars(text.utf8().data(), text.utf8().size());
}

void SMXMLObject2::WriteBytes(QvXMLFormatTarget& target) const {
    target.beginOpaqueElement();
    target.write(buffer.view());
}

void SMXMLObject2::SetInnerXML(const char* text) {
    const std::string inner(text ? text : "");  // the text may lie in the buffer
    buffer.reset();
    buffer << '<' << tagName.c_str() << '>' << inner.c_str() << "</" << tagName.c_str() << '>';
}

std::string_view SMXMLObject2::InnerView() const {
    const std::size_t n = tagName.utf8().size();
    const std::string_view whole = buffer.view();
    if (whole.size() <= 2 * n + 5 || whole[n + 1] != '>') return {};
    return whole.substr(n + 2, whole.size() - 2 * n - 5);
}

void SMXMLObject2::GetInnerXML(TklByteBuffer& out) const {
    out.reset();
    const std::string_view inner = InnerView();
    out.appendChars(inner.data(), inner.size());
}

void SMXMLObject2::GetInnerXMLStr(I18NString& out) const {
    out = I18NString(InnerView());
}

bool SMXMLObject2::ChangeInnerXML(const char* text) {
    if (InnerView() == std::string_view(text ? text : "")) return false;
    SetInnerXML(text);
    return true;
}

bool SMXMLObject2::IsXMLDifferentFrom(const char* text) const {
    return buffer.view() != std::string_view(text ? text : "");
}

void SMXMLObject2::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    I18NString text(buffer.view());
    UpdateWHID(idMap, text);
    buffer.reset();
    buffer.appendChars(text.utf8().data(), text.utf8().size());
    version = 1;
}

void SMXMLObject2::UpdateWHID(std::map<QvULString, QvULString>& idMap, I18NString& text) const {
    std::string edited(text.utf8());
    QvMarkedKeyTokenizer tokens(text, "'", "'");
    while (tokens.hasMoreTokens()) {
        const QvULString token = tokens.nextToken(nullptr, nullptr);
        const auto mapped = idMap.find(token);
        if (token.empty() || mapped == idMap.end() || mapped->second == token) continue;
        const std::string_view from = token.utf8(), to = mapped->second.utf8();
        // a replacement may complete the next occurrence; only where the value holds its own key does the search go on behind it
        const std::size_t overlap = from.size() - 1;
        const bool endless = to.find(from) != std::string_view::npos;
        for (std::size_t at = edited.find(from); at != std::string::npos;) {
            edited.replace(at, from.size(), to);
            at = edited.find(from, endless ? at + to.size() : at - std::min(at, overlap));
        }
    }
    text.assign(edited);
}

void SMXMLObject2::RenameObjects(SMRenameList2& list) {
    list.PerformRenamesEscaped(buffer);
}

I18NString InnerXmlOf(const SMXMLObject2* kept) {
    I18NString text;
    if (kept) kept->GetInnerXMLStr(text);
    return text;
}

bool ChangeKeptXml(QvSmartPtr<SMXMLObject2>& kept, const QvULString& tag, const I18NString& inner) {
    if (kept) return kept->ChangeInnerXML(inner.c_str());
    kept = new SMXMLObject2(tag, inner, true);
    return true;
}

SMXMLObjectBuilder::SMXMLObjectBuilder(SMXMLObject2* object)
    : m_object(object), m_writer(object->buffer), m_printer("UTF-8", false, m_writer, true) {}

SMXMLObjectBuilder::~SMXMLObjectBuilder() {
    if (m_depth > 0) m_object->buffer.reset();
    m_object->buffer.shrink();
}

void SMXMLObjectBuilder::realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                          const QvXMLAttributes& attrs) {
    ++m_depth;
    m_printer.startElement(uri, localName, qName, attrs);
}

void SMXMLObjectBuilder::realCharacters(const I18NString& text) {
    m_printer.characters(text);
}

void SMXMLObjectBuilder::realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) {
    m_printer.endElement(uri, localName, qName);
    --m_depth;
}

}  // namespace schema_002_000
