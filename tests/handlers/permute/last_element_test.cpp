#include "sve/handlers/permute/last_element.h"

#include <cstring>

#include "tests/harness/agreement.h"

namespace quern {
namespace {

// The last active lane, or `none`.
std::uint64_t define_last(const flags_of& active, const elements& n, std::uint64_t none) {
  std::uint64_t last = none;
  for (std::size_t i = 0; i != n.size(); ++i)
    if (active[i]) last = n[i];
  return last;
}

TEST(LastElement, ToARegisterAgreesWithItsDefinition) {
  for (const std::uint32_t num : {8u, 31u})
    expect_agreement(
        "lastb",
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return sve_lastb_rpz(s, {num, size, i_none, i_none}, p_reg(r.g, p_unqualified), z_reg(r.n, size));
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          const elements n = read_elements(s.z[r.n], size);
          if (num != 31) s.x[num] = define_last(read_flags(s.p[r.g], size), n, n.back());
        });
}

TEST(LastElement, ToAVectorAgreesWithItsDefinition) {
  expect_agreement(
      "lastb",
      [](cpu_state* s, std::uint32_t size, registers r) {
        return sve_lastb_vpz(s, r.d, p_reg(r.g, p_unqualified), z_reg(r.n, size));
      },
      [](cpu_state& s, std::uint32_t size, registers r) {
        const elements n = read_elements(s.z[r.n], size);
        elements d(n.size(), 0);
        d[0] = define_last(read_flags(s.p[r.g], size), n, n.back());
        write_elements(s.z[r.d], size, d);
      });
}

TEST(LastElement, ConditionallyToARegisterAgreesWithItsDefinition) {
  for (const std::uint32_t num : {8u, 31u})
    expect_agreement(
        "clastb",
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return sve_clastb_rpz(s, num == 8 && size == size_d ? x_both(num) : w_both(num), p_reg(r.g, p_unqualified),
                                z_reg(r.n, size));
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          const elements n = read_elements(s.z[r.n], size);
          if (num != 31) s.x[num] = define_last(read_flags(s.p[r.g], size), n, low_bits(element_width(size), s.x[num]));
        });
}

TEST(LastElement, WithNothingActiveIsTheLastLaneOrTheOldLowBits) {
  cpu_state s{};
  s.z[1][VL_BYTES - 2] = 0x34;
  s.z[1][VL_BYTES - 1] = 0x12;
  sve_lastb_rpz(&s, x_reg(0), p_reg(0, p_unqualified), z_reg(1, size_h));
  EXPECT_EQ(s.x[0], 0x1234u);
  s.x[0] = 0x123456789ABCDEF0;
  sve_clastb_rpz(&s, w_both(0), p_reg(0, p_unqualified), z_reg(1, size_b));
  EXPECT_EQ(s.x[0], 0xF0u);
}

TEST(LastElement, ToAVectorClearsWhatIsAboveIt) {
  cpu_state s{};
  std::memset(s.z[0], 0xFF, VL_BYTES);
  s.z[1][0] = 3;
  s.p[0][0] = 1;  // lastb d0, p0, z1.d
  sve_lastb_vpz(&s, 0, p_reg(0, p_unqualified), z_reg(1, size_d));
  elements expected(count_of(size_d), 0);
  expected[0] = 3;
  EXPECT_EQ(read_elements(s.z[0], size_d), expected);
}

}  // namespace
}  // namespace quern
