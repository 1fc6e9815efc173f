#include "core/qvutils/text/shortened.h"

#include "core/qvutils/text/utf8.h"

namespace qv {

std::string Shortened(std::string_view text, std::size_t most) {
    if (text.size() <= most) return std::string(text);
    std::size_t head = most / 2, tail = text.size() - (most - head);
    while (head > 0 && IsUtf8Continuation(text[head])) --head;
    while (tail < text.size() && IsUtf8Continuation(text[tail])) ++tail;
    return std::string(text.substr(0, head)).append("...").append(text.substr(tail));
}

}  // namespace qv
