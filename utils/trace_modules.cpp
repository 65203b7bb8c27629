// Reading the list of modules.
#include "utils/trace_modules.h"

#include <algorithm>
#include <cstring>

#include "utils/build_id.h"

namespace quern {
namespace {

constexpr std::size_t most_modules = 1 << 16;  // that are believed

}  // namespace

bool trace_modules::add(const module_entry& entry, std::string_view rest) {
  if (entry.build_id_bytes > most_build_id_bytes ||
      std::uint64_t{entry.build_id_bytes} + entry.path_bytes > rest.size())
    return false;
  if (entry.end == 0) {  // the module is gone
    const auto known = std::find(numbers_.rbegin(), numbers_.rend(), entry.number);
    if (known != numbers_.rend())
      modules_[static_cast<std::size_t>(numbers_.rend() - known) - 1].end_count = entry.count;
    return known != numbers_.rend();
  }
  if (entry.begin >= entry.end || modules_.size() == most_modules) return false;
  numbers_.push_back(entry.number);
  modules_.push_back({.begin = entry.begin,
                      .end = entry.end,
                      .first_count = entry.count,
                      .time = entry.time,
                      .path = std::string(rest.substr(entry.build_id_bytes, entry.path_bytes)),
                      .build_id = std::string(rest.substr(0, entry.build_id_bytes))});
  return true;
}

bool trace_modules::take(std::string_view bytes, bool is_all) {
  module_entry entry{};
  while (bytes.size() >= sizeof entry) {
    std::memcpy(&entry, bytes.data(), sizeof entry);
    if (entry.size < sizeof entry) return false;
    if (entry.size > bytes.size()) return !is_all;
    if (!add(entry, bytes.substr(sizeof entry, entry.size - sizeof entry))) return false;
    bytes.remove_prefix(entry.size);
  }
  return bytes.empty() || !is_all;
}

std::size_t trace_modules::find(std::uint64_t address, std::uint64_t count) const {
  const std::size_t none = modules_.size();
  std::size_t found = none;
  for (std::size_t i = 0; i != modules_.size(); ++i) {
    const trace_module& each = modules_[i];
    if (address < each.begin || address >= each.end) continue;
    const bool is_there = each.first_count <= count && count < each.end_count;
    if (is_there || found == none || modules_[found].end_count <= count) found = i;
    if (each.first_count > count) break;  // those that follow came later still
  }
  return found;
}

}  // namespace quern
