// The frame of the vector library: how many lanes a call works on, and the loops over them that families share.
//
// To add a family:
//   1. Say what it does, as a generic constant in the folder's source file, by one of the loops here:
//        constexpr auto AbdVVM = merging([](auto a, auto b) { return a < b ? b - a : a - b; });
//   2. Give it a line in the folder's list (*.def), with the signature of its functions and their types:
//        FAMILY(AbdVVM, V_VPV, S8_S64_U8_U64)
// The list declares and defines VecS8AbdVVM to VecU64AbdVVM, enters them for the decoder's rows, and the tests find
// them. A family is called with a value of the lane type, the context, and the operands in their order. A new list is
// named in three places more: its header, veclib.h and members/all.inc.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "sve/arith/predicate/predicate_support.h"
#include "sve/state/cpu_context.h"
#include "sve/state/lane_group.h"
#include "sve/veclib/predicate_lanes.h"

namespace quern::veclib {

// The bytes of a vector that the context's vector length has, at most those of a VecV.
inline std::size_t vector_bytes(const CpuContext& ctx) {
  const std::size_t bytes = std::size_t{ctx.vl_units & 0x3FFFFFF} * 8;
  return bytes < VL_BYTES ? bytes : VL_BYTES;
}

// The number of lanes of type T in the context's vector length.
template <class T>
inline std::size_t lanes(const CpuContext& ctx) {
  return vector_bytes(ctx) / sizeof(T);
}

// Loops over independent lanes run over the whole of a VecV, so that their count is constant and the compiler makes
// them vector instructions; then what lies beyond the context's vector length is cleared. In the contexts of thunks
// nothing does.
inline void clear_beyond(VecV& vector, const CpuContext& ctx) {
  const std::size_t bytes = vector_bytes(ctx);
  if (bytes != VL_BYTES) [[unlikely]]
    std::memset(vector.bytes + bytes, 0, VL_BYTES - bytes);
}
inline VecV within(VecV vector, const CpuContext& ctx) {
  clear_beyond(vector, ctx);
  return vector;
}
inline PredV within(PredV predicate, const CpuContext& ctx) {
  const std::size_t bits = vector_bytes(ctx);
  const bool is_whole = bits == 8 * sizeof predicate.words;  // a word has more bits than a short vector has bytes
  return is_whole ? predicate : predicate & first_elements<std::uint8_t>(bits);
}

// The predicate of all elements in the context's vector length.
template <class T>
inline PredV all_elements(const CpuContext& ctx) {
  return first_elements<T>(lanes<T>(ctx));
}

// What an operation sees of an operand at lane i: that lane of a vector, and a scalar as it is.
template <class T>
inline T operand_at(const VecV& vector, std::size_t i) {
  return lane<T>(vector.bytes, i);
}
template <class T, class Scalar>
requires std::integral<Scalar>
inline Scalar operand_at(Scalar scalar, std::size_t) { return scalar; }

// The integer of so many bytes that has T's sign.
template <std::size_t Bytes>
struct integers {
  using wide = std::conditional_t<Bytes == 4, std::int32_t, std::int64_t>;
  using type = std::conditional_t<Bytes == 1, std::int8_t, std::conditional_t<Bytes == 2, std::int16_t, wide>>;
};
template <class T, std::size_t Bytes>
using resized = std::conditional_t<std::is_signed_v<T>, typename integers<Bytes>::type,
                                   std::make_unsigned_t<typename integers<Bytes>::type>>;

// All lanes are `value`.
template <class T>
inline VecV broadcast(T value, const CpuContext& ctx) {
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i) set_lane<T>(result.bytes, i, value);
  clear_beyond(result, ctx);
  return result;
}

// Lane i is op(operands' lane i...), for all lanes.
template <class T, class Op, class... Operands>
inline VecV map_lanes(Op op, const CpuContext& ctx, const Operands&... operands) {
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(result.bytes, i, static_cast<T>(op(operand_at<T>(operands, i)...)));
  clear_beyond(result, ctx);
  return result;
}

// Lane i is op(operands' lane i...) where pg has it active, else that of `inactive`. op runs for all lanes, so that the
// loop has no branch: it must be harmless in inactive ones. Lanes may be doublewords of several elements of the type
// Element that pg tells of.
template <class T, class Element = T, class Op, class... Operands>
inline VecV merge_lanes(Op op, const CpuContext& ctx, const VecV& inactive, const PredV& pg,
                        const Operands&... operands) {
  using U = std::make_unsigned_t<T>;
  const VecV masks = lane_masks<std::make_unsigned_t<Element>>(pg);
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const U value = static_cast<U>(static_cast<T>(op(operand_at<T>(operands, i)...)));
    set_lane<U>(result.bytes, i, select(lane<U>(masks.bytes, i), value, lane<U>(inactive.bytes, i)));
  }
  clear_beyond(result, ctx);
  return result;
}

