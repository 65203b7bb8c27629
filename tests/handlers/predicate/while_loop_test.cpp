#include "sve/handlers/predicate/while_loop.h"

#include <algorithm>

#include "tests/harness/agreement.h"
#include "tests/random_cases/random_registers.h"

namespace quern {
namespace {

constexpr std::uint64_t N = 1u << 31, Z = 1u << 30, C = 1u << 29;
constexpr std::uint64_t max_signed = ~std::uint64_t{0} >> 1, max_unsigned = ~std::uint64_t{0};

using relation = bool (*)(std::uint64_t e, std::uint64_t m, std::uint32_t size);

constexpr relation less_than = [](std::uint64_t e, std::uint64_t m, std::uint32_t size) {
  return signed_value(element_width(size), e) < signed_value(element_width(size), m);
};
constexpr relation lower = [](std::uint64_t e, std::uint64_t m, std::uint32_t) { return e < m; };
constexpr relation lower_or_same = [](std::uint64_t e, std::uint64_t m, std::uint32_t) { return e <= m; };

// One comparison a lane, counting up by 1 in the width of the scalars.
void define_while(cpu_state& s, std::uint32_t size, std::uint32_t scalar_size, std::uint32_t d, std::uint64_t n,
                  std::uint64_t m, relation holds) {
  const std::uint64_t mask = scalar_size == size_x ? max_unsigned : 0xFFFFFFFF;
  flags_of result(count_of(size));
  bool goes_on = true;
  for (std::size_t i = 0; i != result.size(); ++i) {
    goes_on = goes_on && holds((n + i) & mask, m & mask, scalar_size);
    result[i] = goes_on;
  }
  define_flags(s, flags_of(result.size(), true), result);
  write_flags(s.p[d], size, result);
}

struct handler_case {
  const char* name;
  handler_prr& handler;
  relation holds;
};
const handler_case handlers[] = {
    {"whilelt", sve_whilelt_prr, less_than},
    {"whilelo", sve_whilelo_prr, lower},
    {"whilels", sve_whilels_prr, lower_or_same},
};

// Limits at the ends of the ranges and elsewhere, and starts around them, near enough to reach them and not.
TEST(WhileLoop, AgreesWithOneComparisonALane) {
  const std::uint64_t limits[] = {0,          5,          1000,       max_signed,  max_signed + 1,    max_unsigned,
                                  0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x100000000, 0x123456789ABCDEF0};
  const int starts[] = {-300, -257, -256, -255, -128, -33, -8, -2, -1, 0, 1, 2, 40};
  random_source random(1);
  cpu_state s;
  fill_registers(random, size_b, false, s);
  for (const auto& c : handlers)
    for (const std::uint32_t scalar_size : {size_w, size_x})
      for (std::uint32_t size = size_b; size <= size_d; ++size)
        for (const std::uint64_t m : limits)
          for (const int start : starts) {
            cpu_state expected = s;
            s.x[3] = expected.x[3] = m + static_cast<std::uint64_t>(std::int64_t{start});
            s.x[4] = expected.x[4] = m;
            const aarch64_i_reg n{3, scalar_size, i_none, i_none}, limit{4, scalar_size, i_none, i_none};
            EXPECT_EQ(c.handler(&s, p_reg(5, size), n, limit), DECODE_OK);
            define_while(expected, size, scalar_size, 5, expected.x[3], m, c.holds);
            ASSERT_EQ(difference(s, expected), "") << c.name << " size " << size << " from " << s.x[3] << " to " << m
                                                   << (scalar_size == size_w ? ", W" : ", X");
          }
}

class WhileLoopOf2048Bits : public vectors_of_2048_bits {};

TEST_F(WhileLoopOf2048Bits, StopsForGoodWhereTheComparisonFails) {
  const struct {
    const char* text;
    handler_prr& handler;
    std::uint32_t size;
    aarch64_i_reg n, m;
    std::uint64_t x0, x1;
    std::ptrdiff_t set;
    std::uint64_t flags;
  } cases[] = {
      {"whilelt p0.s, x0, x1, equal", sve_whilelt_prr, size_s, x_reg(0), x_reg(1), 7, 7, 0, Z | C},
      {"whilelo p0.d, x0, x0 + 5", sve_whilelo_prr, size_d, x_reg(0), x_reg(1), 100, 105, 5, N | C},
      {"whilels to the greatest", sve_whilels_prr, size_b, x_reg(0), x_reg(1), max_unsigned - 2, max_unsigned, 256, N},
      {"whilelt to the greatest", sve_whilelt_prr, size_b, x_reg(0), x_reg(1), max_signed - 3, max_signed, 3, N | C},
      {"whilelo of W registers", sve_whilelo_prr, size_b, w_reg(0), w_reg(1), 0x900000000, 0x500000004, 4, N | C},
      {"whilelo from xzr", sve_whilelo_prr, size_s, x_reg(31), x_reg(1), 50, 9, 9, N | C},
      {"whilelo to xzr", sve_whilelo_prr, size_s, x_reg(0), x_reg(31), 50, 9, 0, Z | C},
      {"all set", sve_whilelo_prr, size_s, x_reg(31), x_reg(1), 0, 64, 64, N},
  };
  for (const auto& c : cases) {
    s.x[0] = c.x0;
    s.x[1] = c.x1;
    c.handler(&s, p_reg(0, c.size), c.n, c.m);
    EXPECT_EQ(std::count(s.p[0], s.p[0] + VL_BYTES, 1), c.set) << c.text;
    EXPECT_EQ(s.nzcv, c.flags) << c.text;
  }
}

}  // namespace
}  // namespace quern
