#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/qvutils/base/smapi.h"

namespace qv {

/**
 * Names of files that are made from names of objects, without directory and extension. They are good on every file system, the same
 * on every run, and different for different names, also where a file system does not keep case.
 *
 *     name      = "%" | stem [ "~" case ] [ "~~" number ]          for a name of moderate length; "%" stands for the empty one
 *               | head "~~" digest [ "~~" number ]                 for an over-long one
 *     stem      letters, digits, blank, "_", "-" and "." of ASCII stand for themselves; every other byte of the UTF-8 text, a blank or
 *               point at either end, and the first byte of a name that some system takes for a device ("CON", "com1.x") is "%XX".
 *     case      one bit a letter, from the first to the last, as hexadecimal digits without the zeros at the end: set where the letter
 *               departs from upper case at the beginning of a word and lower case inside it. Nothing is written when none is set.
 *     digest    the first half of the SHA-256 digest of the whole name, as 32 hexadecimal digits.
 *     number    from 2 on, in decimal: tells objects of one and the same name apart.
 *
 * Since all that is not ASCII is escaped byte by byte, texts that only look alike (composed and decomposed accents) stay apart.
 */
class SM_API ObjectFileName {
  public:
    /** Bytes of the longest name made by `Of`: with a number and an extension it stays below the 255 that file systems allow. */
    static constexpr std::size_t LONGEST = 200;

    static std::string Of(std::string_view objectName);
    /** The file of the `number`th object of that name. The first one has the name itself. */
    static std::string Of(std::string_view objectName, std::size_t number);
    /** The name of the object, also from a file name whose case was lost; null for one that was cut, and for one never made here. */
    static std::optional<std::string> ObjectNameOf(std::string_view fileName);
};

}  // namespace qv
