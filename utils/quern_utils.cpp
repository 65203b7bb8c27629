// libquern_utils: takes the trace records of a process. A record costs no system call and no lock, and is in the page
// cache when trace_mem returns, so that it outlives the process however that ends.
#include <pthread.h>

#include <atomic>

#include "sve/memory/trace.h"
#include "sve/memory/trace_forked.h"
#include "sve/memory/trace_vector_length.h"
#include "utils/chunk_packer.h"
#include "utils/module_log.h"
#include "utils/trace_file.h"
#include "utils/undisturbed.h"

namespace quern {
namespace {

constinit std::atomic<std::uint64_t> next_count{0};
constinit std::atomic<std::uint64_t> regions{0};

// The calling thread's chunk. Signal handlers of the application may trace while the thread is itself in trace_mem, so
// slots are given out by the chunk's atomic counter, and a chunk is only packed or unmapped when no outer call may hold
// a slot of it; one that such a handler filled stays mapped, and its records stay in it.
struct thread_trace {
  trace_chunk* chunk;
  chunk_packer packer;
  unsigned calls;        // of trace_mem that the thread is in
  std::uint64_t region;  // the number of the one it is in, 0 in none
  // Ranges of code that the list of modules has, or that it need not be asked about; the last that was met is first.
  static constexpr std::size_t code_ranges = 4;
  address_range code[code_ranges];
};
constinit thread_local thread_trace mine{};

struct reserved_slot {
  stored_record* record = nullptr;
  std::uint32_t generation = 0;  // of its chunk, which stays as long as a call holds the slot
};

reserved_slot reserve_slot(trace_chunk* chunk) {
  if (chunk == nullptr) return {};
  const std::atomic_ref count(chunk->header.count);
  if (count.load(std::memory_order_relaxed) >= trace_chunk_records) return {};
  const std::uint32_t slot = count.fetch_add(1, std::memory_order_relaxed);
  if (slot >= trace_chunk_records) return {};
  return {&chunk->records[slot], chunk->header.generation};
}

// Gives the mapping back when a thread ends; the chunk stays in the file.
struct thread_end {
  pthread_key_t key;
  bool in_place;

  void set_up() {
    in_place = pthread_key_create(&key, [](void*) { drop_chunk(); }) == 0;
  }
  // Keys of libc's first block are stored without the heap, which is out of bounds in a signal handler. A later key
  // costs each thread that ends a mapping.
  void watch_this_thread() const {
    constexpr pthread_key_t first_block = 32;
    if (in_place && key < first_block) pthread_setspecific(key, &mine);
  }
  static void drop_chunk() {
    const undisturbed guard;
    if (mine.chunk != nullptr) unmap_chunk(mine.chunk);
    mine.chunk = nullptr;
    mine.packer.release();
  }
};
constinit thread_end at_thread_end{0, false};

reserved_slot reserve_slot_in_new_chunk() {
  if (trace_stopped()) return {};
  const undisturbed guard;
  if (const reserved_slot slot = reserve_slot(mine.chunk); slot.record != nullptr)
    return slot;  // a signal handler has been here
  trace_chunk* const full = mine.chunk;
  const bool is_ours = full != nullptr && mine.calls == 1;
  if (is_ours && mine.packer.pack(*full)) return reserve_slot(full);
  mine.chunk = map_chunk();
  if (is_ours) unmap_chunk(full);
  at_thread_end.watch_this_thread();
  return reserve_slot(mine.chunk);
}

// Answers the number of the region that the marker begins or ends: a start marker in a region goes on with that.
std::uint64_t pass_marker(bool starts) {
  const std::uint64_t before = mine.region;
  if (starts && before == 0) mine.region = regions.fetch_add(1, std::memory_order_relaxed) + 1;
  if (!starts) mine.region = 0;
  if (starts != (before != 0)) note_region(starts);
  return starts ? mine.region : before;
}

bool is_marker(const sve_mem_ref_t& record) { return record.tid >= tid_stop_marker; }

void store(const reserved_slot& reserved, const sve_mem_ref_t& record, std::uint64_t region) {
  stored_record& slot = *reserved.record;
  slot.count = record.count;
  slot.tid = record.tid;
  slot.group = record.group;
  slot.kind = record.kind;
  slot.size = is_marker(record) ? nanoseconds_now() : record.size;
  slot.addr = is_marker(record) ? region : record.addr;
  slot.pc = record.pc;
  std::atomic_ref(slot.complete).store(reserved.generation, std::memory_order_release);
}

// Has the list of modules name the place, before the record that tells of it is stored.
[[gnu::noinline]] void note_code(const sve_mem_ref_t& record) {
  if (trace_stopped()) return;
  address_range* const end = mine.code + thread_trace::code_ranges;
  address_range* found = mine.code;
  while (found != end && !found->has(record.pc)) ++found;
  const address_range range = found != end ? *found : note_module_of(record.count, record.pc);
  if (found == end) --found;
  if (mine.calls != 1 || !range.has(record.pc)) return;  // an outer call may be in the midst of this
  for (; found != mine.code; --found) *found = found[-1];
  *found = range;
}

}  // namespace
}  // namespace quern

using namespace quern;

bool sve_init(std::uint64_t, const char* application) {
  static bool set_up = false;
  if (!set_up) {
    pthread_atfork(nullptr, nullptr, quern_trace_forked);
    at_thread_end.set_up();
    set_up = true;
  }
  return set_up_trace(application);
}

void quern_trace_vector_bytes(std::uint32_t bytes) { set_vector_bytes(bytes); }

void sve_exit() {
  if (!trace_is_ours_and_open()) return;  // without a system call: a filter may allow none but the one that ends it
  const undisturbed guard;
  if (!trace_is_ours_and_open()) return;  // a handler may have forked
  note_modules(next_count);
  finish_trace();
}

std::uint64_t incr_count() { return next_count.fetch_add(1, std::memory_order_relaxed); }

void trace_mem(const sve_mem_ref_t& record) {
  ++mine.calls;
  std::atomic_signal_fence(std::memory_order_seq_cst);
  std::uint64_t region = 0;
  if (is_marker(record)) {
    if (!trace_stopped()) note_modules_now_and_then(record.count);
    region = pass_marker(record.tid == tid_start_marker);
  } else if (!mine.code[0].has(record.pc)) {
    note_code(record);
  }
  reserved_slot slot = reserve_slot(mine.chunk);
  if (slot.record == nullptr) slot = reserve_slot_in_new_chunk();
  if (slot.record != nullptr) store(slot, record, region);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  --mine.calls;
}

void quern_trace_forked() {
  const undisturbed guard;
  if (!leave_parents_trace()) return;
  if (mine.chunk != nullptr && mine.calls == 0) unmap_chunk(mine.chunk);
  mine.chunk = nullptr;
  mine.packer.release();
  mine.region = 0;
  for (address_range& known : mine.code) known = {};
  forget_modules();
  regions = 0;
  next_count = 0;
}
