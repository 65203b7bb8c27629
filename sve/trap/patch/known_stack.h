// What a thunk's code would have put on the stack. Most of that is arguments and registers to be kept, which it reads
// back itself: until something else needs the stack, neither that nor the stack pointer is written.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "sve/trap/patch/known_value.h"

namespace quern {

class known_stack {
 public:
  // Of bytes beneath the place where the stack pointer stood at first, from which all distances are.
  static constexpr std::uint64_t most = 512;
  static constexpr bool has(std::uint64_t distance) { return -distance <= most; }
  static constexpr bool has_slot(std::uint64_t distance) { return has(distance) && distance != 0 && distance % 8 == 0; }
  static constexpr bool may_be_top(std::uint64_t distance) { return has(distance) && distance % 16 == 0; }

  known_value& slot(std::uint64_t distance) { return slots_[-distance / 8 - 1]; }

  // Where the stack pointer is to stand. What is beneath it is lost.
  std::uint64_t top() const { return top_; }
  std::uint64_t bytes() const { return -top_; }
  void move_top(std::uint64_t to) {
    for (std::uint64_t lost = bytes(); lost > -to; lost -= 8) slot(-lost) = {};
    top_ = to;
  }

  // Whether a slot has what one of the registers of the set had at first.
  bool keeps_any_of(std::uint32_t set) const {
    return std::any_of(slots_.begin(), slots_.end(), [=](const known_value& v) {
      return v.is == known_value::kind::kept && (set >> v.number & 1) != 0;
    });
  }

  void clear() {
    top_ = 0;
    slots_.fill({});
  }

 private:
  std::uint64_t top_ = 0;
  std::array<known_value, most / 8> slots_{};
};

}  // namespace quern
