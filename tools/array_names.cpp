// Finding arrays by the user's word, by symbols, and by what lies together.
#include "tools/array_names.h"

#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/user_error.h"

namespace quern {
namespace {

given_array parse_array(const std::string& text) {
  const std::size_t equals = text.find('='), colon = text.find(':', equals);
  if (equals != std::string::npos && equals != 0 && colon != std::string::npos) {
    const auto first = parse_number(std::string_view(text).substr(equals + 1, colon - equals - 1));
    const auto bytes = parse_number(std::string_view(text).substr(colon + 1));
    if (first && bytes && *bytes != 0 && *bytes - 1 <= ~*first)
      return {text.substr(0, equals), *first, *first + (*bytes - 1)};
  }
  throw user_error{
      fmt::format("--array: '{}' is no array: give its name, address and bytes, as in x=0x1000:4096", text),
      status_usage};
}

}  // namespace

void add_array_option(CLI::App& command, std::vector<given_array>& arrays) {
  command
      .add_option_function<std::vector<std::string>>(
          "--array",
          [&arrays](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) arrays.push_back(parse_array(text));
          },
          "With --by array: an array that has no symbol, as on the heap")
      ->type_name("NAME=ADDRESS:BYTES")
      ->expected(1)
      ->take_all();
}

array_names::array_names(trace_reader& reader, const trace_filter& filter, const std::vector<given_array>& given)
    : modules_(reader.modules()) {
  for (const given_array& each : given) {
    if (const auto next = arrays_.lower_bound({from_user, each.first});
        find(from_user, each.first) != nullptr || (next != arrays_.end() && next->first.second <= each.last))
      throw user_error{"--array: " + each.name + " and another one overlap", status_usage};
    add(from_user, each.first, each.last, each.name);
  }
  touched_ranges unnamed;
  filtered_records records(reader, filter);
  while (const std::optional<trace_record> record = records.next()) {
    if (!record->is_access()) continue;
    const std::size_t module = modules_.find(record->addr, record->count);
    if (find_named(record->addr, module) == nullptr && !add_variable(records.names(), record->addr, module))
      unnamed.add(record->addr, record->last_byte());
  }
  add_stretches(unnamed.ranges());
  reader.rewind();
}

void array_names::add(std::size_t from, std::uint64_t first, std::uint64_t last, std::string name) {
  if (std::ranges::find(names_, name) != names_.end()) name += fmt::format(" at {:#x}", first);
  arrays_.insert_or_assign({from, first}, extent{last, names_.size()});
  names_.push_back(std::move(name));
}

const array_names::extent* array_names::find(std::size_t from, std::uint64_t address) const {
  const auto above = arrays_.upper_bound({from, address});
  if (above == arrays_.begin()) return nullptr;
  const auto& [key, found] = *std::prev(above);
  return key.first == from && address <= found.last ? &found : nullptr;
}

const array_names::extent* array_names::find_named(std::uint64_t address, std::size_t module) const {
  const extent* const found = find(from_user, address);
  return found != nullptr ? found : find(from_module + module, address);
}

// False when no variable is there.
bool array_names::add_variable(code_names& code, std::uint64_t address, std::size_t module) {
  const auto found = code.variable_at(address, module);
  if (found) add(from_module + module, found->first, found->last, found->name);
  return found.has_value();
}

void array_names::add_stretches(const std::vector<touched_range>& ranges) {
  for (std::size_t i = 0; i != ranges.size();) {
    const std::uint64_t first = ranges[i].first;
    std::uint64_t last = ranges[i].last;
    while (++i != ranges.size() && ranges[i].first - last <= least_gap) last = ranges[i].last;
    add(from_memory, first, last, fmt::format("{:#x}-{:#x}", first, last));
  }
}

std::size_t array_names::array_of(const trace_record& access) const {
  const extent* found = find_named(access.addr, modules_.find(access.addr, access.count));
  if (found == nullptr) found = find(from_memory, access.addr);
  return found != nullptr ? found->number : 0;
}

std::optional<array_names> find_arrays(bool are_wanted, trace_reader& reader, const trace_filter& filter,
                                       const std::vector<given_array>& given) {
  if (!are_wanted && !given.empty()) throw user_error{"--array is of use to --by array alone", status_usage};
  return are_wanted ? std::make_optional<array_names>(reader, filter, given) : std::nullopt;
}

}  // namespace quern
