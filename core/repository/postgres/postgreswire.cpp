#include "core/repository/postgres/postgreswire.h"

#include <chrono>
#include <cstring>

namespace qv::postgres {

namespace {

using std::chrono::sys_days;

/** The server counts microseconds from here. */
constexpr sys_days EPOCH = std::chrono::year{2000} / 1 / 1;
constexpr std::int64_t MICROSECONDS = 1'000'000;
constexpr std::int64_t DAY_SECONDS = 24 * 60 * 60;

/** Bytes before the first element of an array: its dimensions, whether there are nulls, the type, the count, the first index. */
constexpr std::size_t ARRAY_HEAD = 20;

template <class Integer>
void Store(char* to, Integer value) {
    for (std::size_t at = 0; at < sizeof value; ++at) to[at] = static_cast<char>(value >> (8 * (sizeof value - 1 - at)));
}

template <class Integer>
void Put(std::string& out, Integer value) {
    char bytes[sizeof value];
    Store(bytes, value);
    out.append(bytes, sizeof bytes);
}

std::int64_t ReadNumber(const char* bytes, int length) {
    std::uint64_t value = 0;
    for (int at = 0; at < length; ++at) value = value << 8 | static_cast<unsigned char>(bytes[at]);
    return static_cast<std::int64_t>(value);
}

[[noreturn]] void Refuse(const TableShape::Column& column, const char* what) {
    throw StoreError("Column " + column.name + ": " + what);
}

std::int64_t MicrosecondsOf(std::int64_t moment, const TableShape::Column& column) {
    const auto take = [&moment](int base) {
        const std::int64_t field = moment % base;
        moment /= base;
        return static_cast<unsigned>(field);
    };
    const unsigned second = take(100), minute = take(100), hour = take(100), day = take(100), month = take(100);
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(moment)), std::chrono::month(month), std::chrono::day(day)};
    if (moment < 1 || moment > 9999 || !date.ok() || hour > 23 || minute > 59 || second > 59) Refuse(column, "it takes a moment.");
    const std::int64_t seconds = (sys_days(date) - EPOCH).count() * DAY_SECONDS + hour * 3600 + minute * 60 + second;
    return seconds * MICROSECONDS;
}

/** Null for what is no moment of a model. */
Cell MomentOf(std::int64_t microseconds) {
    const std::int64_t seconds = microseconds >= 0 ? microseconds / MICROSECONDS : -((-microseconds + MICROSECONDS - 1) / MICROSECONDS);
    const std::int64_t days = seconds >= 0 ? seconds / DAY_SECONDS : -((-seconds + DAY_SECONDS - 1) / DAY_SECONDS);
    constexpr std::int64_t MOST_DAYS = 4'000'000;
    if (days > MOST_DAYS || days < -MOST_DAYS) return {};
    const std::chrono::year_month_day date(EPOCH + std::chrono::days(days));
    const std::int64_t inDay = seconds - days * DAY_SECONDS;
    std::int64_t number = static_cast<int>(date.year());
    if (number < 1 || number > 9999) return {};
    number = number * 100 + static_cast<unsigned>(date.month());
    number = number * 100 + static_cast<unsigned>(date.day());
    number = number * 100 + inDay / 3600;
    number = number * 100 + inDay / 60 % 60;
    return Cell::Number(number * 100 + inDay % 60);
}

}  // namespace

TypeId TypeOf(ColumnType type) {
    switch (type) {
    case ColumnType::integer: return 20;
    case ColumnType::flag: return 16;
    case ColumnType::moment: return 1114;
    case ColumnType::bytes: return 17;
    case ColumnType::text: break;
    }
    return 25;
}

TypeId ArrayTypeOf(ColumnType type) {
    switch (type) {
    case ColumnType::integer: return 1016;
    case ColumnType::flag: return 1000;
    case ColumnType::moment: return 1115;
    case ColumnType::bytes: return 1001;
    case ColumnType::text: break;
    }
    return 1009;
}

