// Which words are sums with constants, and what constants those are: the words' thunks tell, on a register file of
// zeros.
#include "sve/trap/patch/ordinary_instruction.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "sve/decoder/decode_row.h"
#include "sve/trap/patch/instructions.h"

namespace quern {
namespace {

using aarch64::reg;
using aarch64::word;

// INC and DEC by a pattern's elements, ADDVL and ADDPL; and CNT by a pattern, and RDVL.
constexpr std::string_view sums[] = {"IncrVLSI", "DecrVLSI", "AddVLX", "AddPLX"};
constexpr std::string_view constants[] = {"CountVLSI", "VLX"};

bool is_one_of(std::string_view stem, std::span<const std::string_view> stems) {
  return std::find(stems.begin(), stems.end(), stem) != stems.end();
}

reg register_of(const operand& op, std::uint32_t w) { return {(w & op.mask) >> std::countr_zero(op.mask)}; }

word sum(reg d, reg n, std::int64_t value) {
  const bool is_less = value < 0;
  const auto size = static_cast<std::uint64_t>(is_less ? -value : value);
  if (size < 4096) return is_less ? aarch64::sub_x(d, n, size & 4095) : aarch64::add_x(d, n, size & 4095);
  const word pages = size >> 12 & 4095;
  if (size != std::uint64_t{pages} << 12) return 0;
  return is_less ? aarch64::sub_x_4096(d, n, pages) : aarch64::add_x_4096(d, n, pages);
}

word constant(reg d, std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  if (bits <= 0xFFFF) return aarch64::movz_x(d, bits & 0xFFFF);
  return ~bits <= 0xFFFF ? aarch64::movn_x(d, ~bits & 0xFFFF) : 0;
}

}  // namespace

std::uint32_t ordinary_instruction(std::uint32_t w, const decode_row& row) {
  const bool is_sum = is_one_of(row.stem, sums);
  if (!is_sum && !is_one_of(row.stem, constants)) return 0;
  const operand& result = row.operands[0];
  const operand& source = result.traits().both ? result : row.operands[1];
  const reg d = register_of(result, w);
  const bool has_sp = result.traits().file == register_file::general_sp;
  if (d.number == 31 && !has_sp) return 0;
  static cpu_state zeros;
  std::memset(&zeros, 0, sizeof zeros);
  row.thunk(&zeros, w);
  const auto value = static_cast<std::int64_t>(d.number == 31 ? zeros.sp : zeros.x[d.number]);
  return is_sum ? sum(d, register_of(source, w), value) : constant(d, value);
}

}  // namespace quern
