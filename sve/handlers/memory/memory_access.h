// What the memory handlers share: one element's access, and the moves of a register's worth of consecutive elements.
// In the names here T is the element in memory and U the register's lane, which is unsigned; a signed T sign-extends.
// A kind is that of the trace: MEM_LOAD moves elements to the lanes, MEM_STORE the lanes' low bytes to the elements.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <functional>
#include <type_traits>

#include "sve/handlers/general_register.h"
#include "sve/handlers/lane_loops.h"
#include "sve/handlers/predicate/predicate_scan.h"
#include "sve/handlers/register_bytes.h"
#include "sve/memory/current_access.h"
#include "sve/memory/kept_destination.h"
#include "sve/memory/memtrace.h"
#include "sve/memory/pages.h"
#include "sve/state/cpu_state.h"
#include "sve/state/lanes.h"
#include "sve/state/vector_copy.h"

namespace quern {

// An immediate in units of `bytes`, as a 64-bit offset.
inline std::uint64_t scaled(std::int64_t imm, std::size_t bytes) { return static_cast<std::uint64_t>(imm) * bytes; }

// Any access of application memory may fault, and what has been done until then must be in place for a signal handler
// to see: no access may move, or merge with another, across this point.
inline void settle() { std::atomic_signal_fence(std::memory_order_seq_cst); }

// Lane i of z and element j at `elements`.
template <memaccess_type_t kind, class T, class U>
inline void move_element(unsigned char* z, std::size_t i, unsigned char* elements, std::size_t j) {
  if constexpr (kind == MEM_LOAD) {
    set_lane<U>(z, i, static_cast<U>(lane<T>(elements, j)));
  } else {
    set_lane<T>(elements, j, static_cast<T>(lane<U>(z, i)));
  }
}

// Lane i of z and the element at `address`, which the caller has noted.
template <memaccess_type_t kind, class T, class U>
inline void move_lane(unsigned char* z, std::size_t i, std::uint64_t address) {
  move_element<kind, T, U>(z, i, reinterpret_cast<unsigned char*>(address), 0);
  settle();
}

// What an inactive lane comes to: 0 in a load, nothing in a store.
template <memaccess_type_t kind, class U>
inline void skip_lane(unsigned char* z, std::size_t i) {
  if constexpr (kind == MEM_LOAD) set_lane<U>(z, i, U{0});
}

// Lane i of z, and element i of those at `address`.
template <memaccess_type_t kind, class T, class U>
inline void move_if_active(unsigned char* z, const unsigned char* pg, std::size_t i, std::uint64_t address) {
  if (is_active<U>(pg, i)) {
    move_lane<kind, T, U>(z, i, address + i * sizeof(T));
  } else {
    skip_lane<kind, U>(z, i);
  }
}

// The active ones of the first `count` lanes of z, one by one, and consecutive elements at `address`.
template <memaccess_type_t kind, class T, class U>
inline void move_lanes(unsigned char* z, const unsigned char* pg, std::uint64_t address, std::size_t count) {
  note_lanes(address, sizeof(T), kind, pg, sizeof(U), count);
  const destination_kept<kind, 1> kept({z});
  for (std::size_t i = 0; i != count; ++i) move_if_active<kind, T, U>(z, pg, i, address);
}

// The same of all lanes, by groups: most have no active one.
template <memaccess_type_t kind, class T, class U>
inline void move_lanes_of_groups(unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  constexpr std::size_t lanes = sizeof(doubles) / sizeof(U);
  note_lanes(address, sizeof(T), kind, pg, sizeof(U), lane_count<U>);
  const destination_kept<kind, 1> kept({z});
  std::uint32_t some = set_groups<U>(pg).some;
  for (std::size_t g = 0; g != lane_count<doubles>; ++g, some >>= 1) {
    if ((some & 1) == 0) {
      skip_lane<kind, doubles>(z, g);
      settle();
      continue;
    }
    for (std::size_t i = g * lanes; i != (g + 1) * lanes; ++i) move_if_active<kind, T, U>(z, pg, i, address);
  }
}

// Reports a contiguous access.
template <memaccess_type_t kind, class T, class U>
inline void trace_contiguous(cpu_state* state, unsigned char* pg, std::uint64_t address) {
  memtrace_lin<T, U>(state, reinterpret_cast<T*>(address), reinterpret_cast<char*>(pg), kind);
}

// `count` lanes of z and elements at `address`, which have been noted. All but the first lie in the page where that one
// ends. It goes alone, so that a fault is its own; the others then don't fault, and go in any order.
template <memaccess_type_t kind, class T, class U>
inline void move_block(unsigned char* z, std::uint64_t address, std::size_t count) {
  move_lane<kind, T, U>(z, 0, address);
  auto* const elements = reinterpret_cast<unsigned char*>(address);
  if constexpr (sizeof(T) == sizeof(U)) {
    std::memcpy(kind == MEM_LOAD ? z : elements, kind == MEM_LOAD ? elements : z, count * sizeof(T));
  } else {
#pragma GCC ivdep  // no application's memory is the register file
    for (std::size_t i = 0; i != count; ++i) move_element<kind, T, U>(z, i, elements, i);
  }
  settle();
}

// All lanes of z and consecutive elements that go into a second page: those that lie whole in the first, then the
// others, whose first one may lie in both.
template <memaccess_type_t kind, class T, class U>
inline void move_two_blocks(unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  note_lanes(address, sizeof(T), kind, pg, sizeof(U), lane_count<U>);
  const destination_kept<kind, 1> kept({z});
  const std::size_t whole = left_in_page(address) / sizeof(T);
  if (whole != 0) move_block<kind, T, U>(z, address, whole);
  move_block<kind, T, U>(z + whole * sizeof(U), address + whole * sizeof(T), lane_count<U> - whole);
}

// Accesses whose elements all lie in one page, active or not: none but the first one can fault.

// With all lanes active, which have been noted.
template <memaccess_type_t kind, class T, class U>
inline void move_all_in_page(unsigned char* z, std::uint64_t address) {
  if constexpr (sizeof(T) == sizeof(U)) {
    auto* const elements = reinterpret_cast<unsigned char*>(address);
    copy_vector(kind == MEM_LOAD ? z : elements, kind == MEM_LOAD ? elements : z);
    settle();
  } else {
    move_block<kind, T, U>(z, address, lane_count<U>);
  }
}

// Reading an inactive element's bytes is harmless there, but a sanitizer would take offence.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool loads_inactive_elements = false;
#else
inline constexpr bool loads_inactive_elements = true;
#endif

// Reads the first active element, lane `first`, whose fault it is. Lanes before it are 0 by then.
template <class T, class U>
[[gnu::noinline]] U read_first_behind(unsigned char* z, std::size_t first, const unsigned char* element) {
  const destination_kept<MEM_LOAD, 1> kept({z});
  std::memset(z, 0, first * sizeof(U));
  settle();
  return static_cast<U>(lane<T>(element, 0));
}
template <class T, class U>
inline U read_first(unsigned char* z, std::size_t first, const unsigned char* element) {
  settle();
  return first == 0 ? static_cast<U>(lane<T>(element, 0)) : read_first_behind<T, U>(z, first, element);
}

template <class T, class U>
inline void load_in_page(unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  const auto* const elements = reinterpret_cast<const unsigned char*>(address);
  const std::size_t first = first_element<U>(set_in{pg});
  if (first == no_element) {
    std::memset(z, 0, VL_BYTES);
    return;
  }
  asm volatile("" : : "r"(read_first<T, U>(z, first, elements + first * sizeof(T))));
  settle();
  if constexpr (sizeof(T) == sizeof(U)) {
    zero_lanes<U>(std::identity{}, z, pg, elements);
  } else {
#pragma GCC ivdep  // no application's memory is the register file
    for (std::size_t i = 0; i != lane_count<U>; ++i)
      set_lane<U>(z, i, static_cast<U>(lane<T>(elements, i)) & active_mask<U>(pg, i));
  }
}

// By groups of lanes: those of most predicates have either no active lane, or nothing but.
template <class T, class U>
inline void store_in_page(unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  auto* const elements = reinterpret_cast<unsigned char*>(address);
  constexpr std::size_t lanes = sizeof(doubles) / sizeof(U);
  const group_bits groups = set_groups<U>(pg);
  for (std::uint32_t left = groups.some; left != 0; left &= left - 1) {
    settle();
    const auto g = static_cast<std::size_t>(std::countr_zero(left));
    if (sizeof(T) == sizeof(U) && (groups.all >> g & 1) != 0) {
      set_lane(elements, g, lane<doubles>(z, g));
      continue;
    }
#pragma GCC unroll 16
    for (std::size_t k = 0; k != lanes; ++k)
      if (is_active<U>(pg, g * lanes + k)) move_element<MEM_STORE, T, U>(z, g * lanes + k, elements, g * lanes + k);
  }
}

// The active lanes.
template <memaccess_type_t kind, class T, class U>
inline void move_in_page(unsigned char* z, const unsigned char* pg, std::uint64_t address) {
  note_lanes(address, sizeof(T), kind, pg, sizeof(U), lane_count<U>);
  if constexpr (kind == MEM_LOAD) {
    load_in_page<T, U>(z, pg, address);
  } else {
    store_in_page<T, U>(z, pg, address);
  }
  settle();
}

// What most contiguous accesses don't need, in functions of their own, so that the others save no registers.

template <memaccess_type_t kind, class T, class U>
[[gnu::noinline]] aarch64_decode_rc move_some(cpu_state* state, unsigned char* z, unsigned char* pg,
                                              std::uint64_t address) {
  if (is_in_page(address, lane_count<U> * sizeof(T)) && (kind == MEM_STORE || loads_inactive_elements)) {
    move_in_page<kind, T, U>(z, pg, address);
  } else {
    move_lanes_of_groups<kind, T, U>(z, pg, address);
  }
  trace_contiguous<kind, T, U>(state, pg, address);
  return DECODE_OK;
}

template <memaccess_type_t kind, class T, class U>
[[gnu::noinline]] aarch64_decode_rc move_in_two_pages(cpu_state* state, unsigned char* z, unsigned char* pg,
                                                      std::uint64_t address) {
  move_two_blocks<kind, T, U>(z, pg, address);
  trace_contiguous<kind, T, U>(state, pg, address);
  return DECODE_OK;
}

// A contiguous access of the active lanes of z, traced. A fault is that of the lane that it would be one by one, with
// the lanes before it done.
template <memaccess_type_t kind, class T, class U>
inline aarch64_decode_rc move_contiguous(cpu_state* state, unsigned char* z, unsigned char* pg, std::uint64_t address) {
  if (!all_active<U>(pg)) [[unlikely]]
    return move_some<kind, T, U>(state, z, pg, address);
  if (!is_in_page(address, lane_count<U> * sizeof(T))) [[unlikely]]
    return move_in_two_pages<kind, T, U>(state, z, pg, address);
  note_access(address, sizeof(T), kind);
  move_all_in_page<kind, T, U>(z, address);
  trace_contiguous<kind, T, U>(state, pg, address);
  return DECODE_OK;
}

}  // namespace quern
