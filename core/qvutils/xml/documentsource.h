#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace qv {

/** The bytes of one document, from first to last. */
class DocumentSource {
  public:
    virtual ~DocumentSource() = default;
    /** The bytes from the start on that are at hand before the first Read: the whole document or a good piece of it. */
    virtual std::string_view Head() const = 0;
    /** Copies the next bytes, at most `room`, and returns their number; 0 only at the end. */
    virtual std::size_t Read(char* to, std::size_t room) = 0;
};

/** Bytes in memory, borrowed. */
class MemorySource final : public DocumentSource {
  public:
    explicit MemorySource(std::string_view bytes) noexcept : m_bytes(bytes), m_rest(bytes) {}
    std::string_view Head() const override { return m_bytes; }
    std::size_t Read(char* to, std::size_t room) override;

  private:
    std::string_view m_bytes, m_rest;
};

/** A file, pipe or device, read block by block. What cannot be opened or read raises TklRuntimeError with the reason. */
class FileSource final : public DocumentSource {
  public:
    explicit FileSource(std::string path);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    std::string_view Head() const override { return {m_head.get(), m_headSize}; }
    std::size_t Read(char* to, std::size_t room) override;

  private:
    std::size_t ReadFile(char* to, std::size_t room);
    void FillHead();
    [[noreturn]] void Fail(const char* what, int error) const;

    std::string m_path;
    int m_file = -1;
    std::unique_ptr<char[]> m_head;
    std::size_t m_headSize = 0, m_headRead = 0;
};

/**
 * Whether the start of a document shows a prolog without a DOCTYPE, in an encoding in which markup reads as ASCII. "No" may also
 * mean that the start does not tell.
 */
bool HasPlainProlog(std::string_view head);

}  // namespace qv
