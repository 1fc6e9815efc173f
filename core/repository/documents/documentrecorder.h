#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/repository/documents/piececutter.h"

namespace qv {

class StoreSession;

/**
 * Where a document's pieces hang together. A piece of depth 0 is text of the document; one of a greater depth lists the digests of
 * pieces one less deep, each with a line end behind it.
 */
struct DocumentRoot {
    std::string digest;
    std::int64_t depth = 0;
    /** Of the whole document. */
    std::int64_t bytes = 0;

    bool operator==(const DocumentRoot& other) const { return digest == other.digest && depth == other.depth; }
};

/**
 * Takes a document as it is written and cuts it into pieces, which are known by their digests, so that revisions share what they
 * have in common; lists of pieces are cut by what stands in them, too. Only pieces that are new are kept, compressed.
 */
class DocumentRecorder : public QvXMLFormatTarget {
  public:
    struct Piece {
        std::string digest, packed;
        std::size_t bytes;
    };

    /** `known`: the digests of pieces that the store has for certain. */
    explicit DocumentRecorder(std::unordered_set<std::string> known);

    void flush() override;
    /** Ends the document. Nothing may be written afterwards. */
    const DocumentRoot& Finish();
    /** The new pieces that were not yet taken. */
    std::vector<Piece> TakePieces() { return std::move(m_pieces); }

  protected:
    void overflow(const char* bytes, std::size_t length) override;

  private:
    /** The pieces of one depth: what was not yet put into a list, and whether there was a list before. */
    struct Level {
        std::string list;
        std::size_t lines = 0;
        bool listed = false;
    };
    std::string Keep(std::string_view piece);
    void Enter(std::size_t depth, const std::string& digest);
    void CloseList(std::size_t depth);

    std::vector<char> m_window;
    PieceCutter m_cutter;
    std::vector<Level> m_levels;
    std::unordered_set<std::string> m_known;
    std::vector<Piece> m_pieces;
    std::int64_t m_bytes = 0;
    std::optional<DocumentRoot> m_root;
};

}  // namespace qv
