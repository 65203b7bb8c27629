// MOVPRFX, by itself.
#include "sve/veclib/permute/move_prefix.h"

#include <functional>

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto MovePrefix1VM = merging_unary(std::identity{});
constexpr auto MovePrefix1VZ = []<class T>(T type, const CpuContext& ctx, const PredV& pg, const VecV& zn) {
  return MovePrefix1VM(type, ctx, VecV{}, pg, zn);
};
constexpr auto SpecialMoveV = unpredicated(std::identity{});

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/permute/move_prefix.def"
#include "sve/veclib/members/define.inc"
