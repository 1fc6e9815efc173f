#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/text/i18nstring.h"
#include "core/qvutils/text/tklbytebuffer.h"

/** Told before an element is written as bytes, behind the back of the handler that prints the document. */
class SM_API QvOpaqueElementListener {
  public:
    virtual ~QvOpaqueElementListener() = default;
    virtual void BeforeOpaqueElement() = 0;
};

/**
 * Sink of bytes. The kinds that stand for a slow device keep a window of memory that `write` fills inline; the others keep none,
 * and each byte is where it goes as soon as `write` returns.
 */
class SM_API QvXMLFormatTarget {
  public:
    QvXMLFormatTarget() = default;
    QvXMLFormatTarget(const QvXMLFormatTarget&) = delete;
    QvXMLFormatTarget& operator=(const QvXMLFormatTarget&) = delete;
    virtual ~QvXMLFormatTarget() = default;

    void write(const char* bytes, std::size_t length) {
        if (static_cast<std::size_t>(m_end - m_at) >= length && m_at) {
            std::memcpy(m_at, bytes, length);
            m_at += length;
        } else {
            overflow(bytes, length);
        }
    }
    void write(std::string_view bytes) { write(bytes.data(), bytes.size()); }
    void write(char byte) { write(&byte, 1); }
    /** For whoever writes a whole element as bytes: lets a printer that indents begin a new line for it. */
    void beginOpaqueElement() {
        if (m_listener) m_listener->BeforeOpaqueElement();
    }
    /** Borrowed; null takes it away. */
    void setOpaqueElementListener(QvOpaqueElementListener* listener) { m_listener = listener; }
    /** Room for exactly `length` bytes, to be filled by the caller at once; null when the window has none: then `write` them. */
    char* room(std::size_t length) {
        if (static_cast<std::size_t>(m_end - m_at) < length) return nullptr;
        char* const start = m_at;
        m_at += length;
        return start;
    }
    /** Hands on what the window holds. */
    virtual void flush() {}

  protected:
    /** Takes what does not fit into the window (with the window's content before it). */
    virtual void overflow(const char* bytes, std::size_t length) = 0;
    char* m_at = nullptr;
    char* m_end = nullptr;

  private:
    QvOpaqueElementListener* m_listener = nullptr;
};

/**
 * Writes a file beside `path` and puts it in its place at `close()`: a write that fails or is given up leaves the old file as it
 * was. Open, write, flush and rename failures raise TklRuntimeError with the path and the reason. The file keeps the permissions
 * of the one it replaces; a path that is a symbolic link has its target replaced; a path that is no regular file (a pipe,
 * /dev/stdout) is written directly. The destructor closes the file when it is left in the ordinary way and gives up when an
 * exception is passing; call `close()` to see a failure of the end.
 */
class SM_API QvFileWriter : public QvXMLFormatTarget {
  public:
    explicit QvFileWriter(const char* path);
    ~QvFileWriter() override;
    void flush() override;
    void close();

  protected:
    void overflow(const char* bytes, std::size_t length) override;

  private:
    struct File;
    std::unique_ptr<File> m_file;
};

/** Appends to a string that it borrows. It keeps nothing of its own, so the string may be erased at any time. */
class SM_API QvStringWriter : public QvXMLFormatTarget {
  public:
    explicit QvStringWriter(I18NString& text) : m_text(text) {}

  protected:
    void overflow(const char* bytes, std::size_t length) override;

  private:
    I18NString& m_text;
};

/** Appends to a buffer that it borrows; keeps nothing of its own. */
class SM_API QvByteBufferWriter : public QvXMLFormatTarget {
  public:
    explicit QvByteBufferWriter(TklByteBuffer& buffer) : m_buffer(buffer) {}

  protected:
    void overflow(const char* bytes, std::size_t length) override;

  private:
    TklByteBuffer& m_buffer;
};
