// Calls of the vector library's functions for rows that go to a direct handler.
#include "tests/crosscheck/library_call.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include "sve/state/lanes.h"

namespace quern {
namespace {

// What an operand is to a function.
enum class value_kind { vector, predicate, scalar, registers };

value_kind kind_of(const operand& op) {
  const bool several = op.kind == operand_kind::z_list && op.multiple > 1;
  switch (op.traits().file) {
    case register_file::vector: return several ? value_kind::registers : value_kind::vector;
    case register_file::predicate: return value_kind::predicate;
    default: return value_kind::scalar;
  }
}

int parameters_of(const operand_counts& takes, value_kind kind) {
  switch (kind) {
    case value_kind::vector: return takes.vectors;
    case value_kind::predicate: return takes.predicates;
    case value_kind::scalar: return takes.scalars;
    case value_kind::registers: break;
  }
  return 0;
}

bool is_written(const decode_row& row, const library_member& function) {
  return row.memory.is_load() || function.takes.result != result_kind::none;
}

// PNEXT and BRKN take the old destination last, as the source that it is to them; a store takes what it stores last.
bool takes_first_operand_last(const decode_row& row) {
  return row.memory.kind == memory_kind::store || row.stem == "GenNextP" || row.stem.starts_with("BreakNext");
}

// The row's operands as the function takes them. The destination is among them where its old value is.
std::vector<const operand*> library_order(const decode_row& row, const library_member& function) {
  std::vector<const operand*> order;
  for (const operand& op : row.operands) order.push_back(&op);
  if (order.empty()) return order;
  const value_kind first = kind_of(*order[0]);
  const auto of_its_kind = std::ranges::count_if(order, [&](const operand* op) { return kind_of(*op) == first; });
  if (is_written(row, function) && parameters_of(function.takes, first) < of_its_kind) {
    order.erase(order.begin());
  } else if (takes_first_operand_last(row)) {
    std::rotate(order.begin(), order.begin() + 1, order.end());
  }
  return order;
}

std::uint64_t immediate(const operand& op, std::uint32_t size, std::uint32_t word) {
  using enum operand_kind;
  const std::uint32_t field = extract(op.mask, word);
  const auto as_signed = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
  const aarch64_sve_fp_dup_imm number = expand_fp_immediate(field);
  switch (op.kind) {
    case imm_signed:
    case imm_vl: return as_signed(sign_extend(field, std::popcount(op.mask)));
    case imm_shifted: return shifted_immediate(field);
    case imm_shifted_narrow: return shifted_immediate(field) & (size == size_b ? 0xFFu : ~0u);
    case imm_shifted_s: return as_signed(shifted_signed_immediate(field));
    case imm_right_shift: return right_shift_amount(field, size);
    case imm_logical: return decode_bit_mask(field).value;
    case imm_fp:
    case imm_fp_dup: return size == size_h ? number.half : size == size_s ? number.single : number.dbl;
    default: return field;
  }
}

std::uint64_t scalar(const operand& op, std::uint32_t row_size, std::uint32_t word, const cpu_state& state) {
  const std::uint32_t num = extract(op.mask, word), size = op.size_in(row_size);
  std::uint64_t element = 0;
  switch (op.traits().file) {
    case register_file::none: return immediate(op, size, word);
    case register_file::general: return num == 31 ? 0 : state.x[num];
    case register_file::general_sp: return num == 31 ? state.sp : state.x[num];
    default: by_size(size, [&]<class T>(T) { element = lane<T>(state.z[num], 0); }); return element;
  }
}

VecV vector(const cpu_state& state, std::uint32_t num) {
  VecV value;
  std::memcpy(value.bytes, state.z[num % 32], VL_BYTES);
  return value;
}

void deliver_scalar(const operand& op, std::uint32_t row_size, std::uint32_t word, std::uint64_t value,
                    cpu_state& state) {
  const std::uint32_t num = extract(op.mask, word), size = op.size_in(row_size);
  const register_file file = op.traits().file;
  if (file == register_file::element) {
    by_size(size, [&]<class T>(T) { set_scalar<T>(state.z[num], static_cast<T>(value)); });
  } else if (num != 31) {
    state.x[num] = size == size_x ? value : static_cast<std::uint32_t>(value);
  } else if (file == register_file::general_sp) {
    state.sp = value;
  }
}

void deliver(const operand& op, result_kind kind, std::uint32_t row_size, std::uint32_t word,
             const library_result& result, cpu_state& state) {
  const std::uint32_t num = extract(op.mask, word);
  switch (kind) {
    case result_kind::none: return;
    case result_kind::vector: std::memcpy(state.z[num], result.vector.bytes, VL_BYTES); return;
    case result_kind::predicate: return from_pred(result.predicate, state.p[num]);
    case result_kind::scalar: return deliver_scalar(op, row_size, word, result.scalar, state);
  }
}

// The registers of a load or store of several, which the function reads and writes where they are given.
constexpr std::uint32_t most_registers = 4;
void copy_in(const cpu_state& state, std::uint32_t num, VecV (&registers)[most_registers]) {
  for (std::uint32_t i = 0; i != most_registers; ++i) registers[i] = vector(state, num + i);
}
void copy_out(const VecV (&registers)[most_registers], std::uint32_t num, std::uint32_t count, cpu_state& state) {
  for (std::uint32_t i = 0; i != count; ++i) std::memcpy(state.z[(num + i) % 32], registers[i].bytes, VL_BYTES);
}

}  // namespace

void call_library(const decode_row& row, const library_member& function, std::uint32_t word, cpu_state& state) {
  CpuContext ctx = make_context(state);
  VecV registers[most_registers];
  library_operands operands{};
  operands.registers = registers;
  std::size_t vectors = 0, predicates = 0, scalars = 0;
  for (const operand* op : library_order(row, function)) {
    const std::uint32_t num = extract(op->mask, word);
    switch (kind_of(*op)) {
      case value_kind::vector: operands.vectors[vectors++] = vector(state, num); break;
      case value_kind::predicate: operands.predicates[predicates++] = to_pred(state.p[num]); break;
      case value_kind::scalar: operands.scalars[scalars++] = scalar(*op, row.size, word, state); break;
      case value_kind::registers: copy_in(state, num, registers); break;
    }
  }
  const library_result result = function(operands, ctx);
  if (!row.operands.empty()) {
    const operand& first = row.operands[0];
    if (kind_of(first) == value_kind::registers && row.memory.is_load())
      copy_out(registers, extract(first.mask, word), row.memory.registers, state);
    deliver(first, function.takes.result, row.size, word, result, state);
  }
  store_context(ctx, state);
}

}  // namespace quern
