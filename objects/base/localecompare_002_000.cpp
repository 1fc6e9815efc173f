#include "objects/base/localecompare_002_000.h"

namespace schema_002_000 {

namespace {

/** The next letter (folded to upper case) or digit; 0 at the end. */
char NextCounting(const char*& at) {
    for (; *at; ++at) {
        const char c = *at;
        if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return c;
    }
    return '\0';
}

}  // namespace

int LocaleCompare::compare(const QvULString& a, const QvULString& b) {
    if (a.shared().same(b.shared())) return 0;
    const char* atA = a.c_str();
    const char* atB = b.c_str();
    for (;;) {
        const char inA = NextCounting(atA);
        const char inB = NextCounting(atB);
        if (inA != inB) return inA < inB ? 1 : -1;  // reversed on purpose
        if (!inA) return 0;
        ++atA;
        ++atB;
    }
}

}  // namespace schema_002_000
