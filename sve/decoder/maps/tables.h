// The constant tables of the decode maps, one for each, named by the bit ranges of the map's key.
#pragma once

#include <span>

#include "sve/decoder/decode_row.h"

// Every map by its key's name, in lookup order: by decreasing number of fixed bits, so that the most specific pattern
// would win if two ever overlapped.
// clang-format off
#define QUERN_DECODE_MAPS(MAP) \
  MAP(31_0) MAP(31_9__4_0) MAP(31_4) MAP(31_14__9_9__4_0) MAP(31_9__4_4) MAP(31_10__4_4) MAP(31_9) \
  MAP(31_13__9_6) MAP(31_21__15_10__4_0) MAP(31_10) MAP(31_13__9_8) MAP(31_11) MAP(31_24__21_10) \
  MAP(31_20__15_9__4_4) MAP(31_14__9_9__4_4) MAP(31_13__4_4) MAP(31_13__9_9) MAP(31_14__9_9) MAP(31_19__15_10) \
  MAP(31_24__21_21__19_10) MAP(31_13) MAP(31_17__15_13) MAP(31_14) MAP(31_23__21_13) MAP(31_20__15_10) \
  MAP(31_24__21_21__18_10) MAP(31_21__15_10__4_4) MAP(31_24__21_21__17_10) MAP(31_21__15_10) MAP(31_21__15_11) \
  MAP(31_20__15_14__9_9__4_4) MAP(31_24__21_21__16_10) MAP(31_23__21_21__15_10) MAP(31_21__15_13__4_4) \
  MAP(31_21__15_12) MAP(31_20__15_13) MAP(31_21__15_13) MAP(31_20__15_14) MAP(31_18) MAP(31_22__15_13__4_4) \
  MAP(31_21__15_14) MAP(31_21__13_13__4_4) MAP(31_22__15_13) MAP(31_21__15_15)
// clang-format on

namespace quern {
#define DECLARE(key) extern const std::span<const decode_row> rows__##key;
QUERN_DECODE_MAPS(DECLARE)
#undef DECLARE
}  // namespace quern

// Defines the table of the map KEY, which has COUNT rows: those of the forms that follow.
#define QUERN_DECODE_TABLE(key, count, ...)                                             \
  static constexpr auto table__##key = decode_rows<count>(key_bits{#key}, __VA_ARGS__); \
  constinit const std::span<const decode_row> rows__##key = table__##key;
