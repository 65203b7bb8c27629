// Which array the accesses of a trace go to, as far as it can be told from outside.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/code_names.h"
#include "tools/plot/touched_ranges.h"
#include "tools/trace_filter.h"

namespace CLI {
class App;
}

namespace quern {

// An array as the user names it.
struct given_array {
  std::string name;
  std::uint64_t first = 0, last = 0;
};

// Adds the option --array NAME=ADDRESS:BYTES, which may be given several times.
void add_array_option(CLI::App& command, std::vector<given_array>& arrays);

// An access belongs to the array in which it begins: one that the user has named, else a variable of a program or
// library of the trace, else a stretch of memory: what lies on heap and stack is told apart by the gaps between
// accesses alone.
class array_names {
 public:
  static constexpr std::uint64_t least_gap = 4096;  // bytes between stretches

  // Walks through the trace, and rewinds it. Throws user_error where two of the given arrays overlap.
  array_names(trace_reader& reader, const trace_filter& filter, const std::vector<given_array>& given);

  // The number of the array that one of those accesses belongs to, by which name() has it.
  std::size_t array_of(const trace_record& access) const;
  const std::string& name(std::size_t array) const { return names_[array]; }

 private:
  // Where a name is from: what follows is the number of the module.
  static constexpr std::size_t from_user = 0, from_memory = 1, from_module = 2;
  struct extent {
    std::uint64_t last;
    std::size_t number;
  };

  void add(std::size_t from, std::uint64_t first, std::uint64_t last, std::string name);
  const extent* find(std::size_t from, std::uint64_t address) const;
  const extent* find_named(std::uint64_t address, std::size_t module) const;
  bool add_variable(code_names& code, std::uint64_t address, std::size_t module);
  void add_stretches(const std::vector<touched_range>& ranges);

  const trace_modules& modules_;
  std::vector<std::string> names_{"elsewhere"};
  std::map<std::pair<std::size_t, std::uint64_t>, extent>
      arrays_;  // by where the name is from, and by the first byte's address
};

// The arrays, if rows are to be by array. Throws user_error where arrays are given and rows are by something else.
std::optional<array_names> find_arrays(bool are_wanted, trace_reader& reader, const trace_filter& filter,
                                       const std::vector<given_array>& given);

}  // namespace quern
