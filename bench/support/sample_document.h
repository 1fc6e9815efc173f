#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace bench {

/**
 * A document of the tag and text mix of a large model, without white space between elements, of about `bytes` bytes: the same for
 * the same size. A file named by SMODEL_BENCH_DOCUMENT is taken instead.
 */
inline std::string SampleDocument(std::size_t bytes) {
    if (const char* path = std::getenv("SMODEL_BENCH_DOCUMENT")) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project xmlns=\"http://schemas.example.org/schemas/krt/60/0\"><namespace>";
    char item[1024];
    for (unsigned i = 0; document.size() < bytes; ++i) {
        std::snprintf(item, sizeof item,
                      "<queryItem><name locale=\"fr\">Libell\xC3\xA9 d'article %u</name><name locale=\"en\">Item label %u</name>"
                      "<lastChanged>2008-%02u-%02uT11:%02u:07</lastChanged>"
                      "<property name=\"id\" type=\"hidden\">%08x-7a42-5d10-9c3e-1f0b6d%06x</property>"
                      "<property name=\"version\" type=\"hidden\">%u</property>"
                      "<expression><refobj>[Database Layer].[order line %u].[amount]</refobj> &gt; 100 &amp; [x]</expression>"
                      "<externalName>COLUMN_%u</externalName><usage>fact</usage><datatype>decimal</datatype><precision>15</precision>"
                      "<scale>2</scale><size>17</size><nullable>true</nullable><regularAggregate>sum</regularAggregate></queryItem>",
                      i, i, 1 + i % 12, 1 + i % 28, i % 60, i * 2654435761u, i & 0xFFFFFF, i % 4, i % 500, i);
        document += item;
    }
    document += "</namespace></project>";
    return document;
}

}  // namespace bench
