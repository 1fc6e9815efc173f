#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/qvutils/io/descriptor.h"
#include "core/qvutils/text/qvulstring.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/base/smlog_002_000.h"

namespace qv {
class ContentSource;
}

namespace schema_002_000 {

/** Raised to end the read of a whole model: the read of a separate file lets it pass, and nothing else. */
struct SMReadEnded {
    /** What a watcher raised instead; null when it raised this. */
    std::exception_ptr why;
};

/** How the separate files of a model are read, and what came of it. */
class SM_API SMPartFiles {
  public:
    /**
     * From now on no file outside of this directory is opened, whatever a document says: not by "..", an absolute path or a symbolic
     * link. Also, a file must have the root element of its object. Empty, as at the start: paths are followed as they are.
     */
    void SetRoot(const std::string& directory) { m_root = directory; }
    /** A file that makes the whole pass a bound ends the read of the whole model where a root is set; else it is a failure as others. */
    void SetLimits(const SMXMLLimits& limits) { m_limits = limits; }
    /** What all files of the model have come to; the main document's parser counts here as well. */
    SMXMLTotals& Totals() { return m_totals; }
    /** Called at each element of the separate files; may raise. Null: nobody watches. */
    void SetWatch(std::function<void()> watch) { m_watch = std::move(watch); }
    /** Is told the content of the separate files, each in the place of its placeholder. Borrowed; null: nobody is told. */
    void SetContentSource(qv::ContentSource* source) { m_source = source; }
    /** Opens one of the files again; gives none when that fails. */
    qv::Descriptor Open(const std::string& path) const;

    /** What is to be read, and in whose words failures are logged. All is borrowed. */
    struct Part {
        const I18NString& baseDirectory;
        const I18NString& filepath;
        const I18NString& filename;
        /** The element that the object is written as. */
        const I18NString& rootTag;
        const SMLogWords& words;
    };
    /** Reads a file into a handler. False, with the event logged, when it cannot be read; raises nothing but SMReadEnded. */
    bool Read(const Part& part, QvContentHandler& handler);
    /** Tells the content source that the placeholder that has just been started names no file, but stands for such an element itself. */
    void StandsFor(const I18NString& rootTag);

    /** Files that were read with this root element. */
    std::size_t ReadCount(const I18NString& rootTag) const;
    /** Files that could not be read: the model lacks what they hold. */
    std::size_t UnreadCount() const { return m_unread; }

  private:
    /** Device and number of a file. */
    using Identity = std::pair<unsigned long long, unsigned long long>;

    void Parse(const Part& part, const I18NString& path, QvContentHandler& handler);
    [[noreturn]] void LeadsOut(const std::string& path) const;
    std::string BelowRoot(const std::string& path) const;
    bool ReadContent(const Part& part, QvContentHandler& handler);
    void Enter(const Identity& file, const std::string& path);

    std::string m_root;
    SMXMLLimits m_limits;
    SMXMLTotals m_totals;
    std::function<void()> m_watch;
    qv::ContentSource* m_source = nullptr;
    /** The files being read now, one inside the other. */
    std::vector<Identity> m_open;
    std::set<Identity> m_known;
    std::map<QvULString, std::size_t> m_read;
    std::size_t m_unread = 0, m_again = 0, m_entered = 0;
};

}  // namespace schema_002_000
