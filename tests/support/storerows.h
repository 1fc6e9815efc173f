#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/repository/backend.h"

using StoreTables = std::vector<qv::TableShape>;

/** Every row of a store, ended ones too, a line each below the name of its table and in the order of the text. */
std::string RowsOf(qv::StoreBackend& backend, const StoreTables& tables);
/** The same for stores of one model that was saved at different times: moments of saves and fresh ids are told alike. */
std::string RowsButForTimes(qv::StoreBackend& backend, const StoreTables& tables);
/** Sets a column in the rows of a table in which another column has a text; in all rows when `where` is empty. */
void SetInRows(qv::StoreBackend& backend, const StoreTables& tables, std::string_view table, std::string_view column, const qv::Cell& value,
               std::string_view where = {}, std::string_view text = {});
