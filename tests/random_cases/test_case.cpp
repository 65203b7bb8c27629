// Random test cases of a decode row.
#include "tests/random_cases/test_case.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>

#include "tests/random_cases/random_registers.h"
#include "tests/random_cases/random_source.h"
#include "tests/random_cases/reserved_words.h"
#include "tests/support/host_controls.h"

namespace quern {
namespace {

std::uint64_t case_seed(const decode_row& row, std::uint64_t seed) {
  return random_source(hash_text(row.name.view()) ^ seed).next();
}

bool is_one_run(std::uint32_t mask) { return std::popcount(mask) == std::countr_one(mask >> std::countr_zero(mask)); }

// Puts one field of the word into another of the same width, so that registers coincide.
std::uint32_t alias_fields(const decode_row& row, random_source& random, std::uint32_t word) {
  const std::uint32_t to = row.operands[random.below(row.operands.size())].mask;
  const std::uint32_t from = row.operands[random.below(row.operands.size())].mask;
  if (!is_one_run(to) || !is_one_run(from) || std::popcount(to) != std::popcount(from)) return word;
  return (word & ~to) | extract(from, word) << std::countr_zero(to);
}

// With base and offset in one register the address can't be chosen.
bool can_be_placed(const decode_row& row, std::uint32_t word) {
  const auto form = memory_form_of(row);
  if (!form || form->form != address_form::base_register) return true;
  return extract(find_operand(row, operand_kind::rsp)->mask, word) !=
         extract(find_operand(row, operand_kind::r)->mask, word);
}

std::uint64_t arena_address(std::int64_t offset) {
  return reinterpret_cast<std::uintptr_t>(arena()) + static_cast<std::uint64_t>(offset);
}

// Whether the lanes are floating-point numbers, or become such.
bool computes_with_numbers(const decode_row& row) {
  const char tag = row.name.text[3];
  return tag == 'D' || tag == 'F' || tag == 'H' || row.way == route::direct_fp || row.stem.starts_with("From");
}

// One case being given its addresses.
struct placement {
  const decode_row& row;
  const memory_form& form;
  random_source& random;
  test_case& c;

  std::uint32_t number(const operand* op) const { return extract(op->mask, c.word); }

  // The first byte of an access that stays in the arena; 16 bytes are left below for set_base().
  std::uint64_t target() const { return arena_address(random.between(16, arena_bytes - form.span)); }

  // Sets the base so that base + offset is about `address`. As a base the stack pointer must be a multiple of 16.
  void set_base(std::uint64_t address, std::uint64_t offset) const {
    const std::uint32_t n = number(find_operand(row, operand_kind::rsp));
    std::uint64_t& base = n == 31 ? c.state.sp : c.state.x[n];
    base = n == 31 ? (address - offset) & ~std::uint64_t{15} : address - offset;
    c.access = base + offset;
  }

  std::uint64_t immediate(operand_kind kind) const {
    const operand* const op = find_operand(row, kind);
    const std::uint32_t field = number(op);
    const bool is_signed = kind != operand_kind::imm_unsigned;
    const std::int64_t units = is_signed ? sign_extend(field, std::popcount(op->mask)) : std::int64_t{field};
    return static_cast<std::uint64_t>(units * form.scale);
  }

  void base_immediate() const {
    for (const operand_kind kind : {operand_kind::imm_signed, operand_kind::imm_vl, operand_kind::imm_unsigned})
      if (find_operand(row, kind) != nullptr) return set_base(target(), immediate(kind));
  }

  // Any offset register will do, since addresses wrap.
  void base_register() const {
    const std::uint32_t n = number(find_operand(row, operand_kind::r));
    set_base(target(), n == 31 ? 0 : c.state.x[n] * static_cast<std::uint64_t>(form.scale));
  }

  template <class SetLane>
  void each_active_lane(SetLane set_lane) const {
    const unsigned char* const active = c.state.p[number(&memory_predicate(row))];
    for (std::int64_t at = 0; at != VL_BYTES; at += form.lane_bytes)
      if ((active[at] & 1) != 0) set_lane(at);
  }

  void set_lane(const operand* vector, std::int64_t at, std::uint64_t value, std::int64_t bytes) const {
    std::memcpy(c.state.z[number(vector)] + at, &value, static_cast<std::size_t>(bytes));
  }