// The same for one operand by 16 bytes at once, whatever lanes of T they hold: op(T, those bytes).
using byte_group = group_of<std::uint8_t>;
template <class T, class Op>
inline VecV merge_groups(Op op, const CpuContext& ctx, const VecV& inactive, const PredV& pg, const VecV& operand) {
  const VecV masks = lane_masks<std::make_unsigned_t<T>>(pg);
  VecV result;
  for (std::size_t i = 0; i != lane_count<byte_group>; ++i) {
    const byte_group value = op(T{}, lane<byte_group>(operand.bytes, i));
    set_lane(result.bytes, i, select(lane<byte_group>(masks.bytes, i), value, lane<byte_group>(inactive.bytes, i)));
  }
  clear_beyond(result, ctx);
  return result;
}

// The same, where op must not run for inactive lanes: it sets flags, or is slow. From lane 0 up.
template <class T, class Op, class... Operands>
inline VecV merge_active_lanes(Op op, const CpuContext& ctx, const VecV& inactive, const PredV& pg,
                               const Operands&... operands) {
  unsigned char active[lane_count<T>];
  unpack_elements<T>(pg, active);
  VecV result = inactive;
  const std::size_t count = lanes<T>(ctx);
  for (std::size_t i = 0; i != count; ++i) {
    if (active[i] != 0) set_lane<T>(result.bytes, i, static_cast<T>(op(operand_at<T>(operands, i)...)));
  }
  return result;
}

// Element i is op(operands' lane i...), true or 1, where pg has it active, else false. op runs for all lanes.
template <class T, class Op, class... Operands>
inline PredV compare_lanes(Op op, const CpuContext& ctx, const PredV& pg, const Operands&... operands) {
  VecV outcomes;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(outcomes.bytes, i, static_cast<T>(op(operand_at<T>(operands, i)...)));
  return within(to_predicate<T>(outcomes) & pg, ctx);
}

// The result itself, once it has set N, Z, C and V: N if its first active element is set, Z if none is, C if the last
// one is not (PredTest).
template <class T>
inline PredV with_flags(const PredV& result, const PredV& pg, CpuContext& ctx) {
  PredSetNZCV(pg, result, 8 * sizeof(T), &ctx);
  return result;
}

// op over the active lanes, from `start` on: op(start, x) is x. It has to be associative and commutative. The
// accumulator may be wider than the lanes.
template <class T, class Accumulator, class Op>
inline Accumulator reduce_lanes(Op op, Accumulator start, const CpuContext& ctx, const PredV& pg, const VecV& vector) {
  using U = std::make_unsigned_t<T>;
  const VecV masks = lane_masks<U>(within(pg, ctx));
  Accumulator folded = start;
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const U value = select(lane<U>(masks.bytes, i), lane<U>(vector.bytes, i), static_cast<U>(start));
    folded = static_cast<Accumulator>(op(folded, static_cast<Accumulator>(static_cast<T>(value))));
  }
  return folded;
}

// Families, made of an operation on lanes. (operands...): all lanes.
template <class Op>
constexpr auto unpredicated(Op op) {
  return
      [op]<class T>(T, const CpuContext& ctx, const auto&... operands) { return map_lanes<T>(op, ctx, operands...); };
}

// (a, Pg, others...): op(a, others...), and a where inactive.
template <class Op>
constexpr auto merging(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const VecV& a, const PredV& pg, const auto&... others) {
    return merge_lanes<T>(op, ctx, a, pg, a, others...);
  };
}

// (old, Pg, a): op(a), and old where inactive.
template <class Op>
constexpr auto merging_unary(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    return merge_lanes<T>(op, ctx, old, pg, a);
  };
}

// The same by groups of bytes.
template <class Op>
constexpr auto merging_groups(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    return merge_groups<T>(op, ctx, old, pg, a);
  };
}

// (Pg, others...): a family of predicates that sets the flags too.
template <class Family>
constexpr auto flagged(Family family) {
  return [family]<class T>(T type, CpuContext& ctx, const PredV& pg, const auto&... operands) {
    return with_flags<T>(family(type, ctx, pg, operands...), pg, ctx);
  };
}

}  // namespace quern::veclib
