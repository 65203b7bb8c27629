// Integer operations on one vector.
#include "sve/veclib/integer/integer_unary.h"

#include "sve/arith/integer/bit_support.h"
#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

#ifdef __aarch64__
#include <arm_neon.h>
#endif

namespace quern::veclib {
namespace {

// The lane as the helpers for bits take it, at the lane's width.
template <class T>
constexpr int width = static_cast<int>(quern::element_bits<T>);

// Counts of bits in each lane of a group.
#ifdef __aarch64__
// Ones are counted in bytes by one instruction, which the compiler does not see, and added by pairs.
template <class T>
group_of<T> count_ones(group_of<T> a) {
  const uint8x16_t in_bytes = vcntq_u8(uint8x16_t(a));
  if constexpr (sizeof(T) == 1) return in_bytes;
  const uint16x8_t in_halfwords = vpaddlq_u8(in_bytes);
  if constexpr (sizeof(T) == 2) return in_halfwords;
  const uint32x4_t in_words = vpaddlq_u16(in_halfwords);
  if constexpr (sizeof(T) == 4) return in_words;
  if constexpr (sizeof(T) == 8) return doubles(vpaddlq_u32(in_words));
}

// A doubleword's lower word counts where its upper one is 0.
template <class T>
group_of<T> count_leading_zeros(group_of<T> a) {
  if constexpr (sizeof(T) == 1) return vclzq_u8(a);
  if constexpr (sizeof(T) == 2) return vclzq_u16(a);
  if constexpr (sizeof(T) == 4) return vclzq_u32(a);
  if constexpr (sizeof(T) == 8) {
    const doubles in_words = doubles(vclzq_u32(singles(a))), upper = in_words >> 32;
    return upper + (doubles(upper == 32) & in_words & 0xFFFFFFFF);
  }
}
#else
// By steps that vectors take: instructions that count one lane would have the loop leave its vectors.

// The sum of the fields of a lane, each Field bits wide, in its lowest one.
template <int Field, lane_group G>
G sum_of_fields(G a) {
  if constexpr (Field < width<lane_of<G>>) return sum_of_fields<2 * Field>(a + (a >> Field));
  return a;
}
template <class T>
group_of<T> count_ones(group_of<T> a) {
  constexpr auto every_other = [](int field) { return static_cast<T>(static_cast<T>(~T{0}) / ((T{1} << field) + 1)); };
  a -= a >> 1 & every_other(1);
  a = (a & every_other(2)) + (a >> 2 & every_other(2));
  a = (a + (a >> 4)) & static_cast<T>(static_cast<T>(~T{0}) / 255 * 15);
  return sum_of_fields<8>(a) & 127;
}

// All bits below the highest set one, by steps from Distance on.
template <int Distance, lane_group G>
G with_lower_bits(G a) {
  if constexpr (Distance < width<lane_of<G>>) return with_lower_bits<2 * Distance>(a | a >> Distance);
  return a;
}
template <class T>
group_of<T> count_leading_zeros(group_of<T> a) {
  return count_ones<T>(~with_lower_bits<1>(a));
}
#endif

// Bits that differ from the one above them: the sign's equals stop at the first of them.
template <class T>
group_of<T> count_leading_sign_bits(group_of<T> a) {
  const group_of<T> changes = (a ^ a >> 1) & static_cast<T>(static_cast<T>(~T{0}) >> 1);
  return count_leading_zeros<T>(changes) - 1;
}

// Units of so many bytes of each lane in reverse order. By whole groups, for which there are instructions.
template <int Bytes>
constexpr auto reversing = merging_groups([]<class T>(T, byte_group a) {
  constexpr auto in_lane = [](int i, int) { return i ^ static_cast<int>(sizeof(T) - Bytes); };
  return shuffle<in_lane>(a, a);
});

// The low part of a lane, extended as the lane's type has it. Part is signed.
template <class Part>
constexpr auto extended = []<class T>(T a) {
  if constexpr (std::is_signed_v<T>) return static_cast<Part>(a);
  if constexpr (std::is_unsigned_v<T>) return static_cast<std::make_unsigned_t<Part>>(a);
};

constexpr auto AbsVM = merging_unary([](auto a) { return a < 0 ? subtract(decltype(a){0}, a) : a; });
constexpr auto NegVM = merging_unary([](auto a) { return subtract(decltype(a){0}, a); });
constexpr auto InvVM = merging_unary([](auto a) { return ~a; });
constexpr auto NotVM = merging_unary([](auto a) { return a == 0; });
constexpr auto ClsVM =
    merging_groups([]<class T>(T, byte_group a) { return byte_group(count_leading_sign_bits<T>(group_of<T>(a))); });
constexpr auto ClzVM =
    merging_groups([]<class T>(T, byte_group a) { return byte_group(count_leading_zeros<T>(group_of<T>(a))); });
constexpr auto CntVM =
    merging_groups([]<class T>(T, byte_group a) { return byte_group(count_ones<T>(group_of<T>(a))); });
constexpr auto RBitVM = merging_unary([]<class T>(T a) { return BitReverse(a, width<T>); });
constexpr auto Rev1V = reversing<1>;
constexpr auto Rev2V = reversing<2>;
constexpr auto Rev4V = reversing<4>;
constexpr auto Extnd12VM = merging_unary(extended<std::int8_t>);
constexpr auto Extnd14VM = merging_unary(extended<std::int8_t>);
constexpr auto Extnd18VM = merging_unary(extended<std::int8_t>);
constexpr auto Extnd24VM = merging_unary(extended<std::int16_t>);
constexpr auto Extnd28VM = merging_unary(extended<std::int16_t>);
constexpr auto Extnd48VM = merging_unary(extended<std::int32_t>);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/integer_unary.def"
#include "sve/veclib/members/define.inc"
