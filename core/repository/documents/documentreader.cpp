#include "core/repository/documents/documentreader.h"

#include "core/repository/documents/piececodec.h"
#include "core/repository/storesession.h"

namespace qv {

namespace {

[[noreturn]] void RaiseFor(const std::string& digest, const char* what) {
    throw StoreError("The document's piece " + digest + what +
                     ". Bring back a copy of the repository, or take what the rows tell of the revision.");
}

}  // namespace

std::string DocumentReader::Piece(const std::string& digest) {
    const std::optional<std::string> packed = m_session.Piece(m_project, digest);
    if (!packed) RaiseFor(digest, " is missing");
    const std::optional<std::string> piece = piececodec::Unpack(*packed, PieceCutter::MAX_BYTES);
    if (!piece || piececodec::Digest(*piece) != digest) RaiseFor(digest, " is damaged");
    return *piece;
}

template <class Take>
void DocumentReader::EachBelow(const std::string& list, Take&& take) {
    constexpr std::size_t LINE = piececodec::DIGEST_SIZE + 1;
    for (std::size_t at = 0; at + LINE <= list.size(); at += LINE) take(list.substr(at, piececodec::DIGEST_SIZE));
}

void DocumentReader::ReadPiece(const std::string& digest, std::int64_t depth, const std::function<void(std::string_view)>& take) {
    const std::string piece = Piece(digest);
    if (depth == 0) return take(piece);
    EachBelow(piece, [&](const std::string& below) { ReadPiece(below, depth - 1, take); });
}

void DocumentReader::Read(const DocumentRoot& root, const std::function<void(std::string_view)>& take) {
    ReadPiece(root.digest, root.depth, take);
}

void DocumentReader::CollectPiece(const std::string& digest, std::int64_t depth, std::unordered_set<std::string>& digests) {
    // a piece that was met has had everything below it collected
    if (!digests.insert(digest).second || depth == 0) return;
    EachBelow(Piece(digest), [&](const std::string& below) { CollectPiece(below, depth - 1, digests); });
}

void DocumentReader::Collect(const DocumentRoot& root, std::unordered_set<std::string>& digests) {
    CollectPiece(root.digest, root.depth, digests);
}

}  // namespace qv
