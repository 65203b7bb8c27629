// Elements moved by position.
#include "sve/veclib/permute/permute.h"

#include "sve/veclib/permute/permuting.h"

namespace quern::veclib {
namespace {

constexpr auto ReverseV = permuting([]<class T>(unsigned char* result, auto lanes, const unsigned char* n) {
  for (std::size_t i = 0; i != lanes; ++i) set_lane<T>(result, i, lane<T>(n, lanes - 1 - i));
});
constexpr auto ReverseP = on_predicates(ReverseV);

constexpr auto TblVV =
    permuting([]<class T>(unsigned char* result, auto lanes, const unsigned char* n, const unsigned char* m) {
      for (std::size_t i = 0; i != lanes; ++i) {
        const T index = lane<T>(m, i);
        set_lane<T>(result, i, index < lanes ? lane<T>(n, static_cast<std::size_t>(index)) : T{0});
      }
    });

// The lanes of half T's width and its sign.
template <class T>
using narrow = resized<T, sizeof(T) / 2>;

template <bool High>
constexpr auto unpack = permuting([]<class T>(unsigned char* result, auto lanes, const unsigned char* n) {
  const unsigned char* const half = High ? n + lanes * sizeof(narrow<T>) : n;
  for (std::size_t i = 0; i != lanes; ++i) set_lane<T>(result, i, static_cast<T>(lane<narrow<T>>(half, i)));
});

constexpr auto UnpackLoV = unpack<false>;
constexpr auto UnpackHiV = unpack<true>;

// Bytes of 0 and 1 become halfwords of 0 and 1.
template <class Family>
constexpr auto unpack_predicate(Family family) {
  return [family](auto, const CpuContext& ctx, const PredV& pn) {
    return on_predicates(family)(std::uint16_t{}, ctx, pn);
  };
}

constexpr auto UnpackLoP = unpack_predicate(UnpackLoV);
constexpr auto UnpackHiP = unpack_predicate(UnpackHiV);

// Bytes first to end - 1 of a, then those of b from 0 on. By copies of constant size, the second over the first.
VecV joined(const VecV& a, std::size_t first, std::size_t end, const VecV& b) {
  unsigned char both[2 * VL_BYTES];
  std::memcpy(both, a.bytes, VL_BYTES);
  std::memcpy(both + end, b.bytes, VL_BYTES);
  VecV result;
  std::memcpy(result.bytes, both + first, VL_BYTES);
  return result;
}

constexpr auto SlideVI = [](auto, const CpuContext& ctx, const VecV& zdn, const VecV& zm, std::size_t position) {
  const std::size_t bytes = vector_bytes(ctx), first = position < bytes ? position : 0;
  return within(joined(zdn, first, bytes, zm), ctx);
};

constexpr auto SpliceVV = []<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& zdn, const VecV& zm) {
  const PredV active = within(pg, ctx);
  if (!any_element<T>(active)) return within(zm, ctx);
  const std::size_t first = first_element<T>(active), end = last_element<T>(active) + 1;
  return within(joined(zdn, first * sizeof(T), end * sizeof(T), zm), ctx);
};

// Each lane is stored where the next active one belongs, which overwrites an inactive one: so no branch is needed.
// Unrolled whole, so that all addresses but that are constants.
constexpr auto CompressVV = []<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& zn) {
  if (vector_bytes(ctx) == VL_BYTES && all_active<T>(pg)) return zn;
  unsigned char active[lane_count<T>];
  unpack_elements<T>(within(pg, ctx), active);
  VecV result;
  std::size_t next = 0;
#pragma GCC unroll 64
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    set_lane<T>(result.bytes, next, lane<T>(zn.bytes, i));
    next += active[i];
  }
  std::memset(result.bytes + next * sizeof(T), 0, VL_BYTES - next * sizeof(T));
  return result;
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/permute/permute.def"
#include "sve/veclib/members/define.inc"
