#pragma once

#include <string_view>
#include <vector>

#include "core/repository/backend.h"

namespace qv {

/** Not "current_role", which is a word of SQL's own: stores up to format 1 have it under that name. */
inline constexpr std::string_view ITEM_ROLE_VIEW = "current_item_role";

/** A view for each kind of rows that shows its current state: what people look at with plain SQL. */
std::vector<ViewShape> CurrentViews();

}  // namespace qv
