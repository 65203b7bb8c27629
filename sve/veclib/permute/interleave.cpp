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
constexpr auto Trn1PP = on_predicates(Trn1VV);
constexpr auto Trn2PP = on_predicates(Trn2VV);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/permute/interleave.def"
#include "sve/veclib/members/define.inc"
