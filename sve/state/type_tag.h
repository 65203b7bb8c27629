// The type tags in the names of thunks and library functions: the element type that an instruction works on.
#pragma once

#include <cstdint>

#include "sve/state/operands.h"

namespace quern {

// A tag's text, its element size code, and the value of an encoding's size field that selects it: by default the code.
struct type_tag {
  char text[6];
  std::uint8_t size;
  std::uint8_t opcode;

  consteval type_tag at(std::uint32_t field_value) const {
    type_tag other = *this;
    other.opcode = static_cast<std::uint8_t>(field_value);
    return other;
  }
  // The tag itself, whichever value of a size field selects it.
  consteval type_tag plain() const { return at(size == size_q ? 0 : size); }
  constexpr bool operator==(const type_tag&) const = default;
};

// Unsigned or sign-less, and signed, integers.
inline constexpr type_tag U8{"U8", size_b, 0}, U16{"U16", size_h, 1}, U32{"U32", size_s, 2}, U64{"U64", size_d, 3};
inline constexpr type_tag S8{"S8", size_b, 0}, S16{"S16", size_h, 1}, S32{"S32", size_s, 2}, S64{"S64", size_d, 3};
inline constexpr type_tag U128{"U128", size_q, 0};
// Half, single and double precision; single and half values in wider lanes; bytes.
inline constexpr type_tag F16{"F16", size_h, 1}, F32{"F32", size_s, 2}, D64{"D64", size_d, 3}, F64{"F64", size_d, 3};
inline constexpr type_tag B8{"B8", size_b, 0}, H16{"H16", size_h, 1}, H32{"H32", size_s, 2}, H64{"H64", size_d, 3};
// Conversions to integers: lane width, and the result's bytes.
inline constexpr type_tag S16_2{"S16_2", size_h, 1}, S32_4{"S32_4", size_s, 2}, S64_4{"S64_4", size_d, 3},
    S64_8{"S64_8", size_d, 3};
inline constexpr type_tag U16_2{"U16_2", size_h, 1}, U32_4{"U32_4", size_s, 2}, U64_4{"U64_4", size_d, 3},
    U64_8{"U64_8", size_d, 3};
// Predicates, without and with elements.
inline constexpr type_tag P{"P", size_b, 0};
inline constexpr type_tag P8{"P8", size_b, 0}, P16{"P16", size_h, 1}, P32{"P32", size_s, 2}, P64{"P64", size_d, 3};

}  // namespace quern
