// What a host tells `quern run` of the places at which a program has SVE instructions: a file that both map, so that it
// is whole however the program ends.
#pragma once

#include <atomic>
#include <cstdint>

namespace quern {

// A place of code in a process. Whoever sets the key fills in the rest.
struct reported_place {
  std::atomic<std::uint64_t> key;  // its address, and from bit 48 on its process's index; 0: not in use
  std::atomic<std::uint64_t> count;
  std::uint64_t offset;  // from where the module is loaded, or the address where there is none
  std::uint32_t word;
  std::uint16_t module;  // its number and 1; 0: none
  bool is_emulated;
};

struct reported_module {
  std::atomic<std::uint64_t> base;  // where it is loaded; 0: not in use
  char path[504];
};

struct place_report {
  static constexpr std::uint32_t most_modules = 128, most_places = 1 << 15, most_processes = 1 << 16;
  // Set by quern run.
  bool counts_emulated;  // not only those that can't be emulated
  bool is_strict;        // the first that can't be emulated ends the program
  // Set by the host.
  std::atomic<std::uint64_t> lost;  // counts for which there was no room
  reported_place death;             // where a fault may have ended a process, whose number is its key; the last one
  std::uint32_t death_signal;       // by which
  reported_module modules[most_modules];
  std::atomic<std::uint32_t> processes[most_processes];  // their numbers, from the index on that each ends in; 0: none
  reported_place places[most_places];
};

// The exit status of a process that a host ends, the same as `quern run` has when quern itself is what fails.
inline constexpr int status_of_own_failure = 125;

// The variable that names the file, by way of the process that made it.
inline constexpr const char* place_report_variable = "QUERN_REPORT";

}  // namespace quern
