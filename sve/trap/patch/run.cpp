// Which words make a run, and the registers that they use, by their rows' operands.
#include "sve/trap/patch/run.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/sve_utils.h"
#include "sve/trap/patch/ordinary_instruction.h"
#include "sve/trap/patch/plain_instruction.h"

namespace quern {
namespace {

// The operand's field; the fields of registers are each one piece.
std::uint32_t number_of(const operand& op, std::uint32_t word) { return (word & op.mask) >> std::countr_zero(op.mask); }

// `count` registers from `first` on, the one after 31 being 0.
std::uint32_t set_of_registers(std::uint32_t first, int count) {
  return std::rotl(static_cast<std::uint32_t>((std::uint64_t{1} << count) - 1), static_cast<int>(first));
}

void add_operand(const operand& op, std::uint32_t word, bool is_written, register_use& use) {
  const register_file file = op.traits().file;
  const std::uint32_t number = number_of(op, word);
  if (file == register_file::vector || file == register_file::element) {
    const int count = op.kind == operand_kind::z_list ? op.multiple : 1;
    use.z |= set_of_registers(number, count);
    if (is_written) use.z_written |= set_of_registers(number, count);
  } else if (file == register_file::general || file == register_file::general_sp) {
    const std::uint32_t set = set_of_registers(number, 1) & all_general_registers;
    use.x |= set;
    if (is_written) use.x_written |= set;
    if (is_written && number == 31 && file == register_file::general_sp) use.sp_written = true;
  } else if (file == register_file::predicate) {
    use.p = true;
    if (is_written) use.p_written |= set_of_registers(number, 1);
  }
}

void add_plain_use(std::uint32_t word, register_use& use) {
  if (const auto instruction = plain_instruction_of(word)) {
    use.x_written = set_of_registers(instruction->d, 1) & all_general_registers;
    use.x = use.x_written | set_of_registers(instruction->n, 1) | set_of_registers(instruction->m, 1);
  } else if (const auto branch = plain_branch_of(word)) {
    use.x = set_of_registers(branch->tested, 1);
  }
  use.x &= all_general_registers;
}

run_word make_word(std::uint32_t word) {
  const decode_row* const row = decode_word(word).row;
  if (!row) return {word, nullptr, nullptr, {}, 0};
  return {word, row, row->thunk, all_registers, ordinary_instruction(word, *row)};
}

// Whether the word behind the run is a branch back into it. A loop has to have a word that sees signals.
bool makes_loop(std::span<const run_word> run, std::uint32_t word) {
  const auto branch = plain_branch_of(word);
  if (!branch || branch->distance >= 0) return false;
  const auto back = static_cast<std::size_t>(-branch->distance) / sizeof word;
  return back <= run.size() && std::any_of(run.end() - static_cast<std::ptrdiff_t>(back), run.end(), is_called);
}

// The number of words up to the last one that is worth it: the program's own instructions run faster where they are,
// but not as fast as it takes to leave the code and come back.
std::size_t straight_length(std::span<const run_word> run) {
  constexpr std::size_t worth_it = 8;
  const auto is_emulated = [](const run_word& word) { return word.row != nullptr; };
  std::size_t length = 0, plain = 0;
  bool has_call = false;
  for (std::size_t i = 0; i != run.size() && plain <= worth_it; ++i) {
    if (!is_emulated(run[i])) {
      ++plain;
      continue;
    }
    has_call = has_call || is_called(run[i]);
    if (plain != 0 && !has_call) break;
    length = i + 1;
    plain = 0;
  }
  return length;
}

}  // namespace

std::size_t collect_run(const unsigned char* code, std::size_t bytes, std::array<run_word, max_run>& run) {
  std::uint32_t word;
  const std::size_t most = std::min(max_run, bytes / sizeof word);
  std::size_t count = 0;
  for (; count != most; ++count) {
    std::memcpy(&word, code + count * sizeof word, sizeof word);
    run[count] = make_word(word);
    if (!run[count].row && !plain_instruction_of(word)) break;
  }
  const std::span<const run_word> words(run);
  if (count != most && makes_loop(words.first(count), word)) return count + 1;
  return straight_length(words.first(count));
}

register_use use_of(const run_word& word) {
  register_use use;
  if (!word.row) {
    add_plain_use(word.word, use);
    return use;
  }
  const decode_row& row = *word.row;
  for (const operand& op : row.operands) {
    const bool is_first = &op == row.operands.data() && row.memory.kind != memory_kind::store;
    add_operand(op, word.word, is_first || op.traits().both, use);
  }
  use.fpsr = !word.ordinary && row.way == route::library;
  return use;
}

register_use use_of(std::span<const run_word> run) {
  register_use all;
  for (const run_word& word : run) {
    const register_use use = use_of(word);
    all.z |= use.z;
    all.z_written |= use.z_written;
    all.p |= use.p;
    all.p_written |= use.p_written;
    all.x |= use.x;
    all.x_written |= use.x_written;
    all.sp_written |= use.sp_written;
    all.fpsr |= use.fpsr;
  }
  return all;
}

}  // namespace quern
