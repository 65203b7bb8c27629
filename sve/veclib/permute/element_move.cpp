// Selecting elements, and copying one value to many.
#include "sve/veclib/permute/element_move.h"

#include <functional>

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto SelVV = []<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& zn, const VecV& zm) {
  return merge_lanes<T>(std::identity{}, ctx, zm, pg, zn);
};

constexpr auto every_lane = []<class T>(T, const CpuContext& ctx, T value) { return broadcast(value, ctx); };

constexpr auto DupS = every_lane;
constexpr auto DupI = every_lane;
constexpr auto DupMaskI = every_lane;

constexpr auto ExtDupVI = []<class T>(T, const CpuContext& ctx, const VecV& zn, std::size_t index) {
  return broadcast(index < lanes<T>(ctx) ? lane<T>(zn.bytes, index) : T{}, ctx);
};

constexpr auto active_lanes = []<class T>(T, const CpuContext& ctx, const VecV& old, const PredV& pg, T value) {
  return merge_lanes<T>(std::identity{}, ctx, old, pg, value);
};

constexpr auto DupSM = active_lanes;
constexpr auto DupIM = active_lanes;
constexpr auto DupIZ = []<class T>(T type, const CpuContext& ctx, const PredV& pg, T value) {
  return active_lanes(type, ctx, VecV{}, pg, value);
};

constexpr auto InsertS = []<class T>(T, const CpuContext& ctx, const VecV& zdn, T scalar) {
  VecV result;
  set_lane<T>(result.bytes, 0, scalar);
  std::memcpy(result.bytes + sizeof(T), zdn.bytes, VL_BYTES - sizeof(T));
  clear_beyond(result, ctx);
  return result;
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/permute/element_move.def"
#include "sve/veclib/members/define.inc"
