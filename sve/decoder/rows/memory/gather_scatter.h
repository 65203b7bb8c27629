// Rows of gathers and scatters.
#pragma once

#include "sve/decoder/rows/memory/element_type.h"
#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/gather_scatter.h"
#include "sve/veclib/memory/gather_scatter.h"

namespace quern::rows {

// Of gathers field z is the lane (1: 64 bits), the memory element's size, and whether it is not sign-extended; of
// first-fault ones too, which have bit 13 set.
template <class T, class U>
constexpr type_tag gathered = element_type<T, U>().at((sizeof(U) == 8 ? 0b1'00'0 : 0) | size_code<T> << 1 |
                                                      (std::is_signed_v<T> ? 0 : 1));
constexpr encoding ld_by_address = "1z00010 zz 01 iiiii 1z0 ggg nnnnn ttttt";
constexpr encoding ld_by_offset = "1z00010 zz 10 mmmmm 1z0 ggg nnnnn ttttt";
constexpr encoding ld_by_sxtw = "1z00010 zz 10 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_by_uxtw = "1z00010 zz 00 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_by_index = "1z00010 zz 11 mmmmm 1z0 ggg nnnnn ttttt";
constexpr encoding ld_by_sxtw_index = "1z00010 zz 11 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_by_uxtw_index = "1z00010 zz 01 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_address = "1z00010 zz 01 iiiii 1z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_offset = "1z00010 zz 10 mmmmm 1z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_sxtw = "1z00010 zz 10 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_uxtw = "1z00010 zz 00 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_index = "1z00010 zz 11 mmmmm 1z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_sxtw_index = "1z00010 zz 11 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_uxtw_index = "1z00010 zz 01 mmmmm 0z1 ggg nnnnn ttttt";

// Of scatters it is the memory element's size and the lane (1: 32 bits).
template <class T, class U>
constexpr type_tag scattered_lane = element_type<T, U>().at(size_code<T> << 1 | (sizeof(U) == 4 ? 1 : 0));
constexpr encoding st_by_address = "1110010 zz 1z iiiii 101 ggg nnnnn ttttt";
constexpr encoding st_by_offset = "1110010 zz z0 mmmmm 101 ggg nnnnn ttttt";
constexpr encoding st_by_sxtw = "1110010 zz z0 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st_by_uxtw = "1110010 zz z0 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding st_by_index = "1110010 zz z1 mmmmm 101 ggg nnnnn ttttt";
constexpr encoding st_by_sxtw_index = "1110010 zz z1 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st_by_uxtw_index = "1110010 zz z1 mmmmm 100 ggg nnnnn ttttt";

// Rows of one form of the address: its letters in the stem, its encoding, and its shape with the vector operand.
#define ROWS_MEM_LOAD(handler, M, T, U, letters, encoded, shape, ...)                                         \
  row<gathered<T, U>>("Load" #M #letters, ld_##encoded, load_##shape<handler, M __VA_OPT__(, ) __VA_ARGS__>), \
      row<gathered<T, U>>("LoadFF" #M #letters, ld_ff_##encoded,                                              \
                          first_fault_##shape<LoadFF##M##letters, M __VA_OPT__(, ) __VA_ARGS__>)
#define ROWS_MEM_STORE(handler, M, T, U, letters, encoded, shape, ...) \
  row<scattered_lane<T, U>>("Store" #M #letters, st_##encoded, store_##shape<handler, M __VA_OPT__(, ) __VA_ARGS__>)

#define WORDS(kind, name, M, T)                                                                \
  ROWS_##kind(sve_##name##_zpzi, M, T, std::uint32_t, VIZ, by_address, address),               \
      ROWS_##kind(sve_##name##_uxtw_zpzr, M, T, std::uint32_t, VSZ, by_uxtw, offset, Zm_uxtw), \
      ROWS_##kind(sve_##name##_sxtw_zpzr, M, T, std::uint32_t, XVSZ, by_sxtw, offset, Zm_sxtw),
#define SCALED_WORDS(kind, name, M, T)                                                                 \
  WORDS(kind, name, M, T)                                                                              \
  ROWS_##kind(sve_##name##_uxtw_scaled_zprz, M, T, std::uint32_t, SVZ, by_uxtw_index, index, Zm_uxtw), \
      ROWS_##kind(sve_##name##_sxtw_scaled_zprz, M, T, std::uint32_t, XSVZ, by_sxtw_index, index, Zm_sxtw),
#define DOUBLEWORDS(kind, name, M, T)                                                           \
  ROWS_##kind(sve_##name##_zpzi, M, T, std::uint64_t, VIZ, by_address, address),                \
      ROWS_##kind(sve_##name##_zpzr, M, T, std::uint64_t, VSZ, by_offset, offset, Zm),          \
      ROWS_##kind(sve_##name##_sxtw_zpzr, M, T, std::uint64_t, XVSZ, by_sxtw, offset, Zm_sxtw), \
      ROWS_##kind(sve_##name##_uxtw_zpzr, M, T, std::uint64_t, YVSZ, by_uxtw, offset, Zm_uxtw),
#define SCALED_DOUBLEWORDS(kind, name, M, T)                                                                \
  DOUBLEWORDS(kind, name, M, T)                                                                             \
  ROWS_##kind(sve_##name##_scaled_zprz, M, T, std::uint64_t, SVZ, by_index, index, Zm),                     \
      ROWS_##kind(sve_##name##_sxtw_scaled_zprz, M, T, std::uint64_t, XSVZ, by_sxtw_index, index, Zm_sxtw), \
      ROWS_##kind(sve_##name##_uxtw_scaled_zprz, M, T, std::uint64_t, YSVZ, by_uxtw_index, index, Zm_uxtw),

constexpr auto gather_scatter_rows = group(
#include "sve/handlers/memory/gather_scatter.def"
    no_rows);

#undef ROWS_MEM_LOAD
#undef ROWS_MEM_STORE

}  // namespace quern::rows
