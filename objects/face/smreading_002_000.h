#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/qvutils/content/contentsink.h"
#include "core/qvutils/content/sourceplaces.h"
#include "core/qvutils/io/descriptor.h"
#include "core/qvutils/xml/limits.h"
#include "core/qvutils/xml/qvcontenthandler.h"
#include "objects/face/smmodeldocument_002_000.h"

namespace schema_002_000 {

/** Where the main document of a model comes from. It borrows what it was made of. */
class SMModelInput {
  public:
    static SMModelInput File(const std::string& path, const SMLoadOptions& options);
    static SMModelInput Bytes(std::string_view document, const SMLoadOptions& options);

    void Parse(QvContentHandler& handler, const SMXMLLimits& limits, SMXMLTotals& totals);
    /**
     * What can be read only once, like a pipe, goes into a file without a name while it is parsed for the first time, so that not more is
     * read than the parser wants; that file, or standard input itself, is read from then on.
     */
    void MakeRepeatable();
    /** Its text in UTF-8, of its first `size` bytes, for the time of the call; none when it cannot be read again. */
    void ForText(const std::function<void(std::string_view)>& look, std::size_t size = std::string_view::npos) const;
    /** Device, number, size and time of a file, to see whether it is still the same; empty for bytes. */
    std::string Stamp() const;

    /** How the parser calls it, and how the caller wants it called. */
    const std::string& Path() const { return m_path; }
    const std::string& Name() const { return m_name; }
    /** Where its separate files are. */
    const std::string& Directory() const { return m_directory; }

  private:
    void ShareStandardInput();
    SMModelInput(std::string path, const SMLoadOptions& options, std::string directory);

    std::string m_path, m_name, m_directory;
    bool m_isBytes = false, m_isToBeKept = false;
    std::string_view m_bytes;
    /** An open file that is read instead of the path, from `m_start` on. */
    qv::Descriptor m_file;
    std::size_t m_start = 0;
};

/** The read of a whole model. */
class SMReading {
  public:
    /** `options` are borrowed. */
    SMReading(SMModelInput input, const SMLoadOptions& options) : m_input(std::move(input)), m_options(options) {}

    SMModelInput& Input() { return m_input; }
    const SMModelInput& Input() const { return m_input; }
    /** Once, or again. Events are told where what they are about begins. */
    SMLoadResult Read();
    /** The same, and the sink is told the content that is read. The result has no paths yet, and places are those of the parser. */
    SMLoadResult ReadContent(qv::ContentSink& sink);
    /** Answers questions about the files of the model; `file` of each is how the parser calls it. */
    struct Question {
        std::string file;
        qv::PlaceQuestion place;
    };
    void Answer(const SMProject2& project, std::vector<Question>& questions) const;
    /** Puts exact places into diagnostics of events, and the name of the document that the caller knows. */
    void Finish(SMLoadResult& result) const;

  private:
    SMLoadResult Load(qv::ContentSink* sink);
    /** No separate file outside of it is read. */
    std::string RootDirectory() const;
    /** Which diagnostic tells what ended the read, and has its place: the last one, but for that which counts events that are not listed.
     */
    std::size_t IndexOfEnd(const SMLoadResult& result) const;
    void AnswerIn(const SMPartFiles& files, std::vector<Question>& questions) const;

    SMModelInput m_input;
    const SMLoadOptions& m_options;
    /** How much of each file to look at for places: of one that was not read to its end, no more than was read. */
    std::size_t m_most = std::string_view::npos;
};

}  // namespace schema_002_000
