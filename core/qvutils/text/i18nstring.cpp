#include "core/qvutils/text/i18nstring.h"

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/text/asciifold.h"
#include "core/qvutils/text/findbytes.h"
#include "core/qvutils/text/utf8.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <climits>

namespace {

bool IsUtf8Name(const char* encoding) {
    return !encoding || qv::AsciiEqualsIgnoreCase(encoding, "UTF-8") || qv::AsciiEqualsIgnoreCase(encoding, "UTF8");
}

/** The text in another encoding; what that encoding lacks becomes its substitution character. */
std::string Convert(const char* to, const char* from, std::string_view text) {
    if (text.empty()) return {};
    const auto length = static_cast<int32_t>(text.size());
    std::string out(text.size() * 2 + 16, '\0');
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const auto room = static_cast<int32_t>(std::min(out.size(), static_cast<std::size_t>(INT32_MAX)));
        const int32_t written = ucnv_convert(to, from, out.data(), room, text.data(), length, &status);
        if (status == U_BUFFER_OVERFLOW_ERROR && written > room) {
            out.resize(static_cast<std::size_t>(written) + 1);
            continue;
        }
        if (U_FAILURE(status))
            throw TklRuntimeError("Text cannot be converted from encoding '" + std::string(from) + "' to '" + to +
                                  "': " + u_errorName(status));
        out.resize(static_cast<std::size_t>(written));
        return out;
    }
}

std::size_t CharacterOffset(const qv::SharedText& text, int index) {
    if (index <= 0) return 0;
    const std::string_view bytes = text.view();
    const auto wanted = static_cast<std::size_t>(index);
    return text.ascii() ? std::min(wanted, bytes.size()) : qv::OffsetOfCharacter(bytes, wanted);
}

struct Span {
    std::size_t at, count;
};

/** The bytes of `count` characters (negative: all the rest) from character `start` on, cut to the text. */
Span SpanOf(const qv::SharedText& text, int start, int count) {
    const std::size_t at = CharacterOffset(text, start);
    const std::string_view rest = text.view().substr(at);
    if (count < 0) return {at, rest.size()};
    const auto wanted = static_cast<std::size_t>(count);
    return {at, text.ascii() ? std::min(wanted, rest.size()) : qv::OffsetOfCharacter(rest, wanted)};
}

std::string_view ViewOf(const char* text) {
    return text ? std::string_view(text) : std::string_view();
}

}  // namespace

I18NString::I18NString(const char* text, const char* encoding, int length, Converter, void*) {
    if (!text) return;
    const std::string_view bytes = length < 0 ? std::string_view(text) : std::string_view(text, static_cast<std::size_t>(length));
    if (IsUtf8Name(encoding))
        m_text = qv::SharedText(bytes);
    else
        m_text = qv::SharedText(Convert("UTF-8", encoding, bytes));
}

I18NString& I18NString::operator=(const char* text) {
    return assign(ViewOf(text));
}

I18NString& I18NString::operator+=(const char* text) {
    return append(ViewOf(text));
}

I18NString& I18NString::operator+=(const I18NString& text) {
    if (m_text.empty())
        m_text = text.m_text;
    else
        m_text.append(text.utf8());
    return *this;
}

I18NString& I18NString::operator+=(wchar_t character) {
    char bytes[4];
    const std::size_t size = qv::EncodeUtf8(static_cast<char32_t>(character), bytes);
    return append({bytes, size});
}

I18NString& I18NString::erase(int start, int count) {
    const Span span = SpanOf(m_text, start, count);
    if (span.count > 0) m_text.replace(span.at, span.count, {});
    return *this;
}

I18NString& I18NString::replace(int start, int count, const I18NString& text) {
    const Span span = SpanOf(m_text, start, count);
    m_text.replace(span.at, span.count, text.utf8());
    return *this;
}

int I18NString::find(const I18NString& text, int from) const {
    const std::size_t found = qv::FindBytes(utf8(), text.utf8(), CharacterOffset(m_text, from));
    if (found == std::string_view::npos) return -1;
    return static_cast<int>(m_text.ascii() ? found : qv::CountCharacters(utf8().substr(0, found)));
}

I18NString I18NString::substr(int start, int count) const {
    const Span span = SpanOf(m_text, start, count);
    if (span.count == utf8().size()) return *this;
    return I18NString(utf8().substr(span.at, span.count));
}

I18NString I18NString::substring(int start, int end) const {
    start = std::max(start, 0);
    return end <= start ? I18NString() : substr(start, end - start);
}

int I18NString::size() const {
    const std::string_view bytes = utf8();
    return static_cast<int>(m_text.ascii() ? bytes.size() : qv::CountCharacters(bytes));
}

I18NStringIterator I18NString::begin() const {
    const char* const start = utf8().data();  // as in end(): two empty texts need not stand at one place
    return {start, start};
}

I18NStringIterator I18NString::end() const {
    const std::string_view bytes = utf8();
    return {bytes.data(), bytes.data() + bytes.size()};
}

const char* I18NString::c_str(const char* encoding, int* lengthOut, Converter, void*) const {
    if (IsUtf8Name(encoding)) {
        if (lengthOut) *lengthOut = static_cast<int>(utf8().size());
        return m_text.c_str();
    }
    thread_local std::array<std::string, 8> buffers;
    thread_local std::size_t next = 0;
    std::string converted = Convert(encoding, "UTF-8", utf8());
    if (lengthOut) *lengthOut = static_cast<int>(converted.size());
    converted.append(sizeof(char32_t), '\0');  // encodings of two and four bytes end in as many zero bytes
    std::string& buffer = buffers[next++ % buffers.size()];
    buffer.swap(converted);
    return buffer.c_str();
}

I18NStringIteratorValue I18NStringIterator::operator*() const noexcept {
    return I18NStringIteratorValue(static_cast<wchar_t>(qv::DecodeUtf8(m_at)));
}

I18NStringIterator& I18NStringIterator::operator++() noexcept {
    do ++m_at;
    while (qv::IsUtf8Continuation(*m_at));  // the NUL behind the text is none
    return *this;
}

I18NStringIterator& I18NStringIterator::operator--() noexcept {
    if (m_at == m_begin) return *this;
    do --m_at;
    while (m_at != m_begin && qv::IsUtf8Continuation(*m_at));
    return *this;
}
