#include "core/qvutils/xml/limits.h"

#include <algorithm>

#include "core/qvutils/diag/codes.h"

namespace {

using namespace qv::code;

constexpr SMXMLLimitInfo INFOS[] = {
    {"document", &SMXMLLimits::documentBytes, TOO_MANY_BYTES, "bytes of the document, its separate files included"},
    {"depth", &SMXMLLimits::depth, TOO_DEEP, "elements inside each other"},
    {"elements", &SMXMLLimits::elements, TOO_MANY_ELEMENTS, "elements, those of separate files included"},
    {"attributes", &SMXMLLimits::attributes, TOO_MANY_ATTRIBUTES, "attributes of one element"},
    {"attribute", &SMXMLLimits::attributeBytes, ATTRIBUTE_TOO_LONG, "bytes of an attribute value"},
    {"text", &SMXMLLimits::textBytes, TEXT_TOO_LONG, "bytes of a text, a tag, a comment or a DOCTYPE"},
    {"names", &SMXMLLimits::names, TOO_MANY_NAMES, "different element names in a file"},
    {"files", &SMXMLLimits::partFiles, TOO_MANY_FILES, "separate files"},
    {"references", &SMXMLLimits::entityReferences, TOO_MANY_REFERENCES, "references to internal entities"},
    {"expansion", &SMXMLLimits::entityCharacters, EXPANDS_TOO_FAR,
     "characters that internal entities expand to, and of attributes given by default"},
    {"findings", &SMXMLLimits::findings, TOO_MANY_FINDINGS, "events, findings or losses that are listed"},
};

}  // namespace

std::span<const SMXMLLimitInfo> SMXMLLimitInfos() {
    return INFOS;
}

namespace qv {

std::string SizeText(std::size_t number) {
    const char* unit = "";
    for (const char* const larger : {"K", "M", "G"}) {
        if (number == 0 || number % 1024 != 0) break;
        number /= 1024;
        unit = larger;
    }
    return std::to_string(number) + unit;
}

TklRuntimeError LimitError(const SMXMLLimits& limits, std::size_t SMXMLLimits::*bound, const std::string& what, const std::string& file,
                           long line, long column) {
    const auto& info = *std::find_if(std::begin(INFOS), std::end(INFOS), [&](const SMXMLLimitInfo& each) { return each.bound == bound; });
    const std::string option = std::string("--limits ") + info.name + "=" + SizeText(2 * std::max<std::size_t>(limits.*bound, 1));
    return TklRuntimeError(what + "; where that is meant, raise the limit, as by " + option, file, line, column, info.code);
}

}  // namespace qv
