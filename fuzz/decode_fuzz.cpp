// Any word at all: the decoder's answers agree with each other and with the row's pattern, and running the thunk keeps
// the invariants of the state. Memory instructions are looked up and bound in text only: their addresses would be
// fuzzed as well.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/sve_utils.h"
#include "sve/state/cpu_state.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using quern::decode_map;
using quern::decode_row;

void require(bool holds, const char* what, std::uint32_t word) {
  if (holds) return;
  dprintf(STDERR_FILENO, "decode_fuzz: word %08x: not so: %s\n", word, what);
  std::abort();
}
#define REQUIRE(condition, word) require(condition, #condition, word)

struct input {
  std::uint32_t word;   // as it is, or its open bits if a row is chosen
  std::uint32_t other;  // open bits of a second word of the same row
  std::uint32_t seed;   // of the state
  std::uint16_t row;    // of all rows in the maps' order, modulo twice their number: the upper half chooses none
};

const std::vector<std::pair<const decode_map*, const decode_row*>>& all_rows() {
  static const auto rows = [] {
    std::vector<std::pair<const decode_map*, const decode_row*>> list;
    for (const decode_map& map : quern::decode_maps())
      for (const decode_row& row : map.rows) list.emplace_back(&map, &row);
    return list;
  }();
  return rows;
}

std::uint32_t chosen_word(const input& in) {
  const auto& rows = all_rows();
  const std::size_t choice = in.row % (2 * rows.size());
  if (choice >= rows.size()) return in.word;
  const auto& [map, row] = rows[choice];
  return row->value | (in.word & ~map->key.mask());
}

// A state that holds what a running thread's might: any register contents, predicates of zeros and ones.
void fill(cpu_state& state, std::uint32_t seed) {
  std::minstd_rand random(seed);
  auto* bytes = reinterpret_cast<unsigned char*>(&state);
  for (std::size_t i = 0; i != sizeof state; ++i) bytes[i] = static_cast<unsigned char>(random() >> 16);
  for (auto& p : state.p)
    for (unsigned char& byte : p) byte &= 1;
  for (unsigned char& byte : state.ffr) byte &= 1;
  state.fpcr = 0;
  state.fpsr = 0;
}

bool predicates_are_zeros_and_ones(const cpu_state& state) {
  unsigned char all = 0;
  for (const auto& p : state.p)
    for (const unsigned char byte : p) all |= byte;
  for (const unsigned char byte : state.ffr) all |= byte;
  return all <= 1;
}

void check_run(const decode_row& row, std::uint32_t word, std::uint32_t seed) {
  static cpu_state before, after;
  fill(before, seed);
  std::memcpy(&after, &before, sizeof after);
  const aarch64_decode_rc result = row.thunk(&after, word);
  REQUIRE(result == DECODE_OK, word);
  REQUIRE(predicates_are_zeros_and_ones(after), word);
  REQUIRE(after.pc == before.pc && after.fpcr == before.fpcr, word);
  const bool direct = row.way == quern::route::direct || row.way == quern::route::direct_fp;
  REQUIRE(after.instr_word == (direct ? word : before.instr_word), word);
  if (row.way == quern::route::none) REQUIRE(std::memcmp(&after, &before, sizeof after) == 0, word);
}

void check_word(std::uint32_t word, std::uint32_t other, std::uint32_t seed) {
  const sve_handler handler = get_sve_handler(word);
  const quern::decoded_word decoded = quern::decode_word(word);
  REQUIRE((handler == nullptr) == (decoded.row == nullptr), word);
  if (handler == nullptr) return;

  const decode_map& map = *decoded.map;
  const decode_row& row = *decoded.row;
  const std::uint32_t mask = map.key.mask();
  REQUIRE(handler == row.thunk, word);
  REQUIRE((word & mask) == row.value, word);
  REQUIRE(map.key.of(word) == row.key, word);
  REQUIRE((word >> 25 & 0xF) == 0b0010, word);

  const std::uint32_t same_row = row.value | (other & ~mask);
  REQUIRE(get_sve_handler(same_row) == handler, same_row);
  REQUIRE(quern::decode_word(same_row).row == &row, same_row);

  for (const quern::operand& op : row.operands) REQUIRE(!quern::format_operand(op, row.size, word).empty(), word);
  if (!row.memory.touches_memory()) check_run(row, word, seed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  input in{};
  std::memcpy(&in, data, std::min(size, sizeof in));
  check_word(chosen_word(in), in.other, in.seed);
  return 0;
}
