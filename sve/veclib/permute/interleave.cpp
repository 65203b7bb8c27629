// Interleaving, de-interleaving and transposing.
#include "sve/veclib/permute/interleave.h"

#include "sve/veclib/permute/permuting.h"

namespace quern::veclib {
namespace {

using bytes = unsigned char*;
using source = const unsigned char*;

// The lanes of the two sources in turn, of their low halves or their high ones.
template <bool High>
constexpr auto zip = permuting([]<class T>(bytes result, auto lanes, source n, source m) {
  const std::size_t half = lanes / 2, from = High ? half : 0;
  for (std::size_t i = 0; i != half; ++i) {
    set_lane<T>(result, 2 * i, lane<T>(n, from + i));
    set_lane<T>(result, 2 * i + 1, lane<T>(m, from + i));
  }
});

// Every other lane of the first source, then of the second, from lane `Odd` on.
template <bool Odd>
constexpr auto unzip = permuting([]<class T>(bytes result, auto lanes, source n, source m) {
  const std::size_t half = lanes / 2;
  for (std::size_t i = 0; i != half; ++i) {
    set_lane<T>(result, i, lane<T>(n, 2 * i + Odd));
    set_lane<T>(result, half + i, lane<T>(m, 2 * i + Odd));
  }
});

// Every other lane of the two sources in turn, from lane `Odd` on.
template <bool Odd>
constexpr auto transpose = permuting([]<class T>(bytes result, auto lanes, source n, source m) {
  for (std::size_t i = 0; i != lanes; i += 2) {
    set_lane<T>(result, i, lane<T>(n, i + Odd));
    set_lane<T>(result, i + 1, lane<T>(m, i + Odd));
  }
});

constexpr auto Zip1VV = zip<false>;
constexpr auto Zip2VV = zip<true>;
constexpr auto Uzp1VV = unzip<false>;
constexpr auto Uzp2VV = unzip<true>;
constexpr auto Trn1VV = transpose<false>;
constexpr auto Trn2VV = transpose<true>;

constexpr auto Zip1PP = on_predicates(Zip1VV);
constexpr auto Zip2PP = on_predicates(Zip2VV);
constexpr auto Uzp1PP = on_predicates(Uzp1VV);
constexpr auto Uzp2PP = on_predicates(Uzp2VV);

// Elements of packed predicates are fields of as many bits as T has bytes.
template <bool Odd>
constexpr auto transpose_fields = []<class T>(T, const CpuContext& ctx, const PredV& pn, const PredV& pm) {
  constexpr std::uint64_t even = lowest_bits<T> / ((1u << sizeof(T)) + 1) * group_bits<T>;
  const auto in_turn = [](std::uint64_t n, std::uint64_t m) {
    if (Odd) return (n >> sizeof(T) & even) | (m & even << sizeof(T));
    return (n & even) | (m & even) << sizeof(T);
  };
  return within(map_words(in_turn, pn, pm), ctx);
};
constexpr auto Trn1PP = transpose_fields<false>;
constexpr auto Trn2PP = transpose_fields<true>;

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/permute/interleave.def"
#include "sve/veclib/members/define.inc"
