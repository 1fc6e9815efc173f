#pragma once

#include <string>

namespace bench {

/**
 * A model document of subjects with twenty items each, whose expressions name two items of the subject before, and of a relationship
 * between neighbours: a reference or two for each object.
 */
inline std::string SubjectDocument(std::size_t bytes) {
    constexpr unsigned ITEMS = 20;
    const auto name = [](const std::string& text) { return "<name locale=\"en\">" + text + "</name>"; };
    const auto subject = [](unsigned i) { return "[Layer].[Subject " + std::to_string(i) + "]"; };
    const auto reference = [](const std::string& id) { return "<refobj>" + id + "</refobj>"; };
    std::string out = "<project><name>subjects</name><locales><locale>en</locale></locales><defaultLocale>en</defaultLocale><namespace>" +
                      name("Model") + "<namespace>" + name("Layer");
    for (unsigned i = 0; out.size() < bytes; ++i) {
        const std::string before = subject(i == 0 ? 0 : i - 1);
        out += "<querySubject>" + name("Subject " + std::to_string(i)) + "<lastChanged>2007-01-08T10:01:02</lastChanged>";
        for (unsigned j = 0; j < ITEMS; ++j)
            out += "<queryItem>" + name("Item " + std::to_string(j)) + "<lastChanged>2007-01-08T10:01:02</lastChanged><expression>" +
                   reference(before + ".[Item " + std::to_string(j) + "]") + " + " + reference(before + ".[Item 0]") +
                   "</expression><usage>attribute</usage><datatype>int32</datatype><precision>0</precision><scale>0</scale><size>4</size>"
                   "</queryItem>";
        out += "</querySubject><relationship><name>r" + std::to_string(i) + "</name><left>" + reference(subject(i)) +
               "<mincard>one</mincard><maxcard>many</maxcard></left><right>" + reference(before) +
               "<mincard>one</mincard><maxcard>one</maxcard></right></relationship>";
    }
    return out + "</namespace></namespace></project>";
}

}  // namespace bench
