#include "core/qvutils/io/qvxmlformattarget.h"

void QvStringWriter::overflow(const char* bytes, std::size_t length) {
    m_text.append({bytes, length});
}

void QvByteBufferWriter::overflow(const char* bytes, std::size_t length) {
    m_buffer.appendChars(bytes, length);
}
