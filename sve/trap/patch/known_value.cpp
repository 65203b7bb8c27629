// Instructions of known operands, by the classes of the architecture's tables.
#include "sve/trap/patch/known_value.h"

#include <bit>
#include <utility>

#include "sve/decoder/immediate.h"
#include "sve/state/cpu_state.h"
#include "sve/trap/patch/instruction_classes.h"

namespace quern {
namespace {

using kind = known_value::kind;
using result = std::optional<known_result>;
namespace is = aarch64::is;

using aarch64::field;
using aarch64::is_set;

// `bits` low bits, 1 to 64.
constexpr std::uint64_t ones(unsigned bits) { return ~std::uint64_t{0} >> (64 - bits); }
constexpr std::uint64_t extended(std::uint64_t x, unsigned bits, bool is_signed) {
  const std::uint64_t sign = std::uint64_t{1} << (bits - 1);
  return is_signed ? ((x & ones(bits)) ^ sign) - sign : x & ones(bits);
}

// The fields that most instructions have.
struct fields {
  explicit fields(std::uint32_t w)
      : word(w), d(field(w, 4, 0)), n(field(w, 9, 5)), m(field(w, 20, 16)), width(is_set(w, 31) ? 64 : 32) {}
  std::uint32_t word, d, n, m;
  unsigned width;
};

known_value value_of(std::uint32_t n, const known_registers& registers) {
  return n == 31 ? known_value{kind::number, 0} : registers[n];
}

known_value number(std::uint64_t x, unsigned width) { return {kind::number, x & ones(width)}; }

constexpr std::uint32_t negative_flag = 1u << 31, zero_flag = 1 << 30, carry_flag = 1 << 29, overflow_flag = 1 << 28;

std::uint32_t sign_and_zero(std::uint64_t x, unsigned width) {
  return (x >> (width - 1) & 1 ? negative_flag : 0) | (x == 0 ? zero_flag : 0);
}

// a + b, or a - b by its complement and a carry.
known_result sum(const fields& f, std::uint64_t a, std::uint64_t b) {
  const bool is_difference = is_set(f.word, 30), sets_flags = is_set(f.word, 29);
  const std::uint64_t x = a & ones(f.width), y = (is_difference ? ~b : b) & ones(f.width);
  const std::uint64_t cut = (x + y + is_difference) & ones(f.width);
  known_result r{f.d, number(cut, f.width)};
  if (!sets_flags) return r;
  const bool carries = is_difference ? cut <= x : cut < x;
  const bool overflows = ((x ^ cut) & (y ^ cut)) >> (f.width - 1) & 1;
  r.nzcv = sign_and_zero(cut, f.width) | (carries ? carry_flag : 0) | (overflows ? overflow_flag : 0);
  return r;
}

// Two addresses of which this holds compare as their distances do.
bool is_within_state(known_value v) { return v.number <= sizeof(cpu_state); }

// Sums with the state's address in them, of all its bits.
result sum_of(const fields& f, known_value a, known_value b) {
  if (a.is == kind::number && b.is == kind::number) return sum(f, a.number, b.number);
  const bool is_difference = is_set(f.word, 30), sets_flags = is_set(f.word, 29);
  if (f.width != 64) return {};
  if (a.is == kind::state && b.is == kind::state && is_difference && is_within_state(a) && is_within_state(b))
    return sum(f, a.number, b.number);
  if (sets_flags) return {};
  if (b.is == kind::state && !is_difference) std::swap(a, b);
  if (a.is != kind::state || b.is != kind::number) return {};
  return known_result{f.d, {kind::state, is_difference ? a.number - b.number : a.number + b.number}};
}

known_result logical(const fields& f, std::uint64_t a, std::uint64_t b) {
  const std::uint32_t operation = field(f.word, 30, 29);
  const std::uint64_t x = operation == 1 ? a | b : operation == 2 ? a ^ b : a & b;
  known_result r{f.d, number(x, f.width)};
  if (operation == 3) r.nzcv = sign_and_zero(r.value.number, f.width);
  return r;
}

std::uint64_t shifted(std::uint64_t x, std::uint32_t how, unsigned by, unsigned width) {
  x &= ones(width);
  const std::uint64_t up = by == 0 ? 0 : x << (width - by);
  switch (how) {
    case 0: return x << by;
    case 1: return x >> by;
    case 2: return static_cast<std::uint64_t>(static_cast<std::int64_t>(extended(x, width, true)) >> by);
    default: return x >> by | up;
  }
}

known_value shifted_register(const fields& f, const known_registers& registers) {
  const known_value m = value_of(f.m, registers);
  const std::uint32_t how = field(f.word, 23, 22), by = field(f.word, 15, 10);
  if (m.is != kind::number) return how == 0 && by == 0 ? m : known_value{};
  return number(shifted(m.number, how, by & (f.width - 1), f.width), f.width);
}

known_value extended_register(const fields& f, const known_registers& registers) {
  const known_value m = value_of(f.m, registers);
  if (m.is != kind::number) return {};
  const std::uint32_t option = field(f.word, 15, 13);
  return number(extended(m.number, 8u << (option & 3), is_set(option, 2)) << field(f.word, 12, 10), f.width);
}

// ADR and ADRP.
known_result place_address(const fields& f, const unsigned char* pc) {
  const std::uint64_t distance = extended(field(f.word, 23, 5) << 2 | field(f.word, 30, 29), 21, true);
  const auto here = reinterpret_cast<std::uint64_t>(pc);
  return {f.d, number(is_set(f.word, 31) ? (here & ~ones(12)) + (distance << 12) : here + distance, 64)};
}

result sum_with_immediate(const fields& f, const known_registers& registers) {
  const bool sets_flags = is_set(f.word, 29);
  if (f.n == 31 || (f.d == 31 && !sets_flags)) return {};  // the stack pointer
  const std::uint64_t immediate = std::uint64_t{field(f.word, 21, 10)} << (is_set(f.word, 22) ? 12 : 0);
  return sum_of(f, registers[f.n], {kind::number, immediate});
}

result logical_with_immediate(const fields& f, const known_registers& registers) {
  const known_value n = value_of(f.n, registers);
  const bool is_to_sp = f.d == 31 && field(f.word, 30, 29) != 3;
  if (n.is != kind::number || is_to_sp) return {};
  return logical(f, n.number, decode_bit_mask(field(f.word, 22, 10)).value);
}

// MOVN, MOVZ, MOVK.
result wide_move(const fields& f, const known_registers& registers) {
  const unsigned by = 16 * field(f.word, 22, 21);
  const std::uint64_t immediate = std::uint64_t{field(f.word, 20, 5)} << by;
  const std::uint32_t operation = field(f.word, 30, 29);
  if (operation == 0) return known_result{f.d, number(~immediate, f.width)};
  if (operation == 2) return known_result{f.d, number(immediate, f.width)};
  const known_value d = value_of(f.d, registers);
  if (d.is != kind::number) return {};
  return known_result{f.d, number((d.number & ~(ones(16) << by)) | immediate, f.width)};
}

// SBFM, BFM and UBFM: bits from `right` on come to the result's lowest ones, or those up to `top` higher.
result bit_field(const fields& f, const known_registers& registers) {
  const known_value n = value_of(f.n, registers), d = value_of(f.d, registers);
  const std::uint32_t operation = field(f.word, 30, 29);
  const bool is_signed = operation == 0, keeps_others = operation == 1;
  if (n.is != kind::number || (keeps_others && d.is != kind::number)) return {};
  const unsigned right = field(f.word, 21, 16), top = field(f.word, 15, 10);
  const bool comes_down = top >= right;
  const unsigned bits = comes_down ? top - right + 1 : top + 1, place = comes_down ? 0 : f.width - right;
  const std::uint64_t moved = extended(comes_down ? n.number >> right : n.number, bits, is_signed) << place;
  const std::uint64_t others = keeps_others ? d.number & ~(ones(bits) << place) : 0;
  return known_result{f.d, number(moved | others, f.width)};
}

result logical_of_registers(const fields& f, const known_registers& registers) {
  const known_value n = value_of(f.n, registers), m = shifted_register(f, registers);
  const bool is_inverted = is_set(f.word, 21), is_move = f.n == 31 && field(f.word, 30, 29) == 1 && !is_inverted;
  if (is_move && f.width == 64 && m.is != kind::nothing) return known_result{f.d, m};
  if (n.is != kind::number || m.is != kind::number) return {};
  return logical(f, n.number, is_inverted ? ~m.number : m.number);
}

}  // namespace

std::optional<known_result> result_of(std::uint32_t word, const unsigned char* pc, const known_registers& registers) {
  const fields f(word);
  if (is::place_address(word)) return place_address(f, pc);
  if (is::sum_with_immediate(word)) return sum_with_immediate(f, registers);
  if (is::logical_with_immediate(word)) return logical_with_immediate(f, registers);
  if (is::wide_move(word)) return wide_move(f, registers);
  if (is::bit_field(word)) return bit_field(f, registers);
  if (is::logical_of_registers(word)) return logical_of_registers(f, registers);
  if (is::sum_of_shifted(word)) return sum_of(f, value_of(f.n, registers), shifted_register(f, registers));
  const bool may_use_sp = f.n == 31 || f.d == 31;
  if (is::sum_of_extended(word) && !may_use_sp) return sum_of(f, registers[f.n], extended_register(f, registers));
  return {};
}

bool meets(std::uint32_t nzcv, std::uint32_t condition) {
  const bool n = nzcv & negative_flag, z = nzcv & zero_flag, c = nzcv & carry_flag, v = nzcv & overflow_flag;
  const bool met[] = {z, c, n, v, c && !z, n == v, n == v && !z, true};
  const bool is_inverted = (condition & 1) && condition != 15;
  return met[condition >> 1] != is_inverted;
}

}  // namespace quern
