// Counting the places of SVE instructions for `quern run`, in a file that both have mapped.
#include "sve/trap/host/place_counts.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "sve/decoder/vector_space.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/place_report.h"

namespace quern {
namespace {

place_report* report = nullptr;

// The number and 1 of the module that is loaded at `base`; 0 when there is no room.
std::uint16_t module_number(std::uint64_t base, const char* path) {
  for (std::uint16_t i = 0; i != place_report::most_modules; ++i) {
    reported_module& module = report->modules[i];
    std::uint64_t unused = 0;
    if (module.base.compare_exchange_strong(unused, base))
      std::strncpy(module.path, path, sizeof module.path - 1);
    else if (unused != base || std::strncmp(module.path, path, sizeof module.path - 1) != 0)
      continue;
    return static_cast<std::uint16_t>(i + 1);
  }
  return 0;
}

// (The linker is asked in the way that takes no lock: the signal may be of its own code.)
void describe(reported_place& entry, const trapped_place& place, bool is_emulated) {
  entry.offset = place.address;
  entry.word = place.word;
  entry.is_emulated = is_emulated;
  entry.module = 0;
  dl_find_object found;
  if (_dl_find_object(reinterpret_cast<void*>(place.address), &found) != 0) return;
  const auto base = reinterpret_cast<std::uint64_t>(found.dlfo_map_start);
  entry.module = module_number(base, found.dlfo_link_map->l_name);  // the program's is empty
  if (entry.module != 0) entry.offset = place.address - base;
}

// Places are looked for from where their address leads; processes that share the report have their own.
void count(const trapped_place& place, bool is_emulated) {
  constexpr std::uint64_t hash_factor = 0x9E3779B97F4A7C15;
  const std::uint64_t key = place.address | static_cast<std::uint64_t>(getpid()) << 48;
  const std::uint64_t first = key * hash_factor >> 32;
  for (std::uint64_t i = 0; i != place_report::most_places; ++i) {
    reported_place& entry = report->places[(first + i) % place_report::most_places];
    std::uint64_t found = 0;
    if (entry.key.compare_exchange_strong(found, key))
      describe(entry, place, is_emulated);
    else if (found != key)
      continue;
    entry.count.fetch_add(1, std::memory_order_relaxed);
    return;
  }
  report->lost.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

void open_place_report() {
  const char* const path = std::getenv(place_report_variable);
  if (path == nullptr) return;
  const int file = open(path, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* const mapped = mmap(nullptr, sizeof(place_report), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (mapped != MAP_FAILED) report = static_cast<place_report*>(mapped);
}

trapped_place place_of(const ucontext_t& frame) {
  const unsigned char* const pc = frame_pc(frame);
  trapped_place place{reinterpret_cast<std::uint64_t>(pc), 0};
  std::memcpy(&place.word, pc, sizeof place.word);
  return place;
}

void count_emulated(const trapped_place& place) {
  if (report != nullptr && report->counts_emulated) count(place, true);
}

void count_refused(const trapped_place& place) {
  if (report == nullptr || !is_vector_word(place.word)) return;
  count(place, false);
  if (report->is_strict) kernel::leave_by_own_failure();
}

void report_death(const unsigned char* pc) {
  if (report == nullptr) return;
  describe(report->death, {reinterpret_cast<std::uint64_t>(pc), 0}, false);
  report->death.key = static_cast<std::uint64_t>(getpid());
}

}  // namespace quern
