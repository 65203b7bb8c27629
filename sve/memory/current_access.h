// Which application memory the thread's emulated instruction is about to access, for a host that learns of a fault
// but not of its address. Noted once an instruction, not once an element, since a store an element would cost as much
// as the accesses themselves.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "sve/memory/trace.h"
#include "sve/state/cpu_state.h"

namespace quern {

// One block of `bytes` bytes at `address`; or, with a predicate, one for each active lane in turn: next to each other
// from `address` on, or, with addresses, there.
struct memory_access {
  std::uint64_t address;
  std::uint32_t bytes;
  memaccess_type_t kind;
  const unsigned char* predicate;
  const std::uint64_t* addresses;
  std::uint32_t lane_bytes;
  std::uint32_t lanes;
};

// Initial-exec, for speed.
extern constinit thread_local memory_access current_access __attribute__((tls_model("initial-exec")));

// Whether the notes below are wanted, by a host that asks for them: else they cost a test. Hidden, so that the test is
// one of memory nearby. Set before the first emulated instruction.
extern constinit bool accesses_are_noted __attribute__((visibility("hidden")));

// Where a gather or scatter puts its lanes' addresses: they must outlive its stack frame. Its lanes have 4 bytes or 8.
inline constexpr std::size_t max_addresses = VL_BYTES / 4;
extern constinit thread_local std::uint64_t lane_addresses[max_addresses] __attribute__((tls_model("initial-exec")));

// The notes below stay in front of the accesses that they announce.
inline void note_access(std::uint64_t address, std::size_t bytes, memaccess_type_t kind) {
  if (!accesses_are_noted) return;
  memory_access& access = current_access;
  access.address = address;
  access.bytes = static_cast<std::uint32_t>(bytes);
  access.kind = kind;
  access.predicate = nullptr;
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

// Blocks next to each other, one for each active lane of the first `lanes`.
inline void note_lanes(std::uint64_t address, std::size_t bytes, memaccess_type_t kind, const unsigned char* predicate,
                       std::size_t lane_bytes, std::size_t lanes) {
  if (!accesses_are_noted) return;
  current_access = {address,
                    static_cast<std::uint32_t>(bytes),
                    kind,
                    predicate,
                    nullptr,
                    static_cast<std::uint32_t>(lane_bytes),
                    static_cast<std::uint32_t>(lanes)};
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

// Forgets the addresses of earlier instructions: a lane that has none yet has not been come to.
void forget_addresses();

// Elements at lane_addresses, one for each active lane; the caller stores each before it makes the access.
inline void note_addresses(std::size_t bytes, memaccess_type_t kind, const unsigned char* predicate,
                           std::size_t lane_bytes) {
  if (!accesses_are_noted) return;
  current_access = {0,
                    static_cast<std::uint32_t>(bytes),
                    kind,
                    predicate,
                    lane_addresses,
                    static_cast<std::uint32_t>(lane_bytes),
                    static_cast<std::uint32_t>(VL_BYTES / lane_bytes)};
  forget_addresses();
}

// The bytes of an access that can be the first to fault, in the order in which the instruction comes to them: the first
// byte of each block, and of its second page. A byte of the same page as the one before it is left out, as it can't be
// the first. A lane whose address has been forgotten was not reached, nor were those after it. Writes them to `bytes`
// and answers how many they are.
inline constexpr std::size_t max_suspects = 2 * max_addresses;
std::size_t list_suspects(const memory_access& access, std::span<std::uint64_t, max_suspects> bytes);

}  // namespace quern
