#pragma once

#include "objects/base/smenum_002_000.h"

/** The value enumerations of the model: one class per closed vocabulary, all with the interface of SM_ENUM_MEMBERS. */
namespace schema_002_000 {

// clang-format off
#define SM_ENUM_BEGIN(CLASS) class SM_API CLASS { public: enum Enum : int {
#define SM_ENUM_VALUE(NUMBER, IDENTIFIER, TEXT) IDENTIFIER = NUMBER,
#define SM_ENUM_END(CLASS) }; SM_ENUM_MEMBERS(CLASS) };
// clang-format on
#include "objects/base/smenums_list.inc"

}  // namespace schema_002_000
