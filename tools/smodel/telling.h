#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/repository/smrepositoryhistory.h"

#include <nlohmann/json.hpp>

/** A change for people: a line for the object, and below it one for each value, or a few where a value is long. */
std::string Told(const SMRepositoryChange& change);
nlohmann::ordered_json Json(const std::vector<SMRepositoryChange>& changes);

/** The lines by which two documents differ, each tag on a line of its own; empty when they are the same. `indent` stands before each. */
std::string DocumentDiff(std::string_view before, std::string_view after, const std::string& indent);
