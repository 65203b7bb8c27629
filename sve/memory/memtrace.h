// What a direct handler reports of its accesses, after it has made them, while its thread's tracing is on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sve/memory/trace.h"
#include "sve/state/cpu_state.h"

namespace quern {

// An instruction's accesses, to the functions below: element sizes in memory and in the register, in bytes.
struct traced_access {
  const cpu_state* state;
  const unsigned char* predicate;  // the governing register's bytes
  memaccess_type_t kind;
  std::size_t memory_bytes;
  std::size_t lane_bytes;
};

// One record for each run of neighbouring active lanes, or one of VL_BYTES for all; `first` is lane 0's address.
void trace_runs(const traced_access& access, std::uint64_t first);

// One record for each active lane, at addresses[lane], with the group bits that mark an instruction's first and last.
void trace_lanes(const traced_access& access, const std::uint64_t* addresses);

// trace_runs of elements T in memory and U in the register, out of line: a handler that is not traced need not make
// room for it.
template <class T, class U>
[[gnu::noinline]] void trace_runs_of(const cpu_state* state, const unsigned char* predicate, memaccess_type_t kind,
                                     std::uint64_t first) {
  trace_runs({state, predicate, kind, sizeof(T), sizeof(U)}, first);
}

}  // namespace quern

// Reports a contiguous access of elements T in memory and U in the register; signedness makes no difference. `first` is
// the address of lane 0, active or not. A whole vector is reported as VL_BYTES bytes even where T is narrower than U.
template <class T, class U>
inline void memtrace_lin(cpu_state* state, T* first, char* predicate, memaccess_type_t kind) {
  if (!enable_trace) return;
  quern::trace_runs_of<T, U>(state, reinterpret_cast<unsigned char*>(predicate), kind,
                             reinterpret_cast<std::uint64_t>(first));
}

namespace quern {

// Reports an access of one element T for each active lane U (structures, gathers, scatters): one record a lane.
template <class T, class U>
inline void memtrace_each(const cpu_state* state, const std::uint64_t* addresses, const unsigned char* predicate,
                          memaccess_type_t kind) {
  if (!enable_trace) return;
  trace_lanes({state, predicate, kind, sizeof(T), sizeof(U)}, addresses);
}

}  // namespace quern
