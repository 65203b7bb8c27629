// The count that a pattern names.
#include "sve/arith/predicate/predicate_support.h"

#include <bit>

int VecTrueILength(std::uint64_t pattern, int count) {
  constexpr std::uint64_t pow2 = 0, vl8 = 8, vl256 = 13, mul4 = 29, mul3 = 30, all = 31;
  switch (pattern) {
    case pow2: return count < 1 ? 1 : static_cast<int>(std::bit_floor(static_cast<unsigned>(count)));
    case mul4: return count & ~3;
    case mul3: return count / 3 * 3;
    case all: return count & ~1;
    default: break;
  }
  if (pattern > vl256) return 0;
  const int wanted = pattern <= vl8 ? static_cast<int>(pattern) : 1 << (pattern - 5);
  return wanted <= count ? wanted : 0;
}
