#pragma once

#include <span>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/** What a column holds, as a kind of value. */
enum class CellKind : unsigned char { text, number, flag, date };

/** Where the mapping of a kind lists a row key. The last three stand beside the groups; `none` is not handed back at all. */
enum class KeyGroup : unsigned char { attribute, simple, mixed, lang, property, order, objectType, object, none };

/** How a column behaves when a row of memory is compared with the stored one. */
enum class Comparing : unsigned char {
    whole,
    /** A version of another row: it never makes a row differ. */
    never,
    /** A stored value outlives memory that has none: readers cannot bring it back, so its absence says nothing. */
    unlessUnset,
    /** An empty stored text and none are the same: readers make none of it. */
    emptyAsUnset
};

/** One column of a model table, and the key under which a row hands its value back. */
struct CatalogueColumn {
    /** Empty: there is no column, and rows hand the key back as null because readers ask for it. */
    std::string_view name;
    CellKind kind;
    /** Empty: the column is only written. */
    std::string_view key;
    KeyGroup group;
    /** What a reader gets; differs from `kind` where readers expect another. */
    CellKind readAs;
    Comparing comparing = Comparing::whole;
};

/**
 * A table of the model. Its id, version and parent columns stand apart from the others: they make up a row's key and its place
 * in the tree. A table without parent columns has them empty.
 */
struct CatalogueTable {
    std::string_view name, id, version, parentId, parentVersion;
    /** Each parent has its own ids (records of remaining info are known by their owner and their name). */
    bool idWithinParent;
    std::span<const CatalogueColumn> columns;
};

/** A kind of rows that a reader asks for: a table and, where several kinds share it, the column that tells them apart. */
struct CatalogueKind {
    std::string_view tag, table;
    /** Empty: all rows. */
    std::string_view typeColumn, type;
    /** Its rows hand back the key "object_type" made from other rows. */
    bool computedType = false;
};

/** Records of remaining info, and rows below a table, that a model writes and no reader asks for: they outlive a save without them. */
struct UnreadChild {
    std::string_view parentTable, childTable;
};

SM_API std::span<const CatalogueTable> CatalogueTables();
SM_API std::span<const CatalogueKind> CatalogueKinds();
SM_API std::span<const std::string_view> UnreadRecords();
SM_API std::span<const UnreadChild> UnreadChildren();

/** Null when there is none of the name. Names are exact. */
SM_API const CatalogueTable* FindTable(std::string_view name);
SM_API const CatalogueKind* FindKind(std::string_view tag);
/** By name, without regard to ASCII case. */
SM_API const CatalogueColumn* FindColumn(const CatalogueTable& table, std::string_view name);
/** By row key, without regard to ASCII case; the keys "id" and "version" of every table are no columns of this list. */
SM_API const CatalogueColumn* FindKey(const CatalogueTable& table, std::string_view key);
SM_API std::string_view NameOf(CellKind kind);

/** Names of the tables that hold what is no row of an object. */
inline constexpr std::string_view REMAIN_INFO = "SM_REMAIN_INFO";
inline constexpr std::string_view LANG_TEXT = "SM_LANG_TEXT";

}  // namespace qv
