#include "core/qvutils/text/qvmarkedkeytokenizer.h"

#include "core/qvutils/text/findbytes.h"

QvMarkedKeyTokenizer::QvMarkedKeyTokenizer(const I18NString& text, const I18NString& openMark, const I18NString& closeMark)
    : m_text(text), m_open(openMark), m_close(closeMark) {
    if (!m_open.empty() && !m_close.empty()) Advance(0);
}

void QvMarkedKeyTokenizer::Advance(std::size_t from) {
    m_more = false;
    const std::size_t open = qv::FindBytes(m_text.utf8(), m_open.utf8(), from);
    if (open == std::string_view::npos) return;
    m_start = open + m_open.utf8().size();
    m_end = qv::FindBytes(m_text.utf8(), m_close.utf8(), m_start);
    m_more = m_end != std::string_view::npos;
}

I18NString QvMarkedKeyTokenizer::nextToken(int* start, int* end) {
    if (start) *start = m_more ? static_cast<int>(m_start) : -1;
    if (end) *end = m_more ? static_cast<int>(m_end) : -1;
    if (!m_more) return {};
    I18NString token(m_text.utf8().substr(m_start, m_end - m_start));
    Advance(m_end + m_close.utf8().size());
    return token;
}
