#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "core/qvutils/persist/ioobject.h"
#include "core/repository/storesession.h"

namespace qv {

/** Tells the texts of one object in other locales apart from others, in whatever order they come. */
class TextDigest {
  public:
    /** An empty text adds nothing, since records leave it out, and so do readers. */
    void Add(std::string_view element, std::string_view locale, std::string_view text);
    void Add(const TextDigest& other);
    /** The same texts; of the elements that this one lacks altogether, any. */
    bool FitsWhereItHasAny(const TextDigest& other) const;
    bool operator==(const TextDigest& other) const = default;

    /** That of all texts that the object would send. */
    static TextDigest Of(const IOObject& object);

  private:
    /** Of names, descriptions, screen tips and others. */
    std::array<std::uint64_t, 4> m_sums = {};
};

/**
 * The texts in other locales that stand in a store, as digests: they have rows of their own beside the rows of objects, and a model of
 * many locales would not want them all in memory again.
 */
class TextDigests {
  public:
    /** Forgets what was fetched; an empty store need not be asked. */
    void Start(bool empty);
    /** Of the object with this id in the revision. */
    TextDigest Stored(StoreSession& session, std::int64_t project, std::int64_t revision, std::string_view id);
    /** The running save gives the object a new row, whose texts come next. */
    void NoteRow(std::string_view id);
    void NoteText(std::string_view id, const TextDigest& digest);
    void DropNotes() { m_notes.clear(); }
    /** The save has ended well. */
    void Settle();

  private:
    /** By the hash of the id. */
    using Digests = std::unordered_map<std::uint64_t, TextDigest>;

    /** Null until somebody asks. */
    std::unique_ptr<Digests> m_stored;
    Digests m_notes;
};

}  // namespace qv
