// What accesses are counted by.
#pragma once

namespace quern {

enum class stats_key { place, function, array, thread, region };

constexpr const char* name_of(stats_key key) {
  constexpr const char* names[] = {"place", "function", "array", "thread", "region"};
  return names[static_cast<int>(key)];
}

}  // namespace quern
