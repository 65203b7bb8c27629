// The lane types that the type tags of function names stand for. Floating-point lanes are raw bits.
#pragma once

#include <cstdint>

namespace quern::veclib::tags {

using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = std::uint64_t;
struct U128 {
  std::uint64_t low, high;
};
using S8 = std::int8_t;
using S16 = std::int16_t;
using S32 = std::int32_t;
using S64 = std::int64_t;
using F16 = std::uint16_t;
using F32 = std::uint32_t;
using D64 = std::uint64_t;
// Of a number held in a wider lane, and of the result of a conversion, the number: the lane follows from it and from
// what it was converted from.
using F64 = std::uint32_t;
using H32 = std::uint16_t;
using H64 = std::uint16_t;
using S16_2 = std::int16_t;
using U16_2 = std::uint16_t;
using S32_4 = std::int32_t;
using U32_4 = std::uint32_t;
using S64_4 = std::int32_t;
using U64_4 = std::uint32_t;
using S64_8 = std::int64_t;
using U64_8 = std::uint64_t;
using B8 = std::uint8_t;
using H16 = std::uint16_t;
using P = std::uint8_t;
using P8 = std::uint8_t;
using P16 = std::uint16_t;
using P32 = std::uint32_t;
using P64 = std::uint64_t;

}  // namespace quern::veclib::tags
