#pragma once

#include "core/repository/backend.h"

namespace qv::sqlite {

/** The statements of SQLite for what the interface describes. They hold names of tables and columns and places of parameters. */
std::string CreateTable(const TableShape& table);
std::string AddColumn(const TableShape& table, const TableShape::Column& column);
std::string CreateView(const ViewShape& view);
std::string Select(const Query& query);
std::string Update(const Change& change);
std::string Delete(const Removal& removal);
std::string Insert(const TableShape& table);

}  // namespace qv::sqlite
