#include "core/qvutils/xml/qvsax2printhandler.h"

#include <cstring>
#include <string>

#include <strings.h>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/xmlescape.h"

namespace {

/** A tag in one piece: most targets take one write much faster than three. */
void WriteTag(QvXMLFormatTarget& target, std::string_view open, std::string_view name, std::string_view close) {
    char tag[128];
    if (open.size() + name.size() + close.size() > sizeof tag) {
        target.write(open);
        target.write(name);
        target.write(close);
        return;
    }
    char* at = tag;
    for (const std::string_view part : {open, name, close}) {
        std::memcpy(at, part.data(), part.size());
        at += part.size();
    }
    target.write(tag, static_cast<std::size_t>(at - tag));
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
