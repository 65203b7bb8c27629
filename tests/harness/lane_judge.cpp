#include "tests/harness/lane_judge.h"

namespace quern {
namespace {

void define_lanes(const lane_case& c, cpu_state& s, std::uint32_t size, const registers& r) {
  const flags_of active = c.predicated ? read_flags(s.p[r.g], size) : flags_of(count_of(size), true);
  for (std::size_t i = 0; i != active.size(); ++i) {
    const auto old = [&](std::uint32_t num) { return element(s.z[num], size, i); };
    if (active[i]) {
      set_element(s.z[r.d], size, i, c.lane(element_width(size), old(r.d), old(r.n), old(r.m)));
    } else if (c.zeroing) {
      set_element(s.z[r.d], size, i, 0);
    }
  }
}

void define_reduction(const reduction_case& c, cpu_state& s, std::uint32_t size, const registers& r) {
  const unsigned width = element_width(size), result_width = c.result_width == 0 ? width : c.result_width;
  std::uint64_t folded = c.start(width);
  for (std::size_t i = 0; i != count_of(size); ++i)
    if (element_active(s.p[r.g], size, i)) folded = c.fold(width, folded, element(s.z[r.n], size, i));
  fill_elements(s.z[r.d], size_b, 0);
  set_element(s.z[r.d], size_d, 0, low_bits(result_width, folded));
}

}  // namespace

void judge_lanes(const lane_case& c) {
  expect_agreement(
      c.name, c.call, [&](cpu_state& s, std::uint32_t size, const registers& r) { define_lanes(c, s, size, r); },
      c.sizes);
}

void judge_reduction(const reduction_case& c) {
  expect_agreement(
      c.name,
      [&](cpu_state* s, std::uint32_t size, const registers& r) {
        return c.handler(s, r.d, p_reg(r.g, p_unqualified), z_reg(r.n, size));
      },
      [&](cpu_state& s, std::uint32_t size, const registers& r) { define_reduction(c, s, size, r); });
}

}  // namespace quern
