#include "core/repository/rowcodec.h"

#include <cstring>

namespace qv {

namespace {

/** The first byte of a number: null, the number itself when it is small, or how many bytes of it follow. */
constexpr unsigned char NULL_NUMBER = 0, SMALL = 247;

constexpr std::size_t MAX_NUMBER = 9;
constexpr std::size_t MAX_LENGTH = 6;

char* PutNumber(char* at, std::int64_t value) {
    if (value >= 0 && value < SMALL) {
        *at++ = static_cast<char>(value + 1);
        return at;
    }
    int bytes = 1;
    while (bytes < 8 && value >> (8 * bytes - 1) != (value < 0 ? -1 : 0)) ++bytes;
    *at++ = static_cast<char>(SMALL + bytes);
    std::memcpy(at, &value, static_cast<std::size_t>(bytes));
    return at + bytes;
}

const char* GetNumber(const char* at, Cell& cell) {
    const auto first = static_cast<unsigned char>(*at++);
    if (first == NULL_NUMBER) {
        cell = {};
        return at;
    }
    cell.kind = Cell::integer;
    if (first <= SMALL) {
        cell.number = first - 1;
        return at;
    }
    const int bytes = first - SMALL;
    cell.number = 0;
    std::memcpy(&cell.number, at, static_cast<std::size_t>(bytes));
    const int unused = 64 - 8 * bytes;
    cell.number = static_cast<std::int64_t>(static_cast<std::uint64_t>(cell.number) << unused) >> unused;
    return at + bytes;
}

/** A text's length plus one, so that zero is the null text. */
char* PutText(char* at, std::string_view text) {
    std::uint64_t length = text.size() + 1;
    for (; length >= 0x80; length >>= 7) *at++ = static_cast<char>(length | 0x80);
    *at++ = static_cast<char>(length);
    if (!text.empty()) std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

const char* GetText(const char* at, Cell& cell) {
    std::uint64_t length = 0;
    int shift = 0;
    unsigned char byte;
    do {
        byte = static_cast<unsigned char>(*at++);
        length |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
        shift += 7;
    } while (byte & 0x80);
    if (length == 0) {
        cell = {};
        return at;
    }
    cell = Cell::Text({at, length - 1});
    return at + length - 1;
}

char* Put(char* at, const Cell& cell) {
    switch (cell.kind) {
    case Cell::integer: return PutNumber(at, cell.number);
    case Cell::text: return PutText(at, cell.view);
    case Cell::null: break;
    }
    *at++ = 0;
    return at;
}

const char* Get(const char* at, const CatalogueColumn& column, Cell& cell) {
    return column.kind == CellKind::text ? GetText(at, cell) : GetNumber(at, cell);
}

/** Stands before the rest of a row: the bytes of the whole. */
using Length = std::uint32_t;

/** Walks from the start of a row over its id and versions, handing the latter to `take`. */
template <class Take>
const char* Versions(const RowTable& table, const char* row, RowHead& head, Take&& take) {
    Cell cell;
    const char* at = GetText(row + sizeof(Length), cell);
    head.id = cell.view;
    at = GetNumber(at, cell);
    head.version = cell.number;
    if (table.hasParent) {
        at = GetNumber(at, cell);
        head.parentVersion = cell.number;
    }
    for (const std::size_t column : table.versions) {
        at = Get(at, *table.columns[column], cell);
        take(column, cell);
    }
    return at;
}

const char* Body(const RowTable& table, const char* row) {
    RowHead head;
    return Versions(table, row, head, [](std::size_t, const Cell&) {});
}

}  // namespace

namespace rowcodec {

const char* Encode(RowArena& arena, const RowTable& table, const RowHead& head, std::span<const Cell> cells) {
    std::size_t most = sizeof(Length) + 2 * (MAX_LENGTH + MAX_NUMBER) + head.id.size() + head.parentId.size() + cells.size() * MAX_NUMBER;
    for (const Cell& cell : cells) most += cell.view.size();
    char* const row = arena.Reserve(most);

    char* at = PutText(row + sizeof(Length), head.id);
    at = PutNumber(at, head.version);
    if (table.hasParent) at = PutNumber(at, head.parentVersion);
    for (const std::size_t column : table.versions) at = Put(at, cells[column]);
    if (table.hasParent) at = PutText(at, head.parentId);
    for (const std::size_t column : table.body) at = Put(at, cells[column]);

    const auto size = static_cast<Length>(at - row);
    std::memcpy(row, &size, sizeof(Length));
    arena.Commit(size);
    return row;
}

std::size_t Size(const char* row) {
    Length size;
    std::memcpy(&size, row, sizeof(Length));
    return size;
}

std::string_view Id(const char* row) {
    Cell cell;
    GetText(row + sizeof(Length), cell);
    return cell.view;
}

std::int64_t Version(const char* row) {
    Cell cell;
    GetNumber(GetText(row + sizeof(Length), cell), cell);
    return cell.number;
}

std::string_view ParentId(const RowTable& table, const char* row) {
    if (!table.hasParent) return {};
    Cell cell;
    GetText(Body(table, row), cell);
    return cell.view;
}

RowHead Head(const RowTable& table, const char* row) {
    RowHead head;
    const char* const body = Versions(table, row, head, [](std::size_t, const Cell&) {});
    if (table.hasParent) {
        Cell cell;
        GetText(body, cell);
        head.parentId = cell.view;
    }
    return head;
}

void Cells(const RowTable& table, const char* row, std::span<Cell> cells) {
    RowHead head;
    const char* at = Versions(table, row, head, [&](std::size_t column, const Cell& cell) { cells[column] = cell; });
    Cell parent;
    if (table.hasParent) at = GetText(at, parent);
    for (const std::size_t column : table.body) at = Get(at, *table.columns[column], cells[column]);
}

Cell BodyCell(const RowTable& table, const char* row, std::size_t column) {
    const char* at = Body(table, row);
    Cell cell;
    if (table.hasParent) at = GetText(at, cell);
    for (const std::size_t other : table.body) {
        at = Get(at, *table.columns[other], cell);
        if (other == column) return cell;
    }
    return {};
}

bool SameBody(const RowTable& table, std::string_view parentId, std::span<const Cell> cells, const char* row) {
    const char* at = Body(table, row);
    Cell stored;
    if (table.hasParent) {
        at = GetText(at, stored);
        if (stored.view != parentId) return false;
    }
    for (const std::size_t column : table.body) {
        at = Get(at, *table.columns[column], stored);
        const Cell& cell = cells[column];
        if (stored.kind != cell.kind) return false;
        if (stored.kind == Cell::text ? stored.view != cell.view : stored.kind == Cell::integer && stored.number != cell.number)
            return false;
    }
    return true;
}

}  // namespace rowcodec

void PrintMoment(std::int64_t moment, char (&out)[MOMENT_SIZE]) {
    static constexpr char PATTERN[] = "0000-00-00T00:00:00";
    for (std::size_t at = MOMENT_SIZE; at-- > 0;) {
        out[at] = PATTERN[at];
        if (PATTERN[at] != '0') continue;
        out[at] = static_cast<char>('0' + moment % 10);
        moment /= 10;
    }
}

Cell ReadMoment(std::string_view text) {
    static constexpr char PATTERN[] = "0000-00-00T00:00:00";
    if (text.size() != MOMENT_SIZE) return {};
    std::int64_t moment = 0;
    for (std::size_t at = 0; at < MOMENT_SIZE; ++at) {
        if (PATTERN[at] == '0') {
            if (text[at] < '0' || text[at] > '9') return {};
            moment = moment * 10 + (text[at] - '0');
        } else if (text[at] != PATTERN[at]) {
            return {};
        }
    }
    return Cell::Number(moment);
}

}  // namespace qv
