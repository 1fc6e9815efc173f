#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/repository/history/nameindex.h"
#include "core/repository/rowcodec.h"
#include "core/repository/smrepositoryhistory.h"

namespace qv {

/** A value as people see it; null for the null cell. */
std::optional<std::string> TextOf(const Cell& cell, CellKind kind);

/** Puts the rows of two states together to what differs between them, object by object. */
class ChangeList {
  public:
    ChangeList() = default;
    ChangeList(const ChangeList&) = delete;
    ChangeList& operator=(const ChangeList&) = delete;
    ~ChangeList();

    /** A row that stands in one state and not, or not so, in the other. It is shared until the list goes. */
    void Before(const RowTable& table, const char* row) { Take(table, row, &Side::before); }
    void After(const RowTable& table, const char* row) { Take(table, row, &Side::after); }
    /** A standing text in another locale: it ends with the row of its object, if that ends. */
    void TextStands(const RowTable& texts, const char* row);
    /** Lets the index know the objects that were added. */
    void AddNames(NameIndex& names) const;
    void Order(std::string_view parent) { m_objects[std::string(parent)].order = true; }

    /** What differs, in the order of paths. Names come from the rows, and from the index for what has none here. */
    std::vector<SMRepositoryChange> Build(const NameIndex& names) const;

  private:
    /** A row with the table that tells its form; null where there is none. */
    struct Version {
        const RowTable* table = nullptr;
        const char* row = nullptr;
    };
    /** The tables differ where an id went to an object of another kind. */
    struct Side {
        Version before, after;
    };
    using Parts = std::map<std::string, Side>;
    struct Object {
        Side row;
        /** Records by name, and texts by column and locale. */
        Parts records, texts;
        bool order = false;

        /** Stands in both states, below one parent, among siblings that are numbered. */
        bool StaysNumbered() const;
        bool IsAnotherNow() const { return row.before.row && row.after.row && row.before.table != row.after.table; }
        /** What it has on one side only. */
        Object Half(Version Side::*side) const;
    };

    void Take(const RowTable& table, const char* row, Version Side::*side);
    using Ids = std::unordered_set<std::string_view>;
    /** Objects that have another number and the same place among those of their siblings that both states have. */
    Ids OnlyRenumbered(const NameIndex& names) const;
    /** `renumbered` rows have a number that tells nothing. */
    static void AddColumns(const Side& side, bool renumbered, std::vector<SMRepositoryValue>& values);
    static void AddPart(const std::string& name, const Side& side, std::vector<SMRepositoryValue>& values);
    static void AddChange(const std::string& id, const Object& object, const NameIndex& names, bool renumbered,
                          std::vector<SMRepositoryChange>& changes);

    std::map<std::string, Object> m_objects;
    std::vector<const char*> m_shared;
};

}  // namespace qv
