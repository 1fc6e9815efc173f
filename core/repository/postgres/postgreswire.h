#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/repository/backend.h"

namespace qv::postgres {

using TypeId = unsigned int;

/** What the server calls a type, and arrays of it. */
TypeId TypeOf(ColumnType type);
TypeId ArrayTypeOf(ColumnType type);

void PutInt16(std::string& out, std::int16_t value);
void PutInt32(std::string& out, std::int32_t value);
/** A value in binary form, its length first. Raises when it is no value of the column's type, or one that the server cannot hold. */
void PutCell(std::string& out, const Cell& cell, const TableShape::Column& column);
/** The cell of a value in binary form; a text is borrowed. */
Cell GetCell(const char* bytes, int length, ColumnType type);

/** Values of one column in the binary form of an array. */
class WireArray {
  public:
    explicit WireArray(ColumnType type);
    void Add(const Cell& cell, const TableShape::Column& column);
    /** Completes the form. The bytes are good until the next change. */
    std::string_view Bytes();
    void Clear();

  private:
    std::string m_bytes;
    TypeId m_type;
    std::int32_t m_count = 0;
    bool m_hasNull = false;
};

/** The parameters of a statement, in binary form. */
class WireParameters {
  public:
    void Add(const Cell& cell, const TableShape::Column& column);
    /** The bytes are copied. */
    void AddArray(ColumnType type, std::string_view bytes);

    int Count() const { return static_cast<int>(m_types.size()); }
    const TypeId* Types() const { return m_types.data(); }
    const int* Lengths() const { return m_lengths.data(); }
    /** All are binary. */
    const int* Formats() const { return m_formats.data(); }
    /** Good until the next change. */
    std::vector<const char*> Values() const;

  private:
    std::string m_bytes;
    std::vector<TypeId> m_types;
    std::vector<int> m_lengths, m_formats;
    /** Places in the bytes; -1 for null. */
    std::vector<std::ptrdiff_t> m_places;
};

}  // namespace qv::postgres
