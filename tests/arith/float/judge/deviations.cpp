// Where a routine of the library differs from the processor's instruction on purpose.
#include "tests/arith/float/judge/deviations.h"

#include <algorithm>
#include <array>

namespace quern::judge {
namespace {

bool is_subnormal_half(std::uint64_t pattern) { return (pattern & 0x7C00) == 0 && (pattern & 0x03FF) != 0; }

// A subnormal half became a zero of its sign, with no flag.
bool flushes_widened(const operands& x, const outcome& software, const outcome&) {
  const bool is_zero = (software.value & (software.value - 1)) == 0;
  return is_subnormal_half(x.value[0]) && is_zero && software.fpsr == 0;
}

// The processor flushed the subnormal half that the integer's fraction is, before it could round up to a normal one.
bool keeps_subnormal(const operands&, const outcome& software, const outcome& processor) {
  const bool is_subnormal = (software.value & 0x7FFF) <= 0x0400;
  return is_subnormal && (processor.value & 0x7FFF) == 0 && processor.fpsr == UFC;
}

constexpr const char* widening = "FZ16 flushes what is widened, though the processor's conversions don't heed it";
constexpr const char* fixed_point = "FZ16 is no part of the mode of fixed-point conversion, so its halves never flush";

constexpr std::array table{
    deviation{"fcvt s, h", FPSCR_FZ16, flushes_widened, {{0x0001}}, widening},
    deviation{"fcvt d, h", FPSCR_FZ16, flushes_widened, {{0x83FF}}, widening},
    deviation{"scvtf h, w 32", FPSCR_FZ16, keeps_subnormal, {{0x00000300}}, fixed_point},
    deviation{"ucvtf h, w 32", FPSCR_FZ16, keeps_subnormal, {{0x00000300}}, fixed_point},
    deviation{"scvtf h, x 40", FPSCR_FZ16, keeps_subnormal, {{0x00030000}}, fixed_point},
    deviation{"ucvtf h, x 40", FPSCR_FZ16, keeps_subnormal, {{0x00030000}}, fixed_point},
    deviation{"scvtf h, x 64", FPSCR_FZ16, keeps_subnormal, {{0x1000000}}, fixed_point},
    deviation{"ucvtf h, x 64", FPSCR_FZ16, keeps_subnormal, {{0x1000000}}, fixed_point},
};

}  // namespace

std::span<const deviation> known_deviations() { return table; }

bool concerns(const deviation& d, const routine& r) {
  if (d.routines.ends_with('*')) return r.name.starts_with(d.routines.substr(0, d.routines.size() - 1));
  return d.routines == r.name;
}

}  // namespace quern::judge
