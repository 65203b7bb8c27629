// The memory element and lane that a memory handler's name tells by its letters.
#pragma once

#include <cstddef>
#include <string_view>

namespace quern {

struct element_sizes {
  std::size_t memory_bytes, lane_bytes;
  bool sign_extends;
};

constexpr std::size_t bytes_of_letter(char letter) { return std::size_t{1} << std::string_view("bhwd").find(letter); }

// Of "b", "w_d", "sh_s": b, h, w, d in memory, s before it a sign-extending load, and _h, _s, _d a wider lane.
constexpr element_sizes sizes_of(std::string_view letters) {
  element_sizes sizes{};
  sizes.sign_extends = letters.starts_with('s');
  if (sizes.sign_extends) letters.remove_prefix(1);
  sizes.memory_bytes = sizes.lane_bytes = bytes_of_letter(letters[0]);
  if (letters.ends_with("_h")) sizes.lane_bytes = 2;
  if (letters.ends_with("_s")) sizes.lane_bytes = 4;
  if (letters.ends_with("_d")) sizes.lane_bytes = 8;
  return sizes;
}

}  // namespace quern
