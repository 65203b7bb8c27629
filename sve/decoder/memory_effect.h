// What an instruction form does to the application's memory, as a constant of its row.
#pragma once

#include <cstdint>

namespace quern {

enum class memory_kind : std::uint8_t {
  none,
  load,
  first_fault_load,  // only the first active element can fault (LDFF1)
  non_fault_load,    // no element can (LDNF1)
  store,
};

// How the bytes lie.
enum class memory_extent : std::uint8_t {
  consecutive,  // an element for each lane of each register, one after the other
  scattered,    // an element for each lane, at an address of its own
  one_element,  // one, for all lanes
  quadword,     // 16 bytes of elements, for all blocks of 16 bytes
  image,        // a whole register as it stands
};

struct memory_effect {
  memory_kind kind = memory_kind::none;
  memory_extent extent = memory_extent::consecutive;
  std::uint8_t element_bytes = 0;  // in memory; the lane's are the row's
  std::uint8_t registers = 1;      // consecutive ones, from the first operand's number up

  constexpr bool touches_memory() const { return kind != memory_kind::none; }
  constexpr bool is_load() const { return touches_memory() && kind != memory_kind::store; }
};

// Whether a word lies where the encodings of loads and stores do, and of prefetches, which touch nothing. Cheap, for
// who has no row at hand; the compiler checks every row against it.
constexpr bool has_memory_encoding(std::uint32_t word) { return (word & 0x9E000000) == 0x84000000; }

}  // namespace quern
