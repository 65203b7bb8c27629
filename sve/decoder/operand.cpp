// Operands as assembly.
#include "sve/decoder/operand.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace quern {
namespace {

constexpr const char* element_suffix[] = {".b", ".h", ".s", ".d", ".q"};

std::string z_text(std::uint32_t num, std::uint32_t size) {
  return aarch64_z_reg::zname[num] + std::string{element_suffix[size]};
}

// The shift of a scaled offset: ", lsl #2"; of one that is not, nothing.
std::string shift_text(unsigned multiple) {
  return multiple == 1 ? "" : std::string{", lsl #"} + std::to_string(std::countr_zero(multiple));
}

// The extension of an offset, and its shift: ", sxtw", ", sxtw #2".
std::string extension_text(const char* how, unsigned multiple) {
  return std::string{", "} + how + (multiple == 1 ? "" : " #" + std::to_string(std::countr_zero(multiple)));
}

std::uint32_t field_of(const operand& op, std::uint32_t word) { return extract(op.mask, word); }

std::int32_t signed_field_of(const operand& op, std::uint32_t word) {
  return sign_extend(field_of(op, word), std::popcount(op.mask));
}

std::string number(std::int64_t value) { return std::string{"#"} + std::to_string(value); }

// A shift shows where it can't be told from the value: of nothing, and of more than the element holds.
std::string shifted_text(std::int64_t eight_bits, bool is_shifted, std::uint32_t size) {
  if (!is_shifted) return number(eight_bits);
  return eight_bits == 0 || size == size_b ? number(eight_bits) + ", lsl #8" : number(eight_bits * 256);
}

}  // namespace

