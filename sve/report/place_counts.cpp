// Counting the places of SVE instructions for `quern run`, in a file that both have mapped.
#include "sve/report/place_counts.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "sve/report/place_report.h"

namespace quern {
namespace {

place_report* report = nullptr;
origin_finder* find_origin = nullptr;
// The process that has asked last for its index, and in the lower half that index: a forked child is another process.
constinit std::atomic<std::uint64_t> known_index{0};

void describe(reported_place& entry, const placed_word& place, bool is_emulated) {
  const code_origin origin = find_origin(place.address);
  entry.word = place.word;
  entry.is_emulated = is_emulated;
  entry.module = origin.module;
  entry.offset = origin.module != 0 ? place.address - origin.base : place.address;
}

constexpr std::uint32_t no_index = place_report::most_processes;

// Finds or adds the process. Numbers of processes may have more bits than an index.
std::uint32_t find_index(std::uint32_t process) {
  for (std::uint32_t i = 0; i != place_report::most_processes; ++i) {
    const std::uint32_t index = (process + i) % place_report::most_processes;
    std::uint32_t found = 0;
    if (report->processes[index].compare_exchange_strong(found, process) || found == process) return index;
  }
  return no_index;
}

std::uint32_t own_index() {
  const auto process = static_cast<std::uint32_t>(getpid());
  const std::uint64_t last = known_index.load(std::memory_order_relaxed);
  if (last >> 32 == process) return static_cast<std::uint32_t>(last);
  const std::uint32_t index = find_index(process);
  known_index.store(std::uint64_t{process} << 32 | index, std::memory_order_relaxed);
  return index;
}

// Places are looked for from where their address leads; processes that share the report have their own. Answers whether
// it was a place's first, or there was no room for it.
bool count(const placed_word& place, bool is_emulated) {
  constexpr std::uint64_t hash_factor = 0x9E3779B97F4A7C15;
  const std::uint32_t process = own_index();
  const std::uint64_t key = place.address | std::uint64_t{process} << 48;
  const std::uint64_t first = key * hash_factor >> 32;
  for (std::uint64_t i = 0; process != no_index && i != place_report::most_places; ++i) {
    reported_place& entry = report->places[(first + i) % place_report::most_places];
    std::uint64_t found = 0;
    if (entry.key.compare_exchange_strong(found, key))
      describe(entry, place, is_emulated);
    else if (found != key)
      continue;
    return entry.count.fetch_add(1, std::memory_order_relaxed) == 0;
  }
  report->lost.fetch_add(1, std::memory_order_relaxed);
  return true;
}

}  // namespace

void open_place_report(origin_finder* finder) {
  report = nullptr;
  known_index = 0;
  find_origin = finder;
  const char* const path = std::getenv(place_report_variable);
  if (path == nullptr) return;
  const int file = open(path, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* const mapped = mmap(nullptr, sizeof(place_report), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (mapped != MAP_FAILED) report = static_cast<place_report*>(mapped);
}

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

void count_emulated(const placed_word& place) {
  if (report != nullptr && report->counts_emulated) count(place, true);
}

bool count_refused(const placed_word& place) {
  if (report == nullptr) return false;
  count(place, false);
  return report->is_strict;
}

bool count_failed(const placed_word& place) { return report == nullptr || count(place, false); }

void report_death(std::uint64_t address, int signal) {
  if (report == nullptr) return;
  describe(report->death, {address, 0}, false);
  report->death_signal = static_cast<std::uint32_t>(signal);
  report->death.key = static_cast<std::uint64_t>(getpid());
}

}  // namespace quern
