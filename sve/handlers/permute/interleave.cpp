// ZIP, UZP and TRN of vectors and predicates.
#include "sve/handlers/permute/interleave.h"

#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

using source = const unsigned char*;

// Group g of a and b as one row of groups.
template <lane_group T>
T group_of_both(source a, source b, std::size_t g) {
  constexpr std::size_t groups = lane_count<T>;
  return g < groups ? lane<T>(a, g) : lane<T>(b, g - groups);
}

// What group g of the result is, in groups of T.

// The lanes of a and b in turn, of their low halves or their high ones.
template <bool High>
struct zip {
  template <lane_group T>
  static T group(source a, source b, std::size_t g) {
    const std::size_t from = g + (High ? lane_count<T> : 0);
    const T n = lane<T>(a, from / 2), m = lane<T>(b, from / 2);
    constexpr auto low = [](int i, int lanes) { return i / 2 + i % 2 * lanes; };
    constexpr auto high = [](int i, int lanes) { return lanes / 2 + i / 2 + i % 2 * lanes; };
    return from % 2 == 0 ? shuffle<low>(n, m) : shuffle<high>(n, m);
  }
};

// Every other lane of a, then of b, the even or the odd ones.
template <bool Odd>
struct unzip {
  template <lane_group T>
  static T group(source a, source b, std::size_t g) {
    constexpr auto other = [](int i, int) { return 2 * i + Odd; };
    return shuffle<other>(group_of_both<T>(a, b, 2 * g), group_of_both<T>(a, b, 2 * g + 1));
  }
};

// All groups, in registers until the last has been read, since lanes of them come from other lanes. The answer is that
// of the handlers, which so need not return to answer.
template <class Routine>
[[gnu::noinline, gnu::flatten]] aarch64_decode_rc interleave(unsigned char* d, source a, source b, std::uint32_t size) {
  by_size(size, [=]<class T>(T) {
    constexpr std::size_t groups = lane_count<group_of<T>>;
    group_of<T> result[groups];
#pragma GCC unroll 16
    for (std::size_t g = 0; g != groups; ++g) result[g] = Routine::template group<group_of<T>>(a, b, g);
#pragma GCC unroll 16
    for (std::size_t g = 0; g != groups; ++g) set_lane(d, g, result[g]);
  });
  return DECODE_OK;
}

// Every other lane of a and b in turn, the even or the odd ones: each group of the same groups of a and b.
template <bool Odd>
aarch64_decode_rc transpose(unsigned char* d, source a, source b, std::uint32_t size) {
  by_size(size, [=]<class T>(T) {
    const auto turn = [](auto n, auto m) { return Odd ? odd_in_turn(n, m) : even_in_turn(n, m); };
    each_lane<group_of<T>>(turn, d, a, b);
  });
  return DECODE_OK;
}

unsigned char* plain(char* characters) { return reinterpret_cast<unsigned char*>(characters); }

}  // namespace

void sve_zip1(char* destination, char* first, char* second, element_size size) {
  interleave<zip<false>>(plain(destination), plain(first), plain(second), size);
}

void sve_zip2(char* destination, char* first, char* second, element_size size) {
  interleave<zip<true>>(plain(destination), plain(first), plain(second), size);
}

void sve_uzp1(char* destination, char* first, char* second, element_size size) {
  interleave<unzip<false>>(plain(destination), plain(first), plain(second), size);
}

#define VECTORS(name, routine)                                                                                 \
  aarch64_decode_rc sve_##name##_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) { \
    return routine(bytes_of(state, zd), bytes_of(state, zn), bytes_of(state, zm), zd.size);                    \
  }
#define PREDICATES(name, routine)                                                                              \
  aarch64_decode_rc sve_##name##_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) { \
    return routine(bytes_of(state, pd), bytes_of(state, pn), bytes_of(state, pm), pd.size);                    \
  }
VECTORS(zip1, interleave<zip<false>>)
VECTORS(zip2, interleave<zip<true>>)
VECTORS(uzp1, interleave<unzip<false>>)
VECTORS(uzp2, interleave<unzip<true>>)
VECTORS(trn1, transpose<false>)
VECTORS(trn2, transpose<true>)
PREDICATES(zip1, interleave<zip<false>>)
PREDICATES(zip2, interleave<zip<true>>)
PREDICATES(uzp1, interleave<unzip<false>>)
#undef VECTORS
#undef PREDICATES

aarch64_decode_rc sve_trn1_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) {
  by_size(pd.size, [&]<class T>(T) {
    const auto lowest_bits = [](auto n, auto m) { return even_in_turn(n, m) & in_each_lane<group_of<T>>(1); };
    each_lane<group_of<T>>(lowest_bits, bytes_of(state, pd), bytes_of(state, pn), bytes_of(state, pm));
  });
  return DECODE_OK;
}
