#pragma once

#include <string>

#include <nlohmann/json.hpp>

/** Bytes that are no UTF-8 are replaced. `indent` -1: one line. */
inline std::string JsonText(const nlohmann::ordered_json& json, int indent = 2) {
    return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}
