// Routines whose whole meaning is a function of one lane, or a fold over lanes, against that function.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tests/harness/agreement.h"

namespace quern {

// What a routine with up to three vectors should do to lanes. `call` runs it at a size with the governing predicate g;
// `lane` is the new element of d, of which the low bits count, from the width and the old elements of d, n, m.
struct lane_case {
  std::string name;
  std::string_view sizes;  // of "bhsd"
  std::function<aarch64_decode_rc(cpu_state*, std::uint32_t size, const registers&)> call;
  std::function<std::uint64_t(unsigned width, std::uint64_t d, std::uint64_t n, std::uint64_t m)> lane;
  bool predicated = true;
  bool zeroing = false;
};

// Expects of all samples and registers that the whole register file is as the scalar definition says.
void judge_lanes(const lane_case& c);

// What a reduction should do: element 0 of Vd, `result_width` bits of it (0: the element's width), from folding the
// active lanes of Zn from `start` on; all else of Vd zero.
struct reduction_case {
  const char* name;
  aarch64_decode_rc (*handler)(cpu_state*, unsigned int, aarch64_p_reg, aarch64_z_reg);
  unsigned result_width;
  std::uint64_t (*start)(unsigned width);
  std::uint64_t (*fold)(unsigned width, std::uint64_t folded, std::uint64_t element);
};
void judge_reduction(const reduction_case& c);

}  // namespace quern
