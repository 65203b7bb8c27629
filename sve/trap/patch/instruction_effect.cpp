// The classes of AArch64 instructions, by the fixed bits of the architecture's tables.
#include "sve/trap/patch/instruction_effect.h"

#include <bit>
#include <cstring>

#include "sve/trap/patch/instruction_classes.h"

namespace quern {
namespace {

using registers = std::optional<written_registers>;

using aarch64::field;
using aarch64::is_set;
namespace is = aarch64::is;

constexpr std::int64_t distance(std::uint32_t word, int high, int low) {
  return aarch64::signed_field(word, high, low) * 4;
}

constexpr std::uint32_t set_of(std::uint32_t number) { return std::uint32_t{1} << number; }
constexpr written_registers general(std::uint32_t number) { return {set_of(number) & all_general_registers, 0}; }
constexpr written_registers vectors(std::uint32_t first, int count) {
  return {0, std::rotl((std::uint32_t{1} << count) - 1, static_cast<int>(first))};
}
constexpr written_registers operator|(written_registers a, written_registers b) { return {a.x | b.x, a.v | b.v}; }
constexpr written_registers in_file(bool is_vector, std::uint32_t number) {
  return is_vector ? vectors(number, 1) : general(number);
}

// LD1 to LD4 and their kin: "multiple structures", whose number of registers the opcode tells, and "single structure".
registers structure_access(std::uint32_t word) {
  const bool is_single = is_set(word, 24), moves_base = is_set(word, 23);
  constexpr int registers_of_opcode[16] = {4, 0, 4, 0, 3, 0, 3, 1, 2, 0, 2};
  const int several = registers_of_opcode[field(word, 15, 12)];
  const int count = is_single ? 1 + 2 * is_set(word, 13) + is_set(word, 21) : several;
  if (count == 0) return {};
  const written_registers base = moves_base ? general(field(word, 9, 5)) : written_registers{};
  return is_set(word, 22) ? base | vectors(field(word, 4, 0), count) : base;
}

// Exclusive and ordered accesses, and compare-and-swap: a status in Rs, or what was in memory.
registers exclusive_access(std::uint32_t word) {
  const bool is_pair_swap = is_set(word, 21) && !is_set(word, 31) && !is_set(word, 23);
  if (is_pair_swap) return {};
  return general(field(word, 4, 0)) | general(field(word, 14, 10)) | general(field(word, 20, 16));
}

written_registers pair_access(std::uint32_t word) {
  const bool is_load = is_set(word, 22), is_vector = is_set(word, 26), moves_base = is_set(word, 23);
  written_registers all = moves_base ? general(field(word, 9, 5)) : written_registers{};
  if (is_load) all = all | in_file(is_vector, field(word, 4, 0)) | in_file(is_vector, field(word, 14, 10));
  return all;
}

// Of one register, in all modes of addressing, and atomic operations, which write one. A prefetch counts as a load.
registers single_access(std::uint32_t word) {
  const bool has_offset_of_12_bits = is_set(word, 24), is_vector = is_set(word, 26);
  const std::uint32_t operation = field(word, 23, 22);
  const bool is_load = is_vector ? is_set(operation, 0) : operation != 0;
  const written_registers loaded = in_file(is_vector, field(word, 4, 0));
  const written_registers result = is_load ? loaded : written_registers{};
  if (has_offset_of_12_bits) return result;
  const std::uint32_t mode = field(word, 11, 10);
  if (!is_set(word, 21)) return is_set(mode, 0) ? result | general(field(word, 9, 5)) : result;
  if (mode == 2) return result;           // a register as offset
  if (mode == 0) return result | loaded;  // atomic
  return {};
}

registers access(std::uint32_t word) {
  if (is::structure_access(word)) return structure_access(word);
  if (is::exclusive_access(word)) return exclusive_access(word);
  if (is::literal_access(word)) return in_file(is_set(word, 26), field(word, 4, 0));
  if (is::pair_access(word)) return pair_access(word);
  if (is::single_access(word)) return single_access(word);
  return {};
}

// All have their result in a vector but conversions to integers and moves of elements to general registers.
written_registers vector_operation(std::uint32_t word) {
  const bool converts = (word & 0x5F000000) == 0x1E000000 && (!is_set(word, 21) || field(word, 15, 10) == 0);
  const bool moves_element = (word & 0xBFE08400) == 0x0E000400;
  const written_registers in_vector = vectors(field(word, 4, 0), 1);
  return converts || moves_element ? in_vector | general(field(word, 4, 0)) : in_vector;
}

// Moves of system registers, barriers, cache maintenance, and hints, of which some change a register.
registers system_operation(std::uint32_t word) {
  constexpr std::uint32_t sign_return = 0xD503233F, check_return = 0xD50323BF;
  if ((word & 0xFFC00000) != 0xD5000000) return {};
  if (is::hint(word)) {
    const bool is_bti = (word & 0xFFFFFF3F) == 0xD503241F;
    if (word == sign_return || word == check_return) return general(30);
    return word == aarch64::nop || is_bti ? registers(written_registers{}) : registers();
  }
  return is_set(word, 21) ? general(field(word, 4, 0)) : written_registers{};
}

}  // namespace

std::optional<written_registers> effect_of(std::uint32_t word) {
  switch (field(word, 28, 25)) {
    case 0b1000:
    case 0b1001:  // with an immediate
    case 0b0101:
    case 0b1101:  // with registers
      return general(field(word, 4, 0));
    case 0b1010:
    case 0b1011: return system_operation(word);
    case 0b0100:
    case 0b0110:
    case 0b1100:
    case 0b1110: return access(word);
    case 0b0111:
    case 0b1111: return vector_operation(word);
    default: return {};
  }
}

way_on way_on_of(std::uint32_t word) {
  using enum way_on::kind;
  if (is::jump(word)) return {jump, distance(word, 25, 0)};
  if (is::call(word)) return {jump_and_next, distance(word, 25, 0), true};
  if (is::branch_on_flags(word)) return {jump_and_next, distance(word, 23, 5)};
  if (is::branch_on_zero(word)) return {jump_and_next, distance(word, 23, 5)};
  if (is::branch_on_bit(word)) return {jump_and_next, distance(word, 18, 5)};
  const bool is_trap = (word & 0xFFE0001F) == 0xD4200000;
  if (word == aarch64::ret || is_trap) return {none};
  if (is::branch_to_register(word)) return {elsewhere};
  return {};
}

const unsigned char* const* slot_of_stub(const unsigned char* jump) {
  std::uint32_t last;
  std::memcpy(&last, jump, sizeof last);
  if (last != aarch64::br({17})) return nullptr;  // what is before it may be no code
  std::uint32_t words[3];
  const unsigned char* const stub = jump - sizeof words;
  std::memcpy(words, stub, sizeof words);
  const bool is_stub = (words[0] & 0x9F00001F) == 0x90000010 && (words[1] & 0xFFC003FF) == 0xF9400211 &&
                       (words[2] & 0xFFC003FF) == 0x91000210;
  if (!is_stub) return nullptr;
  const std::int64_t pages = distance(words[0], 23, 5) | field(words[0], 30, 29);
  const auto page = (reinterpret_cast<std::intptr_t>(stub) & -4096) + pages * 4096;
  return reinterpret_cast<const unsigned char* const*>(page + field(words[1], 21, 10) * std::int64_t{8});
}

}  // namespace quern
