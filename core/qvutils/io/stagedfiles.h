#pragma once

#include <string>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/io/descriptor.h"

namespace qv {

/**
 * Files of one directory that take their places together. They are written into a hidden directory beside them, and only when all
 * are whole do they move: none, or each in turn. Nothing of it stays behind; what a killed process left is tidied up by the next
 * one that stages files in the same directory. Raises TklRuntimeError.
 */
class SM_API StagedFiles {
  public:
    /** Makes the directory if it is not there. */
    explicit StagedFiles(std::string directory);
    /** Takes away what was not published, and the directory if it was made for nothing. */
    ~StagedFiles();
    StagedFiles(const StagedFiles&) = delete;
    StagedFiles& operator=(const StagedFiles&) = delete;

    /** Where to write the files. */
    const std::string& Path() const { return m_staging; }
    /**
     * Moves the files to their places, `last` behind all others. A file whose content stands there already is left as it is. A
     * file keeps the permissions of the one that it replaces; a link is replaced, not followed. When one cannot be moved, those
     * moved before are taken back, and the directory is as it was, if its file system can exchange two files. Gives the names
     * of the files that changed, in the order of their moves.
     */
    std::vector<std::string> Publish(const std::string& last);

  private:
    struct Move;

    void MakeDirectory();
    void MakeStaging();
    void Place(Move& move) const;
    void TakeBack(const Move& move) const noexcept;
    std::vector<Move> Plan(const std::string& last) const;
    std::string Target(const std::string& name) const { return m_directory + "/" + name; }
    std::string Staged(const std::string& name) const { return m_staging + "/" + name; }

    std::string m_directory, m_staging;
    /** Locked for as long as this lives, so that nobody tidies it up. */
    Descriptor m_lock;
    bool m_madeDirectory = false, m_published = false;
};

}  // namespace qv
