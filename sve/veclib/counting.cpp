// The counting family.
#include "sve/veclib/counting.h"

#include "sve/arith/predicate/predicate_support.h"

namespace quern {
namespace {

template <int LaneBytes>
int lanes(const CpuContext& ctx) {
  return static_cast<int>((ctx.vl_units & 0x3FFFFFF) * (8 / LaneBytes));
}

template <int LaneBytes>
std::uint64_t count_by_pattern(std::uint64_t pattern, std::uint64_t field, const CpuContext& ctx) {
  return static_cast<std::uint64_t>(VecTrueILength(pattern, lanes<LaneBytes>(ctx))) * (field + 1);
}

}  // namespace
}  // namespace quern

#define MEMBER(tag, bytes)                                                                         \
  std::uint64_t Vec##tag##CountVLSI(std::uint64_t pattern, std::uint64_t field, CpuContext* ctx) { \
    return quern::count_by_pattern<bytes>(pattern, field, *ctx);                                   \
  }
MEMBER(U8, 1)
MEMBER(U16, 2)
MEMBER(U32, 4)
MEMBER(U64, 8)
#undef MEMBER
