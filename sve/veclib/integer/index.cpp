// Series of elements.
#include "sve/veclib/integer/index.h"

#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto series = []<class T>(T, const CpuContext& ctx, T base, T step) {
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(result.bytes, i, add(base, multiply(static_cast<T>(i), step)));
  clear_beyond(result, ctx);
  return result;
};

constexpr auto IndexII = series;
constexpr auto IndexIS = series;
constexpr auto IndexSI = series;
constexpr auto IndexSS = series;

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/index.def"
#include "sve/veclib/members/define.inc"
