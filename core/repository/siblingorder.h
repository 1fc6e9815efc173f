#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/repository/storesession.h"

namespace qv {

/**
 * The order of the rows of one table below one parent. Where no record tells it, it is that of their ids; ids that a record does
 * not name come behind those that it names. Ids made by the library grow, so that a new model needs no records.
 */
class SiblingOrder {
  public:
    struct Record {
        std::int64_t first;
        std::string ids;
    };

    void Fetch(StoreSession& session, std::int64_t project, std::int64_t revision);
    /** Null when the ids tell the order. */
    const Record* Find(std::string_view parent, std::string_view table) const;
    /** Of the rows with these ids, which comes first, second and so on, as places in `ids`. */
    void Arrange(const Record* record, const std::vector<std::string_view>& ids, std::vector<std::size_t>& places) const;

    template <class Visit>
    void Each(Visit&& visit) const {
        for (const auto& [key, record] : m_records) {
            const std::size_t cut = key.rfind('\0');
            visit(std::string_view(key).substr(0, cut), std::string_view(key).substr(cut + 1), record);
        }
    }

    static std::string Join(const std::vector<std::string_view>& ids);
    static std::vector<std::string> Split(std::string_view text);

  private:
    /** By parent and table, with a NUL between them. */
    std::unordered_map<std::string, Record> m_records;
};

}  // namespace qv
