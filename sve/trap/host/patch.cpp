// Making of patched places.
#include "sve/trap/host/patch.h"

#include <sys/mman.h>
#include <time.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <string_view>

#include "sve/memory/guest_memory.h"
#include "sve/trap/host/code_pool.h"
#include "sve/trap/host/emulate.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/memory_map.h"
#include "sve/trap/host/program_code.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/host/system_call.h"
#include "sve/trap/patch/instructions.h"

constinit bool quern_patching_is_off = false;

namespace quern {
namespace {

// The thread that is making code, by its number; 0 for none.
constinit std::atomic<long> maker{0};

// Who held the lock when a thread had lost patience; 0 after that.
constinit std::atomic<long> given_up{0};

std::int64_t nanoseconds() {
  timespec time{};
  kernel::call(SYS_clock_gettime, CLOCK_MONOTONIC, kernel::argument(&time));
  return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
}

// Waits for other threads. Not for ever: the thread that holds it may be a parent's, whom a child of its own making
// knows nothing of; and once only for such a one. Not at all when it is this thread's already.
class making_lock {
 public:
  making_lock() {
    constexpr std::int64_t patience = 200'000'000;
    const long self = kernel::call(SYS_gettid), holder = take(self);
    if (is_held_ || holder == self || holder == given_up.load(std::memory_order_relaxed)) return;
    for (const std::int64_t end = nanoseconds() + patience; !is_held_ && nanoseconds() < end; take(self))
      kernel::call(SYS_sched_yield);
    given_up.store(is_held_ ? 0 : holder, std::memory_order_relaxed);
  }
  ~making_lock() {
    if (is_held_) maker.store(0, std::memory_order_release);
  }
  making_lock(const making_lock&) = delete;
  making_lock& operator=(const making_lock&) = delete;
  bool is_held() const { return is_held_; }

 private:
  // Takes it for the thread, or answers who holds it.
  long take(long self) {
    long holder = 0;
    is_held_ = maker.compare_exchange_strong(holder, self, std::memory_order_acquire);
    return holder;
  }

  bool is_held_ = false;
};

// Places that could not be patched, so that they are not tried at each of their traps. One that is forgotten because of
// another is tried again.
std::atomic<const unsigned char*>& refusal_of(const unsigned char* pc) {
  constinit static std::array<std::atomic<const unsigned char*>, 4096> refused{};
  return refused[reinterpret_cast<std::uintptr_t>(pc) / sizeof(aarch64::word) % refused.size()];
}

// The thread's registers are initial-exec, so each thread has them at the same distance.
std::size_t registers_offset() {
  return static_cast<std::size_t>(reinterpret_cast<unsigned char*>(&own_registers()) -
                                  static_cast<unsigned char*>(__builtin_thread_pointer()));
}

// One thread at a time makes code; the application's stack may be short.
const run_code* make_code(unsigned char* site) {
  constinit static std::array<run_word, max_run> run{};
  const std::size_t count = collect_run(site, page_size - reinterpret_cast<std::uintptr_t>(site) % page_size, run);
  const code_room room = find_code_room(site);
  if (count == 0 || !room.place) return nullptr;
  for (run_word& word : std::span(run).first(count))
    if (is_called(word)) word.written = written_by(*word.row);
  const std::span<unsigned char, max_run_code_bytes> bytes(room.writable, max_run_code_bytes);
  const std::size_t size = make_run_code(std::span(run).first(count), site, registers_offset(), room.place, bytes);
  auto& code = *reinterpret_cast<run_code*>(room.writable);
  const unsigned char* const behind = code.behind_site();
  if (kernel::can_read(reinterpret_cast<std::uintptr_t>(behind))) code.behind = word_at(behind);
  take_code_room(room, size);
  step_caches(room.place, room.place + size);
  return reinterpret_cast<const run_code*>(room.place);
}

void put_word_back(const run_code& code) { write_code_word(code.site, code.literals[0].word, find_mapping(code.site)); }

bool may_be_patched(const mapping& text) {
  return text.readable && text.executable && text.of_file && !text.writable && !text.shared;
}

// Whether a debugger has started the process: it is to find the program's code as it is.
bool is_traced() {
  char status[512];
  const long bytes = kernel::read_file("/proc/self/status", 0, status, sizeof status);
  const std::string_view text(status, bytes < 0 ? 0 : static_cast<std::size_t>(bytes));
  const std::string_view name = "TracerPid:\t";
  const std::size_t at = text.find(name);
  return at != text.npos && at + name.size() < text.size() && text[at + name.size()] != '0';
}

}  // namespace

void read_patch_choice() {
  const char* const choice = std::getenv("QUERN_PATCH");
  quern_patching_is_off = is_traced() || (choice && std::string_view(choice) == "off");
}

const unsigned char* patched_way(const unsigned char* pc, std::uint32_t word) {
  if (!aarch64::is_b(word)) return nullptr;
  const unsigned char* const target = pc + aarch64::b_distance(word);
  const run_code* const code = find_code(target);
  return code && target == code->at(code->entry) ? target : nullptr;
}

const unsigned char* patch(unsigned char* pc) {
  if (quern_patching_is_off) return nullptr;
  std::atomic<const unsigned char*>& refusal = refusal_of(pc);
  if (refusal.load(std::memory_order_relaxed) == pc) return nullptr;
  const making_lock lock;
  if (!lock.is_held()) return nullptr;
  if (const unsigned char* const way = patched_way(pc, word_at(pc))) return way;
  const mapping text = find_mapping(pc);
  const run_code* const code = may_be_patched(text) ? make_code(pc) : nullptr;
  const unsigned char* const way = code ? code->at(code->entry) : nullptr;
  if (way && write_code_word(pc, aarch64::b(way - pc), text)) return way;
  refusal.store(pc, std::memory_order_relaxed);
  return nullptr;
}

long call_with_own_words(long number, unsigned char* begin, std::size_t bytes, long third, long fourth, long fifth) {
  const auto carry_out = [=] {
    return kernel::call(number, kernel::argument(begin), static_cast<long>(bytes), third, fourth, fifth);
  };
  if (quern_patching_is_off || !may_have_codes_of(begin, bytes)) return carry_out();
  const kernel::blocked_signals blocked(all_signals);  // as a handler might leave with the lock
  const making_lock lock;                              // so that no place is patched anew meanwhile
  visit_codes_of(begin, bytes, put_word_back);
  return carry_out();
}

const unsigned char* mend_copied_branch(const unsigned char* pc) {
  if (quern_patching_is_off) return nullptr;
  const kernel::blocked_signals blocked(all_signals);
  const making_lock lock;
  const run_code* const code = lock.is_held() ? find_code_of_copy(pc) : nullptr;
  if (!code) return nullptr;
  unsigned char* const copy = copied_site(*code, pc);
  const aarch64::word word = code->literals[0].word;
  return write_code_word(copy, word, find_mapping(copy)) ? copy : nullptr;
}

void forget_patching() { maker.store(0, std::memory_order_relaxed); }

}  // namespace quern
