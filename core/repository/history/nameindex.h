#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/repository/rowcodec.h"

namespace qv {

class StoreSession;

/** How documents name the kind of a row: "queryItem", "namespace". */
std::string KindOf(const RowTable& table, const char* row);

/** The text in a column of a row; empty where its table has no such column. */
std::string_view TextNamed(const RowTable& table, const char* row, std::string_view column);

/** The row's number among its siblings; 0 where its table has none. */
std::int64_t OrderOf(const RowTable& table, const char* row);

/** The names and places of all objects of a revision, and of rows that are added: enough to tell where an object stands. */
class NameIndex {
  public:
    struct Place {
        const RowTable* table = nullptr;
        std::string name, parent, kind;
        /** Its number among its siblings, where its table has one. */
        std::int64_t order = 0;
    };

    void Fetch(StoreSession& session, std::int64_t project, std::int64_t revision);
    /** Takes the place of what was known of the row's id. */
    void Add(const RowTable& table, const char* row);
    /** Null when the id is not known. */
    const Place* Find(std::string_view id) const;
    template <class Visit>
    void Each(Visit&& visit) const {
        for (const auto& [id, place] : m_places) visit(id, place);
    }
    /** The names from the outermost object down to this one; an object without a name counts with its kind. */
    std::vector<std::string> Path(const Place& place) const;
    /** Empty when the id is not known. */
    std::vector<std::string> Path(std::string_view id) const;

    static Place PlaceOf(const RowTable& table, const char* row);

  private:
    std::unordered_map<std::string, Place> m_places;
};

}  // namespace qv
