#pragma once

#include <vector>

#include "core/repository/backend.h"

namespace qv {

/** A view for each kind of rows that shows its current state: what people look at with plain SQL. */
std::vector<ViewShape> CurrentViews();

}  // namespace qv
