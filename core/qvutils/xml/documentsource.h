#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "core/qvutils/xml/limits.h"
#include "core/qvutils/xml/qvcontenthandler.h"

namespace qv {

/** The bytes of one document, from first to last. */
class DocumentSource {
  public:
    virtual ~DocumentSource() = default;
    /** The bytes from the start on that are at hand before the first block: the whole document or a good piece of it. */
    virtual std::string_view Head() const = 0;
    /** The next bytes, good until the next call; empty only at the end. */
    virtual std::string_view NextBlock() = 0;
    /** Shows its first `size` bytes once more, in UTF-8 and for the time of the call; shows nothing where that cannot be done. */
    virtual void LookBack(std::size_t size, const std::function<void(std::string_view)>& look) const = 0;
};

/** Bytes in memory, borrowed. They are one block. */
class MemorySource final : public DocumentSource {
  public:
    explicit MemorySource(std::string_view bytes) noexcept : m_bytes(bytes), m_rest(bytes) {}
    std::string_view Head() const override { return m_bytes; }
    std::string_view NextBlock() override { return std::exchange(m_rest, {}); }
    void LookBack(std::size_t size, const std::function<void(std::string_view)>& look) const override;

  private:
    std::string_view m_bytes, m_rest;
};

/** A file, pipe or device, read block by block. What cannot be opened or read raises TklRuntimeError with the reason. */
class FileSource final : public DocumentSource {
  public:
    explicit FileSource(std::string path);
    /** Reads on in an open file, which stays the caller's; `path` is for errors. */
    FileSource(int descriptor, std::string path);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    std::string_view Head() const override { return {m_block.get(), m_headSize}; }
    std::string_view NextBlock() override;
    /** Of a regular file. */
    void LookBack(std::size_t size, const std::function<void(std::string_view)>& look) const override;

  private:
    std::size_t ReadFile(char* to, std::size_t room);
    void Begin();
    void FillHead();
    [[noreturn]] void Fail(const char* what, int error) const;

    std::string m_path;
    int m_file = -1;
    std::unique_ptr<char[]> m_block;
    std::size_t m_room = 0, m_headSize = 0, m_bytesRead = 0;
    bool m_headTaken = false;
};

/** What the start of a document shows. */
struct Prolog {
    /** The document is UTF-8, or claims to be. */
    bool isUtf8 = false;
    /** There is no DOCTYPE, in an encoding in which markup reads as ASCII. False may also mean that the start does not tell. */
    bool isPlain = false;
};

Prolog LookAtProlog(std::string_view head);

/** The encoding that the XML declaration names, in lower case; empty when there is none, or not in characters that read as ASCII. */
std::string DeclaredEncoding(std::string_view head);

/** What QvSAX2Parser does with a document that comes from anywhere. All is borrowed; `handler` and `totals` may be null. */
void ParseSource(DocumentSource& source, const std::string& name, QvContentHandler* handler, const SMXMLLimits& limits,
                 SMXMLTotals* totals);

}  // namespace qv