  // The vector of addresses or offsets: the first operand is the vector that is loaded or stored.
  const operand* other_vector() const {
    const auto is_vector = [](const operand& op) {
      return op.kind == operand_kind::z || op.kind == operand_kind::z_sxtw || op.kind == operand_kind::z_uxtw;
    };
    return &*std::find_if(row.operands.begin() + 1, row.operands.end(), is_vector);
  }

  void note_element(std::uint64_t address) const {
    constexpr std::uint64_t page_bytes = 4096;  // qemu's
    const std::uint64_t last = address + static_cast<std::uint64_t>(form.span) - 1;
    c.split_element |= address / page_bytes != last / page_bytes;
  }

  // An inactive lane keeps its random address, which nobody may touch.
  void vector_base() const {
    const std::uint64_t offset = immediate(operand_kind::imm_unsigned);
    each_active_lane([&](std::int64_t at) {
      const std::uint64_t address = target();
      note_element(address);
      set_lane(other_vector(), at, address - offset, form.lane_bytes);
    });
  }

  // The word of an offset that is not extended, or the low word of one that is: the rest of the lane stays random.
  void base_vector() const {
    const std::int64_t reach = (arena_bytes / 2 - 32) / form.scale;
    const bool is_unsigned = form.width == offset_width::low_word_unsigned;
    set_base(arena_address(is_unsigned ? 16 + static_cast<std::int64_t>(random.below(16)) : arena_bytes / 2), 0);
    each_active_lane([&](std::int64_t at) {
      const std::int64_t low = is_unsigned ? 0 : -reach;
      const auto offset = static_cast<std::uint64_t>(random.between(low, reach - 1));
      note_element(c.access + offset * static_cast<std::uint64_t>(form.scale));
      if (form.width != offset_width::whole) return set_lane(other_vector(), at, offset, 4);
      const std::uint64_t shifted_out = form.scale > 1 ? random.next() << 63 : 0;
      set_lane(other_vector(), at, offset ^ shifted_out, 8);
    });
  }

  void place() const {
    for (std::int64_t at = 0; at != arena_bytes; at += 8) {
      const std::uint64_t bytes = random.next();
      std::memcpy(c.memory + at, &bytes, 8);
    }
    switch (form.form) {
      case address_form::base_immediate: return base_immediate();
      case address_form::base_register: return base_register();
      case address_form::base_vector: return base_vector();
      case address_form::vector_base: return vector_base();
    }
  }
};

}  // namespace

std::uint32_t make_word(const case_row& row, random_source& random) {
  for (;;) {
    std::uint32_t word = row.row->value | (static_cast<std::uint32_t>(random.next()) & ~row.map->key.mask());
    if (row.row->operands.size() > 1 && random.one_in(4)) word = alias_fields(*row.row, random, word);
    if (!is_reserved(*row.row, word) && can_be_placed(*row.row, word)) return word;
  }
}

void make_case(const case_row& row, std::uint64_t seed, test_case& c) {
  random_source random(case_seed(*row.row, seed));
  c.word = make_word(row, random);
  c.clean = !random.one_in(4);
  fill_registers(random, row.row->size, c.clean, c.state);
  if (computes_with_numbers(*row.row)) fill_numbers(random, row.row->size, c.state);
  const auto form = memory_form_of(*row.row);
  c.has_memory = form.has_value();
  c.split_element = false;
  if (form) placement{*row.row, *form, random, c}.place();
}

aarch64_decode_rc run_thunk(const decode_row& row, std::uint32_t word, cpu_state& state) {
  const host_controls controls(state);
  return row.thunk(&state, word);
}

std::vector<case_row> all_rows() {
  std::vector<case_row> rows;
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows) rows.push_back({&row, &map});
  return rows;
}

std::string describe(const decode_row& row, std::uint32_t word) {
  char number[16];
  std::snprintf(number, sizeof number, "0x%08x", word);
  std::string text = std::string(row.name.view()) + " (" + std::string(row.routine()) + ")  " + number + " ";
  for (const operand& op : row.operands) text.append(" ").append(format_operand(op, row.size, word));
  return text;
}

}  // namespace quern
