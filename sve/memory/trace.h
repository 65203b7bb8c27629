// The trace: its record, the entries of the library that takes the records, and the state of a thread's tracing.
#pragma once

#include <cstddef>
#include <cstdint>

// What a record tells of.
enum memaccess_type_t : std::uint32_t {
  MEM_STORE = 0,
  MEM_LOAD = 1,
};

// The bits of sve_mem_ref_t::group in the records of an instruction that makes one record for each active lane.
inline constexpr std::uint32_t trace_group_first = 1, trace_group_member = 2, trace_group_last = 4;

// sve_mem_ref_t::tid of the records that a region's start and stop markers make.
inline constexpr std::uint32_t tid_start_marker = 0xFFFFFFFF, tid_stop_marker = 0xFFFFFFFE;

// One reference to memory, or a marker. The layout is an interface: little-endian, 48 bytes.
struct sve_mem_ref_t {
  std::uint64_t count;    // incr_count()'s answer for this record; orders the records of all threads
  std::uint32_t tid;      // the low 32 bits of pthread_self(), or a marker
  std::uint32_t group;    // 0, or trace_group_* bits
  memaccess_type_t kind;  // 0 in a marker
  std::uint32_t unused;   // nobody writes or reads it
  std::uint64_t size;     // bytes
  std::uint64_t addr;     // of the first byte
  std::uint64_t pc;       // of the emulated instruction
};

static_assert(sizeof(sve_mem_ref_t) == 48 && offsetof(sve_mem_ref_t, kind) == 16 &&
              offsetof(sve_mem_ref_t, size) == 24);

extern "C" {

// Sets up tracing for an application of that name. The first argument is passed as 0 and means nothing. False, when no
// trace can be written where the user wants it: the host must not go on.
bool sve_init(std::uint64_t reserved, const char* application);

// Finishes the trace.
void sve_exit();

// The `count` of the next record. Called once for each record, from any thread, before the record's trace_mem.
std::uint64_t incr_count();

// Takes a record, from any thread. The record may be reused on return.
void trace_mem(const sve_mem_ref_t& record);

}  // extern "C"

// Whether this thread's accesses are reported. Off at thread start; only sve_add_zi writes it.
extern constinit thread_local bool enable_trace;

// This thread's marker record. Its count and tid are rewritten at each marker, all else stays 0.
extern constinit thread_local sve_mem_ref_t trace_roi;
