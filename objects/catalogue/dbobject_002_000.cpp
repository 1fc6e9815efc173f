#include "objects/catalogue/dbobject_002_000.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace schema_002_000 {

namespace {

struct NamedType {
    EDB_TYPE type;
    std::string_view name;
};

constexpr NamedType TYPES[] = {
#define SM_DB_KIND(NUMBER, NAME, FIXED_ID) {EDB_TYPE::NAME, #NAME},
#include "objects/catalogue/edbtype_list.inc"
};

constexpr bool NameLess(const NamedType& a, const NamedType& b) {
    return a.name < b.name;
}

constexpr auto TYPES_BY_NAME = [] {
    std::array<NamedType, std::size(TYPES)> sorted{};
    std::copy(std::begin(TYPES), std::end(TYPES), sorted.begin());
    std::sort(sorted.begin(), sorted.end(), NameLess);
    return sorted;
}();

static_assert(std::is_sorted(std::begin(TYPES), std::end(TYPES), [](const NamedType& a, const NamedType& b) { return a.type < b.type; }));
constexpr std::size_t NUMBERS = static_cast<std::size_t>(std::end(TYPES)[-1].type) + 1;

/** By number; a number without a name has "null". */
std::array<I18NString, NUMBERS> MakeNames() {
    std::array<I18NString, NUMBERS> names;
    names.fill(I18NString::Immortal("null"));
    for (const NamedType& named : TYPES) names[static_cast<std::size_t>(named.type)] = I18NString::Immortal(named.name);
    return names;
}

}  // namespace

const I18NString DBObject::HIERARCHY = I18NString::Immortal("hierarchy");
const I18NString DBObject::HIERARCHY_VIEW = I18NString::Immortal("hierarchy_view");

EDB_TYPE DBObject::String2DT(const I18NString& text) {
    const NamedType wanted{EDB_TYPE::unknown, text.utf8()};
    const auto found = std::lower_bound(TYPES_BY_NAME.begin(), TYPES_BY_NAME.end(), wanted, NameLess);
    return found != TYPES_BY_NAME.end() && found->name == wanted.name ? found->type : EDB_TYPE::unknown;
}

const I18NString& DBObject::DT2String(EDB_TYPE type) {
    static const auto& names = *new const auto(MakeNames());  // never destroyed: others read it at their own end
    const auto number = static_cast<std::size_t>(type);
    return names[number < names.size() ? number : 0];
}

I18NString DBObject::toString(const I18NString& indent) const {
    return indent + DT2String(m_type) + " '" + m_name + "'";
}

}  // namespace schema_002_000
