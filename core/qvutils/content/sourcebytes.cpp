#include "core/qvutils/content/sourcebytes.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <sys/mman.h>
#include <sys/stat.h>

#include "core/qvutils/xml/documentsource.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

namespace qv {
namespace {

std::string Converted(std::string_view document, const std::string& encoding) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, void (*)(UConverter*)> from(ucnv_open(encoding.c_str(), &error), ucnv_close);
    if (U_FAILURE(error)) return {};
    std::string out;
    std::vector<UChar> units(std::size_t{16} << 10);
    const char* at = document.data();
    const char* const end = at + document.size();
    char16_t high = 0;
    do {
        UChar* to = units.data() + (high ? 1 : 0);
        if (high) units[0] = high;
        error = U_ZERO_ERROR;
        ucnv_toUnicode(from.get(), &to, units.data() + units.size(), &at, end, nullptr, true, &error);
        auto count = static_cast<int32_t>(to - units.data());
        high = count > 0 && error == U_BUFFER_OVERFLOW_ERROR && U16_IS_LEAD(units[static_cast<std::size_t>(count - 1)]) ? to[-1] : 0;
        if (high) --count;
        icu::UnicodeString(false, units.data(), count).toUTF8String(out);
    } while (error == U_BUFFER_OVERFLOW_ERROR);
    return out;
}

/** A declaration has only characters that all code pages of EBCDIC have alike. */
std::string DeclaredInEbcdic(std::string_view document) {
    constexpr std::size_t LONGEST = 4096;
    return DeclaredEncoding(Converted(document.substr(0, LONGEST), "ibm-37"));
}

std::string EncodingOf(std::string_view document) {
    using namespace std::string_view_literals;
    int32_t mark = 0;
    UErrorCode error = U_ZERO_ERROR;
    const char* const named =
        ucnv_detectUnicodeSignature(document.data(), static_cast<int32_t>(std::min<std::size_t>(document.size(), 8)), &mark, &error);
    if (U_SUCCESS(error) && named) return named;
    if (document.starts_with("<\0\0\0"sv)) return "UTF-32LE";
    if (document.starts_with("\0\0\0<"sv)) return "UTF-32BE";
    if (document.starts_with("<\0?"sv)) return "UTF-16LE";
    if (document.starts_with("\0<\0?"sv)) return "UTF-16BE";
    const std::string declared = document.starts_with('\x4C') ? DeclaredInEbcdic(document) : DeclaredEncoding(document);
    return declared.empty() ? "UTF-8" : declared;
}

}  // namespace

std::string Utf8OfDocument(std::string_view document) {
    return Converted(document, EncodingOf(document));
}

SourceBytes::SourceBytes(int descriptor, std::size_t start, std::size_t size) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || status.st_size <= 0) return;
    m_size = static_cast<std::size_t>(status.st_size);
    void* const mapped = ::mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (mapped == MAP_FAILED) return;
    m_mapped = mapped;
    m_utf8 = std::string_view(static_cast<const char*>(mapped), m_size).substr(std::min(start, m_size), size);
    if (LookAtProlog(m_utf8).isUtf8) return;
    m_converted = Utf8OfDocument(m_utf8);
    m_utf8 = m_converted;
}

SourceBytes::~SourceBytes() {
    if (m_mapped) ::munmap(m_mapped, m_size);
}

}  // namespace qv
