#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "core/repository/documents/documentrecorder.h"

namespace qv {

class StoreSession;

/** Puts documents together again. What is missing or damaged raises StoreError. */
class DocumentReader {
  public:
    DocumentReader(StoreSession& session, std::int64_t project) : m_session(session), m_project(project) {}

    /** Hands out the text in order, checked piece by piece. */
    void Read(const DocumentRoot& root, const std::function<void(std::string_view text)>& take);
    /** The digests of all pieces, found without reading the text. */
    void Collect(const DocumentRoot& root, std::unordered_set<std::string>& digests);

  private:
    std::string Piece(const std::string& digest);
    template <class Take>
    void EachBelow(const std::string& list, Take&& take);
    void ReadPiece(const std::string& digest, std::int64_t depth, const std::function<void(std::string_view)>& take);
    void CollectPiece(const std::string& digest, std::int64_t depth, std::unordered_set<std::string>& digests);

    StoreSession& m_session;
    std::int64_t m_project;
};

}  // namespace qv
