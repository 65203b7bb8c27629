// ZIP, UZP and TRN of vectors and predicates.
#include "sve/handlers/permute/interleave.h"

#include <limits>
#include <type_traits>

#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

using bytes = unsigned char* __restrict;
using source = const unsigned char*;

template <class T>
inline constexpr std::size_t half_lanes = lane_count<T> / 2;

// d = the lanes of a and b in turn, from lane `from` on.
void zip(bytes d, source a, source b, element_size size, bool high) {
  by_size(size, [=]<class T>(T) {
    const std::size_t from = high ? half_lanes<T> : 0;
    for (std::size_t i = 0; i != half_lanes<T>; ++i) {
      set_lane<T>(d, 2 * i, lane<T>(a, from + i));
      set_lane<T>(d, 2 * i + 1, lane<T>(b, from + i));
    }
  });
}

// d = every other lane of a, then of b, from lane `odd` on.
void unzip(bytes d, source a, source b, element_size size, bool odd) {
  by_size(size, [=]<class T>(T) {
    for (std::size_t i = 0; i != half_lanes<T>; ++i) {
      set_lane<T>(d, i, lane<T>(a, 2 * i + odd));
      set_lane<T>(d, half_lanes<T> + i, lane<T>(b, 2 * i + odd));
    }
  });
}

__extension__ using quadword = unsigned __int128;

// The unsigned integer that holds two lanes of T.
template <class T>
using lane_pair =
    std::conditional_t<sizeof(T) == 8, quadword,
                       std::conditional_t<sizeof(T) == 4, std::uint64_t,
                                          std::conditional_t<sizeof(T) == 2, std::uint32_t, std::uint16_t>>>;

// d = every other lane of a and b in turn, from lane `odd` on: of each pair of lanes one, shifted into its place.
void transpose(bytes d, source a, source b, element_size size, bool odd) {
  by_size(size, [=]<class T>(T) {
    using pair = lane_pair<T>;
    constexpr int bits = 8 * sizeof(T);
    constexpr pair low = std::numeric_limits<T>::max();
    if (odd)
      each_lane<pair>([](pair n, pair m) { return (n >> bits) | (m & ~low); }, d, a, b);
    else
      each_lane<pair>([](pair n, pair m) { return (n & low) | (m << bits); }, d, a, b);
  });
}

// The register's elements through a routine: the result is built apart, since lanes of it come from other lanes.
template <class Routine>
void through(unsigned char* d, source a, source b, std::uint32_t size, Routine routine, bool second) {
  vector_result r;
  routine(r.bytes, a, b, static_cast<element_size>(size), second);
  r.copy_to(d);
}

unsigned char* plain(char* characters) { return reinterpret_cast<unsigned char*>(characters); }

}  // namespace

void sve_zip1(char* destination, char* first, char* second, element_size size) {
  zip(plain(destination), plain(first), plain(second), size, false);
}

void sve_zip2(char* destination, char* first, char* second, element_size size) {
  zip(plain(destination), plain(first), plain(second), size, true);
}

void sve_uzp1(char* destination, char* first, char* second, element_size size) {
  unzip(plain(destination), plain(first), plain(second), size, false);
}

#define VECTORS(name, routine, second)                                                                         \
  aarch64_decode_rc sve_##name##_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) { \
    through(state->z[zd.num], state->z[zn.num], state->z[zm.num], zd.size, routine, second);                   \
    return DECODE_OK;                                                                                          \
  }
#define PREDICATES(name, routine, second)                                                                      \
  aarch64_decode_rc sve_##name##_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) { \
    through(state->p[pd.num], state->p[pn.num], state->p[pm.num], pd.size, routine, second);                   \
    return DECODE_OK;                                                                                          \
  }
VECTORS(zip1, zip, false)
VECTORS(zip2, zip, true)
VECTORS(uzp1, unzip, false)
VECTORS(uzp2, unzip, true)
VECTORS(trn1, transpose, false)
VECTORS(trn2, transpose, true)
PREDICATES(zip1, zip, false)
PREDICATES(zip2, zip, true)
PREDICATES(uzp1, unzip, false)
#undef VECTORS
#undef PREDICATES

aarch64_decode_rc sve_trn1_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm) {
  unsigned char* const d = state->p[pd.num];
  through(d, state->p[pn.num], state->p[pm.num], pd.size, transpose, false);
  by_size(pd.size, [=]<class T>(T) { each_lane<T>([](T element) { return element & 1; }, d, d); });
  return DECODE_OK;
}
