// What is known of a predicate's lanes, in machine code that a host can recognise: one that makes code anew, with the
// routines' own in it, remembers whether all lanes are active.
#pragma once

#include <cstdint>

#include "sve/state/lane_group.h"
#include "sve/state/packed_shift.h"

namespace quern {

// Words that do nothing, AND XZR, Xn, Xm, LSL #what, mark some instructions that go straight on. Xn has a predicate's
// address, up to the first of them. They write Xn, Xm, vectors and the predicate's bytes, as they are told to, and
// nothing else; nobody needs Xn behind them.
enum class lane_mark : std::uint32_t {
  end = 0,
  test = 8,  // and 1 more for each doubling of the lanes' width: Xm gets 0 if all lanes are active, else another number
  fill = 16  // and the same: all lanes become active, and no other bit of the predicate is set
};
constexpr bool is_lane_mark(std::uint32_t word) { return (word & 0xFFE0001F) == 0x8A00001F; }
constexpr std::uint32_t lane_mark_of(std::uint32_t word) { return word >> 10 & 63; }

#ifdef __aarch64__
inline constexpr bool has_lane_marks = VL_BYTES % 64 == 0;

// Not 0 if a lane of T is inactive.
template <class T>
inline std::uint64_t find_inactive(const unsigned char* predicate) {
  using predicate_bytes = const unsigned char[VL_BYTES];
  const unsigned char* at = predicate;
  std::uint64_t inactive;
  asm inline(R"(
    and xzr, %[at], %[inactive], lsl #%c[mark]
    ld1 {v0.16b-v3.16b}, [%[at]], #64
    .rept %c[more]
    ld1 {v4.16b-v7.16b}, [%[at]], #64
    and v0.16b, v0.16b, v4.16b
    and v1.16b, v1.16b, v5.16b
    and v2.16b, v2.16b, v6.16b
    and v3.16b, v3.16b, v7.16b
    .endr
    and v0.16b, v0.16b, v1.16b
    and v2.16b, v2.16b, v3.16b
    and v0.16b, v0.16b, v2.16b
    mov d1, v0.d[1]
    and v0.8b, v0.8b, v1.8b
    fmov %[inactive], d0
    mvn %[inactive], %[inactive]
    and %[inactive], %[inactive], #%c[lanes]
    and xzr, %[at], %[inactive])"
             : [at] "+r"(at), [inactive] "=&r"(inactive)
             : [mark] "i"(static_cast<std::uint32_t>(lane_mark::test) + size_code<T>), [more] "i"(VL_BYTES / 64 - 1),
               [lanes] "i"(ones_apiece<T>), "m"(*reinterpret_cast<predicate_bytes*>(predicate))
             : "v0", "v1", "v2", "v3", "v4", "v5", "v6", "v7");
  return inactive;
}

// Makes all lanes of T active, and no other bit set.
template <class T>
inline void fill_predicate(unsigned char* predicate) {
  using predicate_bytes = unsigned char[VL_BYTES];
  const doubles ones = in_each_lane<doubles>(ones_apiece<T>);
  unsigned char* at = predicate;
  asm inline(R"(
    and xzr, %[at], %[at], lsl #%c[mark]
    .rept %c[times]
    stp %q[ones], %q[ones], [%[at]], #32
    .endr
    and xzr, %[at], %[at])"
             : [at] "+r"(at), "=m"(*reinterpret_cast<predicate_bytes*>(predicate))
             : [ones] "w"(ones), [mark] "i"(static_cast<std::uint32_t>(lane_mark::fill) + size_code<T>),
               [times] "i"(VL_BYTES / 32));
}
#else
inline constexpr bool has_lane_marks = false;
#endif

}  // namespace quern
