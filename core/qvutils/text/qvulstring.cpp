#include "core/qvutils/text/qvulstring.h"

void QvULString::assign(const char* text, int length) {
    if (!text || length == 0)
        m_text.clear();
    else
        m_text.assign(length < 0 ? std::string_view(text) : std::string_view(text, static_cast<std::size_t>(length)));
}
