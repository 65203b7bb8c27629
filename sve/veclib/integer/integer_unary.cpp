// Integer operations on one vector.
#include "sve/veclib/integer/integer_unary.h"

#include "sve/arith/integer/bit_support.h"
#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

// The lane as the helpers for bits take it, at the lane's width.
template <class T>
constexpr int width = static_cast<int>(quern::element_bits<T>);

// Counts of bits by steps that vectors take: helpers that count one lane would have the loop leave its vectors.

// The sum of the fields of a lane, each Field bits wide, in its lowest one.
template <int Field, class T>
constexpr T sum_of_fields(T a) {
  if constexpr (Field < width<T>) return sum_of_fields<2 * Field>(static_cast<T>(a + (a >> Field)));
  return a;
}
template <class T>
constexpr T count_ones(T a) {
  constexpr auto every_other = [](int field) { return static_cast<T>(static_cast<T>(~T{0}) / ((T{1} << field) + 1)); };
  a = static_cast<T>(a - (a >> 1 & every_other(1)));
  a = static_cast<T>((a & every_other(2)) + (a >> 2 & every_other(2)));
  a = static_cast<T>((a + (a >> 4)) & static_cast<T>(~T{0}) / 255 * 15);
  return static_cast<T>(sum_of_fields<8>(a) & 127);
}

// All bits below the highest set one, by steps from Distance on.
template <int Distance, class T>
constexpr T with_lower_bits(T a) {
  if constexpr (Distance < width<T>) return with_lower_bits<2 * Distance>(static_cast<T>(a | a >> Distance));
  return a;
}
template <class T>
constexpr T count_leading_zeros(T a) {
  return count_ones(static_cast<T>(~with_lower_bits<1>(a)));
}

// Bits that differ from the one above them: the sign's equals stop at the first of them.
template <class T>
constexpr T count_leading_sign_bits(T a) {
  const T changes = static_cast<T>((a ^ a >> 1) & (static_cast<T>(~T{0}) >> 1));
  return static_cast<T>(count_leading_zeros(changes) - 1);
}

template <int Bytes>
constexpr auto reversed_units = []<class T>(T a) { return Reverse(a, width<T>, Bytes); };

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
constexpr auto ClsVM = merging_unary([](auto a) { return count_leading_sign_bits(a); });
constexpr auto ClzVM = merging_unary([](auto a) { return count_leading_zeros(a); });
constexpr auto CntVM = merging_unary([](auto a) { return count_ones(a); });
constexpr auto RBitVM = merging_unary([]<class T>(T a) { return BitReverse(a, width<T>); });
constexpr auto Rev1V = merging_unary(reversed_units<1>);
constexpr auto Rev2V = merging_unary(reversed_units<2>);
constexpr auto Rev4V = merging_unary(reversed_units<4>);
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
