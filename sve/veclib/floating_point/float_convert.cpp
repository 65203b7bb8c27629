// Conversions between floating-point formats, and to and from integers.
#include "sve/veclib/floating_point/float_convert.h"

#include <type_traits>

#include "sve/arith/float/convert.h"
#include "sve/arith/float/from_fixed.h"
#include "sve/arith/float/to_fixed.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

// The lanes of a conversion are as wide as the wider of its sides. The other side is the low part of the lane: as a
// source the rest is not looked at, as a result it is extended into the rest by its sign.
template <class Source, class Result>
using lane_of = std::make_unsigned_t<std::conditional_t<(sizeof(Source) > sizeof(Result)), Source, Result>>;

// (old, Pg, a), where the tag's type is the result's: convert(result type, source, fpscr), and old where inactive.
template <class Source, class Convert>
constexpr auto converting(Convert convert) {
  return [convert]<class Result>(Result type, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    using T = lane_of<Source, Result>;
    const auto of_lane = [=](T lane, FPSCR& fpscr) {
      return static_cast<T>(convert(type, static_cast<Source>(lane), fpscr));
    };
    return merge_float_lanes<T>(of_lane, ctx, old, pg, a);
  };
}

// Neither the alternative half format nor the flushing of halves has a part in SVE's conversions.
constexpr auto to_format = []<class Result, class Source>(Result, Source a, FPSCR& fpscr) {
  FPSCR plain{fpscr.word & ~(FPSCR_AHP | FPSCR_FZ16)};
  const Result result = FPConvert<Source, Result>(a, rounding_of(plain), plain);
  fpscr.word |= plain.word;
  return result;
};

constexpr auto to_integer = []<class Result, class Source>(Result, Source a, FPSCR& fpscr) {
  constexpr bool is_unsigned = std::is_unsigned_v<Result>;
  return static_cast<Result>(
      fplibFPToFixed<Source, std::make_unsigned_t<Result>>(a, 0, is_unsigned, FPRounding_ZERO, fpscr));
};

constexpr auto from_integer = []<class Result, class Source>(Result, Source a, FPSCR& fpscr) {
  constexpr bool is_unsigned = std::is_unsigned_v<Source>;
  return fplibFixedToFP<Result>(static_cast<std::uint64_t>(a), 0, is_unsigned, rounding_of(fpscr), fpscr);
};

constexpr auto ExtndHVM = converting<std::uint16_t>(to_format);
constexpr auto ExtndFVM = converting<std::uint32_t>(to_format);
constexpr auto TruncFVM = converting<std::uint32_t>(to_format);
constexpr auto TruncDVM = converting<std::uint64_t>(to_format);

constexpr auto FromHVM = converting<std::uint16_t>(to_integer);
constexpr auto FromFVM = converting<std::uint32_t>(to_integer);
constexpr auto FromDVM = converting<std::uint64_t>(to_integer);

constexpr auto FromS2VM = converting<std::int16_t>(from_integer);
constexpr auto FromS4VM = converting<std::int32_t>(from_integer);
constexpr auto FromS8VM = converting<std::int64_t>(from_integer);
constexpr auto FromU2VM = converting<std::uint16_t>(from_integer);
constexpr auto FromU4VM = converting<std::uint32_t>(from_integer);
constexpr auto FromU8VM = converting<std::uint64_t>(from_integer);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_convert.def"
#include "sve/veclib/members/define.inc"
