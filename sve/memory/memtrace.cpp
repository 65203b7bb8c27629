// Forms the trace records of an instruction's accesses and hands them over.
#include "sve/memory/memtrace.h"

#include <pthread.h>

#include <cstring>

namespace quern {
namespace {

std::size_t lanes_of(const traced_access& access) { return VL_BYTES / access.lane_bytes; }

bool is_active(const traced_access& access, std::size_t lane) {
  return (access.predicate[lane * access.lane_bytes] & 1) != 0;
}

// Eight predicate bytes at a time: each byte of the sum counts at most VL_BYTES / 8 lanes, so none overflows.
std::size_t count_active(const traced_access& access) {
  static_assert(VL_BYTES / 8 <= 255);
  const std::uint64_t lowest_bits = ~std::uint64_t{0} / (~std::uint64_t{0} >> (64 - 8 * access.lane_bytes));
  std::uint64_t sums = 0;
  for (std::size_t i = 0; i != VL_BYTES; i += sizeof sums) {
    std::uint64_t eight;
    std::memcpy(&eight, access.predicate + i, sizeof eight);
    sums += eight & lowest_bits;
  }
  std::size_t count = 0;
  for (; sums != 0; sums >>= 8) count += sums & 0xFF;
  return count;
}

std::uint32_t this_thread() { return static_cast<std::uint32_t>(pthread_self()); }

void emit(const traced_access& access, std::uint32_t tid, std::uint32_t group, std::uint64_t addr, std::size_t size) {
  trace_mem({.count = incr_count(),
             .tid = tid,
             .group = group,
             .kind = access.kind,
             .unused = 0,
             .size = size,
             .addr = addr,
             .pc = reinterpret_cast<std::uint64_t>(access.state->pc)});
}

}  // namespace

void trace_runs(const traced_access& access, std::uint64_t first) {
  const std::size_t lanes = lanes_of(access), active = count_active(access);
  if (active == 0) return;
  if (active == lanes) return emit(access, this_thread(), 0, first, VL_BYTES);
  std::size_t length = 0;  // of the run that ends before `lane`
  for (std::size_t lane = 0; lane <= lanes; ++lane) {
    if (lane != lanes && is_active(access, lane)) {
      ++length;
    } else if (length != 0) {
      emit(access, this_thread(), 0, first + (lane - length) * access.memory_bytes, length * access.memory_bytes);
      length = 0;
    }
  }
}

void trace_lanes(const traced_access& access, const std::uint64_t* addresses) {
  std::size_t left = count_active(access);
  if (left == 0) return;
  const std::uint32_t tid = this_thread();
  std::uint32_t group = trace_group_first | trace_group_member;
  for (std::size_t lane = 0; left != 0; ++lane) {
    if (!is_active(access, lane)) continue;
    if (--left == 0) group |= trace_group_last;
    emit(access, tid, group, addresses[lane], access.memory_bytes);
    group = trace_group_member;
  }
}

}  // namespace quern
