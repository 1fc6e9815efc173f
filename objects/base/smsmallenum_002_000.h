#pragma once

#include <cstdint>

#include "objects/base/smenum_002_000.h"

namespace schema_002_000 {

/** An enumerator of E in one byte, -1 when unset: models hold these by the million. Reads and writes as the enumerator. */
template <class E>
class SMSmallEnum {
  public:
    using Enum = typename E::Enum;

    constexpr SMSmallEnum() noexcept = default;
    constexpr SMSmallEnum(Enum number) noexcept : m_number(static_cast<std::int8_t>(number)) {}
    constexpr operator Enum() const noexcept { return static_cast<Enum>(m_number); }

  private:
    std::int8_t m_number = -1;
};

/** The text of the enumerator, empty when unset. */
template <class E>
const I18NString& EnumText(SMSmallEnum<E> number) {
    return EnumText<E>(static_cast<typename E::Enum>(number));
}

}  // namespace schema_002_000
