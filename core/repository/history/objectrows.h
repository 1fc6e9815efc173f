#pragma once

#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/repository/storesession.h"

namespace qv {

/**
 * Every row that ever stood of an object and of its parts: what hangs below it and cannot be named by an address of its own, as
 * definitions, determinants and folders. The number of questions grows with the tables, the depth of folders, and the parts that can have
 * records or texts; never with other objects.
 */
class ObjectRows {
  public:
    struct Row {
        const RowTable* table;
        const char* row;
        /** The revisions in which it came and went; 0 while it stands. */
        std::int64_t first, end;
    };
    /** The object, or a part of it, with its records and texts. */
    struct Holder {
        std::string id;
        /** Place of the holder that it hangs below; its own for the object. */
        std::size_t around;
        std::vector<Row> rows;
    };

    ObjectRows(StoreSession& session, std::int64_t project, std::string_view id);
    ~ObjectRows();
    ObjectRows(const ObjectRows&) = delete;
    ObjectRows& operator=(const ObjectRows&) = delete;

    /** The object first. */
    const std::vector<Holder>& Holders() const { return m_holders; }
    /** "definition", "determinant [Key]", "folder [A].folder [B]": how a part is called in its object, as last named. */
    std::string PartName(std::size_t holder) const;

  private:
    /** Ids of holders by their table. */
    using Owners = std::unordered_map<std::string_view, std::set<std::string>>;

    void FetchObject();
    void FetchParts(Owners owners);
    void FetchBelow(const RowTable& table, const std::set<std::string>& owners, Owners& found);
    void FetchRecordsAndTexts();
    void Release();
    /** Takes the row over. */
    void Keep(std::size_t holder, const RowTable& table, const char* row, std::int64_t first, std::int64_t end);

    StoreSession& m_session;
    std::int64_t m_project;
    std::vector<Holder> m_holders;
    std::unordered_map<std::string, std::size_t> m_places;
};

}  // namespace qv
