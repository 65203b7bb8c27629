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
constexpr auto ClsVM = merging_unary([]<class T>(T a) { return CountLeadingSignBits(a, width<T>); });
constexpr auto ClzVM = merging_unary([]<class T>(T a) { return CountLeadingZeroBits(a, width<T>); });
constexpr auto CntVM = merging_unary([]<class T>(T a) { return BitCount(a, width<T>); });
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
