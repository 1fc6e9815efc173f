#pragma once

#include <span>

#include "core/repository/rowarena.h"
#include "core/repository/schema.h"

namespace qv {

/** Key and place of a row. Texts are borrowed. */
struct RowHead {
    std::string_view id;
    std::int64_t version = 0;
    std::string_view parentId;
    std::int64_t parentVersion = 0;
};

/**
 * The compact form of a row: its id and all versions, then the body, which holds what makes a row differ from another. Two
 * rows of a table are equal but for id and versions when their bodies have the same bytes. The form never leaves the process.
 */
namespace rowcodec {

/** `cells` are those of the table's columns. */
const char* Encode(RowArena& arena, const RowTable& table, const RowHead& head, std::span<const Cell> cells);
std::size_t Size(const char* row);
std::string_view Id(const char* row);
std::int64_t Version(const char* row);
std::string_view ParentId(const RowTable& table, const char* row);
RowHead Head(const RowTable& table, const char* row);
void Cells(const RowTable& table, const char* row, std::span<Cell> cells);
/** One cell of the body. */
Cell BodyCell(const RowTable& table, const char* row, std::size_t column);
/** The same for a row that is not in its compact form. */
bool SameBody(const RowTable& table, std::string_view parentId, std::span<const Cell> cells, const char* row);

}  // namespace rowcodec

/** The text of a moment's number, "yyyy-MM-ddTHH:mm:ss". */
inline constexpr std::size_t MOMENT_SIZE = 19;
void PrintMoment(std::int64_t moment, char (&out)[MOMENT_SIZE]);
/** The null cell when the text is no moment. */
Cell ReadMoment(std::string_view text);

}  // namespace qv
