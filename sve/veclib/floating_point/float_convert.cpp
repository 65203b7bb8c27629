// Conversions between floating-point formats, and to and from integers.
#include "sve/veclib/floating_point/float_convert.h"

#include <type_traits>

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

// (old, Pg, a), where the tag's type is the result's and the lanes are as wide as the wider side: convert(fp, lanes,
// result type, source type), and old where inactive.
template <class Source, class Convert>
constexpr auto converting(Convert convert) {
  return [convert]<class Result>(Result, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    using T = std::make_unsigned_t<std::conditional_t<(sizeof(Source) > sizeof(Result)), Source, Result>>;
    const auto of_lanes = [convert](auto& fp, auto x) { return convert(fp, x, Result{}, Source{}); };
    return merge_float_lanes<T>(of_lanes, ctx, old, pg, a);
  };
}

constexpr auto to_format = []<class Result, class Source>(auto& fp, auto x, Result, Source) {
  return fp.template to_format<Result, Source>(x);
};
constexpr auto to_integer = []<class Result, class Source>(auto& fp, auto x, Result, Source) {
  return fp.template to_integer<Result, Source>(x);
};
constexpr auto from_integer = []<class Result, class Source>(auto& fp, auto x, Result, Source) {
  return fp.template from_integer<Result, Source>(x);
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
