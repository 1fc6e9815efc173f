#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "core/qvutils/content/contenttree.h"
#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/diag/heldobjects.h"

namespace schema_002_000 {

/** Says where the parser stands and which object it fills, and keeps the files and the objects that it names. */
class SMReadWitness {
  public:
    /** What it gives calls this witness. */
    qv::ContentWitness ForTree() {
        return {[this] { return Place(); }, [] { return Object(); }, [this] { return Hold(Object()); }};
    }
    qv::ContentPlace Place() {
        const SMSourceContext at = SMSourceFrame::Innermost()->Describe();
        if (m_files.empty() || m_files[m_last] != at.file) {
            const auto [found, isNew] = m_numbers.emplace(at.file, m_files.size());
            m_last = found->second;
            if (isNew) m_files.emplace_back(at.file);
        }
        return {m_last, at.line, at.column};
    }
    /** Borrowed; the read may let it go. */
    static const IOObject* Object() { return SMSourceFrame::Innermost()->Describe().object; }
    QvSmartPtr<IOObject> Hold(const IOObject* object) { return m_held.Hold(object); }
    /** How the parser calls the file of a place. */
    const std::string& File(std::size_t file) const { return m_files[file]; }

  private:
    std::vector<std::string> m_files;
    /** Of the files. */
    std::unordered_map<std::string, std::size_t> m_numbers;
    std::size_t m_last = 0;
    qv::HeldObjects m_held;
};

}  // namespace schema_002_000
