#pragma once

#include <string>

namespace qv {

/** "file:line:column", leaving out what is not known; a column needs its line. */
inline std::string PlaceText(const std::string& file, long line, long column) {
    std::string place = file;
    for (const long number : {line, column}) {
        if (number <= 0) break;
        if (!place.empty()) place.append(":");
        place.append(std::to_string(number));
    }
    return place;
}

}  // namespace qv
