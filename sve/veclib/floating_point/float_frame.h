// The frame of floating-point families: each lane's call has a status word of its own, made from the context's control
// word, and what it raises is added to the context's status. No lane sees another lane's flags, and a lane that is not
// active raises none.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sve/arith/float/fpscr.h"
#include "sve/arith/float/sign.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {

// What FPSR keeps of a lane's status word: the flags, QC and NZCV.
inline constexpr std::uint32_t fpsr_mask = 0xF800009F;

// call(fpscr) as one lane's arithmetic.
template <class Call>
inline auto with_status(CpuContext& ctx, Call call) {
  FPSCR fpscr{ctx.fpcr};
  const auto result = call(fpscr);
  ctx.fpsr = (ctx.fpsr | fpscr.word) & fpsr_mask;
  return result;
}

// op(lanes..., fpscr) as an operation on lanes alone, for the loops.
template <class Op>
inline auto lane_arithmetic(Op op, CpuContext& ctx) {
  return [op, &ctx](auto... lanes) { return with_status(ctx, [&](FPSCR& fpscr) { return op(lanes..., fpscr); }); };
}

// Element i is op(operands' lane i...) where pg has it active, and false elsewhere, where op does not run.
template <class T, class Op, class... Operands>
inline PredV compare_active_lanes(Op op, const CpuContext& ctx, const PredV& pg, const Operands&... operands) {
  PredV result{};
  for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
    if (is_active<T>(pg, i)) set_element<T>(result, i, op(operand_at<T>(operands, i)...));
  }
  return result;
}

// Families, made of an operation on lanes and the status word. (operands...): all lanes.
template <class Op>
constexpr auto float_unpredicated(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const auto&... operands) {
    return map_lanes<T>(lane_arithmetic(op, ctx), ctx, operands...);
  };
}

// (a, Pg, others...): op(a, others...), and a where inactive.
template <class Op>
constexpr auto float_merging(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const auto&... others) {
    return merge_active_lanes<T>(lane_arithmetic(op, ctx), ctx, a, pg, a, others...);
  };
}

// (old, Pg, a): op(a), and old where inactive.
template <class Op>
constexpr auto float_merging_unary(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    return merge_active_lanes<T>(lane_arithmetic(op, ctx), ctx, old, pg, a);
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
