#include "core/qvutils/xml/qvsax2printhandler.h"

#include <cstring>
#include <string>

#include <strings.h>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/xmlescape.h"

namespace {

/** `open`, name and `close` in one piece: a target without a window takes one write much faster than three. */
template <std::size_t OPEN, std::size_t CLOSE>
inline void WriteTag(QvXMLFormatTarget& target, const char (&open)[OPEN], std::string_view name, const char (&close)[CLOSE]) {
    char local[128];
    const std::size_t length = OPEN - 1 + name.size() + CLOSE - 1;
    char* const room = target.room(length);
    char* at = room ? room : local;
    if (!room && length > sizeof local) {
        target.write(open, OPEN - 1);
        target.write(name);
        target.write(close, CLOSE - 1);
        return;
    }
    std::memcpy(at, open, OPEN - 1);
    at += OPEN - 1;
    std::memcpy(at, name.data(), name.size());
    std::memcpy(at + name.size(), close, CLOSE - 1);
    if (!room) target.write(local, length);
}

}  // namespace

QvSAX2PrintHandler::QvSAX2PrintHandler(const char* encoding, bool, QvXMLFormatTarget& target, bool fragment) : m_target(target) {
    if (encoding && ::strcasecmp(encoding, "UTF-8") != 0)
        throw TklRuntimeError(std::string("cannot print XML in the encoding \"") + encoding + "\"");
    if (!fragment) m_target.write(std::string_view("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
}

QvSAX2PrintHandler::~QvSAX2PrintHandler() {
    if (m_indent) m_target.setOpaqueElementListener(nullptr);
}

void QvSAX2PrintHandler::SetIndent(bool indent) {
    m_indent = indent;
    m_target.setOpaqueElementListener(indent ? this : nullptr);
}

void QvSAX2PrintHandler::characters(const I18NString& text) {
    if (text.empty()) return;
    if (m_indent && !m_levels.empty()) m_levels.back().hasText = true;
    qv::WriteEscapedText(m_target, text.utf8());
}

void QvSAX2PrintHandler::ignorableWhitespace(const I18NString& text) {
    characters(text);
}

void QvSAX2PrintHandler::startDocument() {}

void QvSAX2PrintHandler::endDocument() {
    if (m_indent) m_target.write('\n');
}

void QvSAX2PrintHandler::NewLine() {
    m_target.write('\n');
    for (std::size_t i = 0; i < m_levels.size(); ++i) m_target.write(std::string_view("  "));
}

void QvSAX2PrintHandler::BeginChild() {
    if (m_levels.empty() || m_levels.back().hasText) return;
    m_levels.back().hasChildren = true;
    NewLine();
}

void QvSAX2PrintHandler::BeforeOpaqueElement() {
    BeginChild();
}

void QvSAX2PrintHandler::startElement(const I18NString&, const I18NString&, const I18NString& qName, const QvXMLAttributes& attrs) {
    if (m_indent) {
        BeginChild();
        m_levels.emplace_back();
    }
    const int count = attrs.getLength();
    if (count == 0) {
        WriteTag(m_target, "<", qName.utf8(), ">");
        return;
    }
    WriteTag(m_target, "<", qName.utf8(), "");
    for (int i = 0; i < count; ++i) {
        const I18NString name = attrs.getQName(i);
        const I18NString value = attrs.getValue(i);
        WriteTag(m_target, " ", name.utf8(), "=\"");
        qv::WriteEscapedValue(m_target, value.utf8());
        m_target.write(std::string_view(i + 1 < count ? "\"" : "\">"));
    }
}

void QvSAX2PrintHandler::endElement(const I18NString&, const I18NString&, const I18NString& qName) {
    if (m_indent && !m_levels.empty()) {
        const Level level = m_levels.back();
        m_levels.pop_back();
        if (level.hasChildren && !level.hasText) NewLine();
    }
    WriteTag(m_target, "</", qName.utf8(), ">");
}

void QvSAX2PrintHandler::processingInstruction(const I18NString& target, const I18NString& data) {
    m_target.write(std::string_view("<?"));
    m_target.write(target.utf8());
    if (!data.empty()) {
        m_target.write(' ');
        m_target.write(data.utf8());
    }
    m_target.write(std::string_view("?>"));
}

void QvSAX2PrintHandler::startPrefixMapping(const I18NString&, const I18NString&) {}

void QvSAX2PrintHandler::endPrefixMapping(const I18NString&) {}

void QvSAX2PrintHandler::skippedEntity(const I18NString& name) {
    WriteTag(m_target, "&", name.utf8(), ";");
}