namespace operand_text {

std::string nothing(const operand&, std::uint32_t, std::uint32_t) { return ""; }

std::string vector(const operand& op, std::uint32_t size, std::uint32_t word) {
  return z_text(field_of(op, word), size) + shift_text(op.multiple);
}

std::string bare_vector(const operand& op, std::uint32_t, std::uint32_t word) {
  return aarch64_z_reg::zname[field_of(op, word)];
}

// "{z0.b}", "{z0.b, z1.b}", "{z0.b-z2.b}"; a list that goes round past Z31 names each register.
std::string vector_list(const operand& op, std::uint32_t size, std::uint32_t word) {
  const std::uint32_t first = field_of(op, word), count = op.multiple;
  if (count > 2 && first + count <= 32)
    return std::string{"{"} + z_text(first, size) + "-" + z_text(first + count - 1, size) + "}";
  std::string text = std::string{"{"} + z_text(first, size);
  for (std::uint32_t i = 1; i < count; ++i) text += ", " + z_text((first + i) % 32, size);
  return text + "}";
}

std::string sxtw_vector(const operand& op, std::uint32_t size, std::uint32_t word) {
  return z_text(field_of(op, word), size) + extension_text("sxtw", op.multiple);
}

std::string uxtw_vector(const operand& op, std::uint32_t size, std::uint32_t word) {
  return z_text(field_of(op, word), size) + extension_text("uxtw", op.multiple);
}

std::string element(const operand& op, std::uint32_t size, std::uint32_t word) {
  return "bhsd"[size] + std::to_string(field_of(op, word));
}

std::string merging(const operand& op, std::uint32_t, std::uint32_t word) {
  return aarch64_p_reg::pname_m[field_of(op, word)];
}

std::string zeroing(const operand& op, std::uint32_t, std::uint32_t word) {
  return aarch64_p_reg::pname_z[field_of(op, word)];
}

std::string bare_predicate(const operand& op, std::uint32_t, std::uint32_t word) {
  return aarch64_p_reg::pname[field_of(op, word)];
}

std::string predicate(const operand& op, std::uint32_t size, std::uint32_t word) {
  return aarch64_p_reg::pname[field_of(op, word)] + std::string{element_suffix[size]};
}

std::string general(const operand& op, std::uint32_t size, std::uint32_t word) {
  const std::uint32_t num = field_of(op, word);
  return (size == size_x ? aarch64_i_reg::xname[num] : aarch64_i_reg::wname[num]) + shift_text(op.multiple);
}

std::string general_sp(const operand& op, std::uint32_t size, std::uint32_t word) {
  const std::uint32_t num = field_of(op, word);
  if (size == size_x) return aarch64_i_rsp_reg::xname[num];
  return num == 31 ? "wsp" : aarch64_i_rsp_reg::wname[num];  // the table has no name for it
}

std::string plain(const operand& op, std::uint32_t, std::uint32_t word) {
  return number(std::int64_t{field_of(op, word)} * op.multiple);
}

std::string signed_number(const operand& op, std::uint32_t, std::uint32_t word) {
  return number(signed_field_of(op, word) * op.multiple);
}

std::string vector_multiple(const operand& op, std::uint32_t size, std::uint32_t word) {
  return signed_number(op, size, word) + ", mul vl";
}

std::string multiplier(const operand& op, std::uint32_t, std::uint32_t word) {
  return std::string{"mul "} + number(field_of(op, word) + 1);
}

std::string shifted(const operand& op, std::uint32_t size, std::uint32_t word) {
  const std::uint32_t field = field_of(op, word);
  return shifted_text(field & 0xFF, (field & 0x100) != 0, size);
}

std::string shifted_signed(const operand& op, std::uint32_t size, std::uint32_t word) {
  const std::uint32_t field = field_of(op, word);
  return shifted_text(sign_extend(field, 8), (field & 0x100) != 0, size);
}

std::string right_shift(const operand& op, std::uint32_t size, std::uint32_t word) {
  return number(right_shift_amount(field_of(op, word), size));
}

std::string pattern(const operand& op, std::uint32_t, std::uint32_t word) {
  constexpr std::array<const char*, 14> low{"pow2", "vl1", "vl2",  "vl3",  "vl4",  "vl5",   "vl6",
                                            "vl7",  "vl8", "vl16", "vl32", "vl64", "vl128", "vl256"};
  constexpr std::array<const char*, 3> high{"mul4", "mul3", "all"};
  const std::uint32_t field = field_of(op, word);
  if (field < low.size()) return low[field];
  return field >= 29 ? high[field - 29] : number(field);
}

std::string rotation(const operand& op, std::uint32_t, std::uint32_t word) { return number(field_of(op, word) * 90); }

std::string half_turn(const operand& op, std::uint32_t, std::uint32_t word) {
  return number(field_of(op, word) == 0 ? 90 : 270);
}

std::string index(const operand& op, std::uint32_t, std::uint32_t word) {
  return std::string{"["} + std::to_string(field_of(op, word)) + "]";
}

std::string logical(const operand& op, std::uint32_t, std::uint32_t word) {
  char text[24];
  std::snprintf(text, sizeof text, "#0x%" PRIx64, decode_bit_mask(field_of(op, word)).value);
  return text;
}

std::string fp(const operand& op, std::uint32_t, std::uint32_t word) {
  char text[40];
  std::snprintf(text, sizeof text, "#%.18e", std::bit_cast<double>(expand_fp_immediate(field_of(op, word)).dbl));
  return text;
}

std::string half_one(const operand& op, std::uint32_t, std::uint32_t word) {
  return field_of(op, word) == 0 ? "#0.5" : "#1.0";
}

std::string half_two(const operand& op, std::uint32_t, std::uint32_t word) {
  return field_of(op, word) == 0 ? "#0.5" : "#2.0";
}

std::string zero_one(const operand& op, std::uint32_t, std::uint32_t word) {
  return field_of(op, word) == 0 ? "#0.0" : "#1.0";
}

std::string prefetch(const operand& op, std::uint32_t, std::uint32_t word) {
  const std::uint32_t field = field_of(op, word), level = field >> 1 & 3;
  if (level == 3) return number(field);
  return std::string{(field & 8) != 0 ? "pst" : "pld"} + "l" + std::to_string(level + 1) +
         ((field & 1) != 0 ? "strm" : "keep");
}

}  // namespace operand_text

std::string format_operand(const operand& op, std::uint32_t row_size, std::uint32_t word) {
  return op.traits().text(op, op.size_in(row_size), word);
}

}  // namespace quern
