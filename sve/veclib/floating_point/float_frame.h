// The frame of floating-point families: the control word of a call's arithmetic is the context's, and what its lanes
// raise is added to the context's status. No lane sees another lane's flags, since an operation only adds to them, and
// a lane that is not active raises none.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sve/arith/float/fpscr.h"
#include "sve/arith/float/sign.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {

// What FPSR keeps of a lane's status word: the flags, QC and NZCV.
inline constexpr std::uint32_t fpsr_mask = 0xF800009F;

// What loop(f) returns, where f(lanes...) is op(lanes..., fpscr). The lanes share a status word, which goes to the
// context when the loop has ended; if op never ran, the context's status stays as it is.
template <class Op, class Loop>
inline auto lane_arithmetic(Op op, CpuContext& ctx, Loop loop) {
  FPSCR fpscr{ctx.fpcr};
  bool ran = false;
  const auto result = loop([&](auto... lanes) {
    ran = true;
    return op(lanes..., fpscr);
  });
  if (ran) ctx.fpsr = (ctx.fpsr | fpscr.word) & fpsr_mask;
  return result;
}

// Lane i is op(operands' lane i..., fpscr), for all lanes.
template <class T, class Op, class... Operands>
inline VecV map_float_lanes(Op op, CpuContext& ctx, const Operands&... operands) {
  return lane_arithmetic(op, ctx, [&](auto on_lanes) { return map_lanes<T>(on_lanes, ctx, operands...); });
}

// Lane i is op(operands' lane i..., fpscr) where pg has it active, else that of `inactive`. op runs for active lanes
// alone.
template <class T, class Op, class... Operands>
inline VecV merge_float_lanes(Op op, CpuContext& ctx, const VecV& inactive, const PredV& pg,
                              const Operands&... operands) {
  return lane_arithmetic(
      op, ctx, [&](auto on_lanes) { return merge_active_lanes<T>(on_lanes, ctx, inactive, pg, operands...); });
}

// Element i is op(operands' lane i..., fpscr) where pg has it active, and false elsewhere, where op does not run.
template <class T, class Op, class... Operands>
inline PredV compare_float_lanes(Op op, CpuContext& ctx, const PredV& pg, const Operands&... operands) {
  return to_predicate<T>(merge_float_lanes<T>(op, ctx, VecV{}, pg, operands...));
}

// Families, made of an operation on lanes and the status word. (operands...): all lanes.
template <class Op>
constexpr auto float_unpredicated(Op op) {
  return
      [op]<class T>(T, CpuContext& ctx, const auto&... operands) { return map_float_lanes<T>(op, ctx, operands...); };
}

// (a, Pg, others...): op(a, others...), and a where inactive.
template <class Op>
constexpr auto float_merging(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const auto&... others) {
    return merge_float_lanes<T>(op, ctx, a, pg, a, others...);
  };
}

// (old, Pg, a): op(a), and old where inactive.
template <class Op>
constexpr auto float_merging_unary(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    return merge_float_lanes<T>(op, ctx, old, pg, a);
  };
}

// The sign cleared or flipped, of a NaN too; no flag is raised.
inline constexpr auto absolute = [](auto a) { return FPAbs(a); };
inline constexpr auto negated = [](auto a) { return FPNeg(a); };

// The vector whose every lane is lane `index` of its own 128-bit segment of `vector`.
template <class T>
inline VecV segment_lane(const VecV& vector, std::uint32_t index) {
  constexpr std::size_t segment = 16 / sizeof(T);
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(result.bytes, i, lane<T>(vector.bytes, i / segment * segment + index));
  return result;
}

}  // namespace quern::veclib
