// What the memory handlers share: operand values, one element's access, and the contiguous walk over a register's
// lanes.
#pragma once

#include <cstdint>
#include <cstring>

#include "sve/handlers/memory/block_moves.h"
#include "sve/memory/current_access.h"
#include "sve/memory/memtrace.h"
#include "sve/state/cpu_state.h"

namespace quern {

inline std::uint64_t value_of(const cpu_state* state, aarch64_i_rsp_reg r) {
  return r.num == 31 ? state->sp : state->x[r.num];
}
inline std::uint64_t value_of(const cpu_state* state, aarch64_i_reg r) { return r.num == 31 ? 0 : state->x[r.num]; }

// An immediate in units of `bytes`, as a 64-bit offset.
inline std::uint64_t scaled(std::int64_t imm, std::size_t bytes) { return static_cast<std::uint64_t>(imm) * bytes; }

// Lane i of z from the element at `address`, which the caller has noted.
template <class T, class U>
inline void load_lane(unsigned char* z, std::size_t i, std::uint64_t address) {
  set_lane<U>(z, i, static_cast<U>(lane<T>(reinterpret_cast<const unsigned char*>(address), 0)));
  settle();
}

// The element at `address`, which the caller has noted, from the low bytes of lane i of z.
template <class T, class U>
inline void store_lane(const unsigned char* z, std::size_t i, std::uint64_t address) {
  set_lane<T>(reinterpret_cast<unsigned char*>(address), 0, static_cast<T>(lane<U>(z, i)));
  settle();
}

// Lanes 0 to count - 1 of z from consecutive elements at `address`; an inactive lane becomes 0.
template <class T, class U>
inline void load_lanes(unsigned char* z, const unsigned char* pg, std::uint64_t address, std::size_t count) {
  note_lanes(address, sizeof(T), MEM_LOAD, pg, sizeof(U), count);
  for (std::size_t i = 0; i != count; ++i) {
    if (is_active<U>(pg, i)) {
      load_lane<T, U>(z, i, address + i * sizeof(T));
    } else {
      set_lane<U>(z, i, U{0});
    }
  }
}

// Bytes from `address` to the end of its page, which are readable all or not at all, whatever the host's page size: no
// host has smaller pages.
inline std::size_t left_in_page(std::uint64_t address) {
  constexpr std::uint64_t smallest_page = 4096;
  return smallest_page - (address & (smallest_page - 1));
}

// Whether a copy of such a block has no middle to fault in.
inline bool in_one_page(std::uint64_t address, std::size_t bytes) { return bytes <= left_in_page(address); }

// Copies a block. memmove, since it is always the library's, with the widest moves that the host has: of a memcpy of
// constant length the compiler makes a row of narrow ones.
inline void copy_block(void* to, const void* from, std::size_t bytes) { std::memmove(to, from, bytes); }

// Moves a register's worth of elements T that go into a second page: those that lie whole in the first at once, then
// the next alone, since it may lie in both, then the others. A fault is that of the lane that it would be one by one.
template <class T>
inline void copy_in_two_pages(unsigned char* to, const unsigned char* from, std::size_t left) {
  const std::size_t whole = left / sizeof(T) * sizeof(T), after = whole + sizeof(T);
  copy_block(to, from, whole);
  settle();
  set_lane<T>(to + whole, 0, lane<T>(from + whole, 0));
  settle();
  copy_block(to + after, from + after, VL_BYTES - after);
}

// All lanes of z from the elements at `address`, which lie in one page: a fault is lane 0's.
template <class T, class U>
inline void load_block(auto vectors, unsigned char* z, std::uint64_t address) {
  note_access(address, sizeof(T), MEM_LOAD);
  const auto* const elements = reinterpret_cast<const unsigned char*>(address);
  if constexpr (sizeof(T) == sizeof(U)) {
    copy_vector(vectors, z, elements);
  } else {
    load_lane<T, U>(z, 0, address);
    extend_lanes<T, U>(vectors, z, elements);
  }
}

// The elements at `address` from all lanes of z, likewise.
template <class T, class U>
inline void store_block(auto vectors, const unsigned char* z, std::uint64_t address) {
  note_access(address, sizeof(T), MEM_STORE);
  auto* const elements = reinterpret_cast<unsigned char*>(address);
  if constexpr (sizeof(T) == sizeof(U)) {
    copy_vector(vectors, elements, z);
  } else {
    store_lane<T, U>(z, 0, address);
    truncate_lanes<T, U>(vectors, elements, z);
  }
}

// Whether a contiguous access is that of a whole block in one page. `vectors` is what by_widest_vectors gives.
template <class T, class U>
inline bool is_block(auto vectors, const unsigned char* pg, std::uint64_t address) {
  return in_one_page(address, lane_count<U> * sizeof(T)) && all_active<U>(vectors, pg);
}

// A contiguous access that is not one: in two pages, or of some lanes. Out of line, so that the access of a block need
// not save the registers that this takes.
template <class T, class U>
[[gnu::noinline]] void load_elements(unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  if (sizeof(T) != sizeof(U) || !all_active<U>(vectors_of<16>{}, pg))
    return load_lanes<T, U>(z, pg, address, lane_count<U>);
  note_lanes(address, sizeof(T), MEM_LOAD, pg, sizeof(U), lane_count<U>);
  copy_in_two_pages<T>(z, reinterpret_cast<const unsigned char*>(address), left_in_page(address));
}

template <class T, class U>
[[gnu::noinline]] void store_elements(const unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  note_lanes(address, sizeof(T), MEM_STORE, pg, sizeof(U), lane_count<U>);
  if (sizeof(T) == sizeof(U) && all_active<U>(vectors_of<16>{}, pg))
    return copy_in_two_pages<T>(reinterpret_cast<unsigned char*>(address), z, left_in_page(address));
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (is_active<U>(pg, i)) store_lane<T, U>(z, i, address + i * sizeof(T));
  }
}

// Reports a contiguous access.
template <class T, class U>
inline void trace_contiguous(cpu_state* state, unsigned char* pg, std::uint64_t address, memaccess_type_t kind) {
  memtrace_lin<T, U>(state, reinterpret_cast<T*>(address), reinterpret_cast<char*>(pg), kind);
}

}  // namespace quern
