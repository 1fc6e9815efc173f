#include "core/qvutils/base/tkldbtypes.h"

#include <array>
#include <cstddef>

namespace {

/** By number; a number without a name has null. */
constexpr const char* NAMES[] = {
    "unknown", "char",      "varchar", "smallint", "integer",   "bigint",   "decimal",  "float", "real", "double",
    "binary",  "varbinary", "date",    "time",     "timestamp", "interval", "boolean",  "clob",  "blob", nullptr,
    nullptr,   nullptr,     nullptr,   nullptr,    nullptr,     "nchar",    "nvarchar", "nclob",
};

std::array<I18NString, std::size(NAMES)> MakeTexts() {
    std::array<I18NString, std::size(NAMES)> texts;
    for (std::size_t number = 0; number < texts.size(); ++number)
        texts[number] = I18NString::Immortal(NAMES[number] ? NAMES[number] : NAMES[0]);
    return texts;
}

}  // namespace

TklDBTypes* TklDBTypes::get() {
    static TklDBTypes instance;
    return &instance;
}

const I18NString& TklDBTypes::getName(SqlColType type) const {
    static const auto& texts = *new const auto(MakeTexts());  // never destroyed: others read it at their own end
    const auto number = static_cast<std::size_t>(type);
    return texts[number < texts.size() ? number : 0];
}
