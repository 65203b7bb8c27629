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

std::string p_text(std::uint32_t num, std::uint32_t size) {
  return aarch64_p_reg::pname[num] + std::string{element_suffix[size]};
}

// "{z0.b}", "{z0.b, z1.b}", "{z0.b-z2.b}"; a list that goes round past Z31 names each register.
std::string list_text(std::uint32_t first, std::uint32_t size, std::uint32_t count) {
  if (count > 2 && first + count <= 32)
    return std::string{"{"} + z_text(first, size) + "-" + z_text(first + count - 1, size) + "}";
  std::string text = std::string{"{"} + z_text(first, size);
  for (std::uint32_t i = 1; i < count; ++i) text += ", " + z_text((first + i) % 32, size);
  return text + "}";
}

// The shift of a scaled offset: ", lsl #2".
std::string shift_text(const char* how, unsigned multiple) {
  return std::string{how} + " #" + std::to_string(std::countr_zero(multiple));
}

std::string r_text(std::uint32_t num, std::uint32_t size) {
  return size == size_x ? aarch64_i_reg::xname[num] : aarch64_i_reg::wname[num];
}

std::string rsp_text(std::uint32_t num, std::uint32_t size) {
  if (size == size_x) return aarch64_i_rsp_reg::xname[num];
  return num == 31 ? "wsp" : aarch64_i_rsp_reg::wname[num];  // the table has no name for it
}

std::string number(std::int64_t value) { return std::string{"#"} + std::to_string(value); }

std::string fp_text(std::uint32_t field) {
  char text[40];
  std::snprintf(text, sizeof text, "#%.18e", std::bit_cast<double>(expand_fp_immediate(field).dbl));
  return text;
}

std::string logical_text(std::uint32_t field) {
  char text[24];
  std::snprintf(text, sizeof text, "#0x%" PRIx64, decode_bit_mask(field).value);
  return text;
}

// A shift shows where it can't be told from the value: of nothing, and of more than the element holds.
std::string shifted_text(std::int64_t eight_bits, bool shifted, std::uint32_t size) {
  if (!shifted) return number(eight_bits);
  return eight_bits == 0 || size == size_b ? number(eight_bits) + ", lsl #8" : number(eight_bits * 256);
}

std::string pattern_text(std::uint32_t field) {
  constexpr std::array<const char*, 14> low{"pow2", "vl1", "vl2",  "vl3",  "vl4",  "vl5",   "vl6",
                                            "vl7",  "vl8", "vl16", "vl32", "vl64", "vl128", "vl256"};
  constexpr std::array<const char*, 3> high{"mul4", "mul3", "all"};
  if (field < low.size()) return low[field];
  return field >= 29 ? high[field - 29] : number(field);
}

std::string prefetch_text(std::uint32_t field) {
  const std::uint32_t level = field >> 1 & 3;
  if (level == 3) return number(field);
  return std::string{(field & 8) != 0 ? "pst" : "pld"} + "l" + std::to_string(level + 1) +
         ((field & 1) != 0 ? "strm" : "keep");
}

std::string immediate_text(const operand& op, std::uint32_t size, std::uint32_t word) {
  using enum operand_kind;
  const std::uint32_t field = extract(op.mask, word);
  const std::int32_t signed_field = sign_extend(field, std::popcount(op.mask));
  switch (op.kind) {
    case imm_signed: return number(signed_field * op.multiple);
    case imm_vl: return number(signed_field * op.multiple) + ", mul vl";
    case imm_plus_one:
    case imm_multiplier: return std::string{"mul "} + number(field + 1);
    case imm_shifted:
    case imm_shifted_narrow: return shifted_text(field & 0xFF, (field & 0x100) != 0, size);
    case imm_shifted_s: return shifted_text(sign_extend(field, 8), (field & 0x100) != 0, size);
    case imm_right_shift: return number(right_shift_amount(field, size));
    case imm_pattern: return pattern_text(field);
    case imm_rotation: return number(field * 90);
    case imm_half_turn: return number(field == 0 ? 90 : 270);
    case imm_index: return std::string{"["} + std::to_string(field) + "]";
    case imm_logical: return logical_text(field);
    case imm_fp_dup:
    case imm_fp: return fp_text(field);
    case imm_fp_half_one: return field == 0 ? "#0.5" : "#1.0";
    case imm_fp_half_two: return field == 0 ? "#0.5" : "#2.0";
    case imm_fp_zero_one: return field == 0 ? "#0.0" : "#1.0";
    case imm_prefetch: return prefetch_text(field);
    default: return number(field * op.multiple);
  }
}

}  // namespace

std::string format_operand(const operand& op, std::uint32_t row_size, std::uint32_t word) {
  using enum operand_kind;
  const std::uint32_t num = extract(op.mask, word), size = op.size_in(row_size);
  const bool scaled = op.multiple != 1;
  switch (op.kind) {
    case z: return z_text(num, size) + (scaled ? shift_text(", lsl", op.multiple) : "");
    case z_both: return z_text(num, size);
    case z_whole: return aarch64_z_reg::zname[num];
    case z_list: return list_text(num, size, op.multiple);
    case z_sxtw: return z_text(num, size) + (scaled ? shift_text(", sxtw", op.multiple) : ", sxtw");
    case z_uxtw: return z_text(num, size) + (scaled ? shift_text(", uxtw", op.multiple) : ", uxtw");
    case v:
    case v_both: return "bhsd"[size] + std::to_string(num);
    case pg_merging: return aarch64_p_reg::pname_m[num];
    case pg_zeroing: return aarch64_p_reg::pname_z[num];
    case pg:
    case p_whole: return aarch64_p_reg::pname[num];
    case p:
    case p_both: return p_text(num, size);
    case r: return r_text(num, size) + (scaled ? shift_text(", lsl", op.multiple) : "");
    case r_both: return r_text(num, size);
    case rsp: return rsp_text(num, size);
    default: return immediate_text(op, size, word);
  }
}

}  // namespace quern