void PutInt16(std::string& out, std::int16_t value) {
    Put(out, static_cast<std::uint16_t>(value));
}

void PutInt32(std::string& out, std::int32_t value) {
    Put(out, static_cast<std::uint32_t>(value));
}

void PutCell(std::string& out, const Cell& cell, const TableShape::Column& column) {
    if (cell.kind == Cell::null) return PutInt32(out, -1);
    const bool isText = column.type == ColumnType::text || column.type == ColumnType::bytes;
    if ((cell.kind == Cell::text) != isText) Refuse(column, "the value is of another kind.");
    if (isText) {
        if (column.type == ColumnType::text && !cell.view.empty() && std::memchr(cell.view.data(), 0, cell.view.size()))
            Refuse(column, "the text holds the character U+0000, which this store cannot keep.");
        if (cell.view.size() > INT32_MAX) Refuse(column, "the text is too long.");
        PutInt32(out, static_cast<std::int32_t>(cell.view.size()));
        out.append(cell.view);
    } else if (column.type == ColumnType::flag) {
        PutInt32(out, 1);
        out.push_back(cell.number != 0);
    } else {
        PutInt32(out, 8);
        Put(out, static_cast<std::uint64_t>(column.type == ColumnType::moment ? MicrosecondsOf(cell.number, column) : cell.number));
    }
}

Cell GetCell(const char* bytes, int length, ColumnType type) {
    switch (type) {
    case ColumnType::integer: return Cell::Number(ReadNumber(bytes, length));
    case ColumnType::flag: return Cell::Number(length == 1 && *bytes != 0);
    case ColumnType::moment: return MomentOf(ReadNumber(bytes, length));
    case ColumnType::bytes:
    case ColumnType::text: break;
    }
    return Cell::Text({bytes, static_cast<std::size_t>(length)});
}

WireArray::WireArray(ColumnType type) : m_bytes(ARRAY_HEAD, '\0'), m_type(TypeOf(type)) {}

void WireArray::Add(const Cell& cell, const TableShape::Column& column) {
    PutCell(m_bytes, cell, column);
    m_hasNull |= cell.kind == Cell::null;
    ++m_count;
}

std::string_view WireArray::Bytes() {
    const std::uint32_t head[] = {1, m_hasNull, m_type, static_cast<std::uint32_t>(m_count), 1};
    static_assert(sizeof head == ARRAY_HEAD);
    for (std::size_t at = 0; at < std::size(head); ++at) Store(m_bytes.data() + at * sizeof *head, head[at]);
    return m_bytes;
}

void WireArray::Clear() {
    m_bytes.resize(ARRAY_HEAD);
    m_count = 0;
    m_hasNull = false;
}

void WireParameters::Add(const Cell& cell, const TableShape::Column& column) {
    const std::size_t before = m_bytes.size();
    PutCell(m_bytes, cell, column);
    const std::size_t value = before + sizeof(std::int32_t);
    m_types.push_back(TypeOf(column.type));
    m_places.push_back(cell.kind == Cell::null ? -1 : static_cast<std::ptrdiff_t>(value));
    m_lengths.push_back(static_cast<int>(m_bytes.size() - value));
    m_formats.push_back(1);
}

void WireParameters::AddArray(ColumnType type, std::string_view bytes) {
    m_types.push_back(ArrayTypeOf(type));
    m_places.push_back(static_cast<std::ptrdiff_t>(m_bytes.size()));
    m_lengths.push_back(static_cast<int>(bytes.size()));
    m_formats.push_back(1);
    m_bytes += bytes;
}

std::vector<const char*> WireParameters::Values() const {
    std::vector<const char*> values;
    for (const std::ptrdiff_t place : m_places) values.push_back(place < 0 ? nullptr : m_bytes.data() + place);
    return values;
}

}  // namespace qv::postgres
