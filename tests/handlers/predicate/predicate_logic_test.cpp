#include "sve/handlers/predicate/predicate_logic.h"

#include <cstring>

#include "tests/harness/agreement.h"

namespace quern {
namespace {

using byte_operation = int (*)(int n, int m);

// The operation on the bytes of p[n] and p[m] where p[g]'s byte is odd; elsewhere 0, or the old byte.
void define_logic(cpu_state& s, registers r, byte_operation op, bool zeroing) {
  const cpu_state old = s;
  for (int i = 0; i != VL_BYTES; ++i) {
    const int inactive = zeroing ? 0 : old.p[r.d][i];
    s.p[r.d][i] = static_cast<unsigned char>(old.p[r.g][i] % 2 == 1 ? op(old.p[r.n][i], old.p[r.m][i]) : inactive);
  }
}

TEST(PredicateLogic, AgreesWithItsByteOperationAndOnlyZeroingClearsInactiveLanes) {
  struct {
    const char* name;
    handler_pppp* handler;
    byte_operation op;
  } const cases[] = {
      {"and", sve_and_pppp, [](int n, int m) { return n & m; }},
      {"orr", sve_orr_pppp, [](int n, int m) { return n | m; }},
      {"eor", sve_eor_pppp, [](int n, int m) { return n ^ m; }},
      {"bic", sve_bic_pppp, [](int n, int m) { return n & (255 - m); }},
      {"nor", sve_nor_pppp, [](int n, int m) { return n == 0 && m == 0 ? 1 : 0; }},
      {"not",
       [](cpu_state* s, aarch64_p_reg d, aarch64_p_reg g, aarch64_p_reg n, aarch64_p_reg) {
         return sve_not_ppp(s, d, g, n);
       },
       [](int n, int) { return 1 - n % 2; }},
  };
  for (const auto& c : cases)
    for (const std::uint32_t qualifier : every_qualifier)
      expect_agreement(
          c.name,
          [&](cpu_state* s, std::uint32_t, registers r) {
            return c.handler(s, p_reg(r.d, size_b), p_reg(r.g, qualifier), p_reg(r.n, size_b), p_reg(r.m, size_b));
          },
          [&](cpu_state& s, std::uint32_t, registers r) { define_logic(s, r, c.op, qualifier == p_zeroing); });
}

TEST(PredicateLogic, OrOfOnePredicateInAllPlacesMovesItsActiveBytesWhole) {
  for (const std::uint32_t qualifier : every_qualifier)
    expect_agreement(
        "mov",
        [&](cpu_state* s, std::uint32_t, registers r) {
          return sve_orr_pppp(s, p_reg(r.d, size_b), p_reg(r.n, qualifier), p_reg(r.n, size_b), p_reg(r.n, size_b));
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          define_logic(
              s, {.d = r.d, .g = r.n, .n = r.n, .m = r.n}, [](int n, int m) { return n | m; }, qualifier == p_zeroing);
        });
}

TEST(PredicateLogic, SelectCopiesWholeBytesOfOneOrTheOther) {
  expect_agreement(
      "sel",
      [](cpu_state* s, std::uint32_t, registers r) {
        return sve_sel_pppp(s, p_reg(r.d, size_b), p_reg(r.g, p_unqualified), p_reg(r.n, size_b), p_reg(r.m, size_b));
      },
      [](cpu_state& s, std::uint32_t, registers r) {
        const cpu_state old = s;
        for (int i = 0; i != VL_BYTES; ++i) s.p[r.d][i] = old.p[old.p[r.g][i] % 2 == 1 ? r.n : r.m][i];
      });
}

TEST(PredicateLogic, SelectIntoItsGoverningPredicateGoesByTheOldOne) {
  cpu_state s{};
  for (int i = 0; i != VL_BYTES; ++i) s.p[0][i] = i % 2 == 0;
  std::memset(s.p[1], 4, VL_BYTES);
  std::memset(s.p[2], 9, VL_BYTES);
  sve_sel_pppp(&s, p_reg(0, size_b), p_reg(0, p_unqualified), p_reg(1, size_b), p_reg(2, size_b));
  for (int i = 0; i != VL_BYTES; ++i) EXPECT_EQ(s.p[0][i], i % 2 == 0 ? 4 : 9) << i;
}

// What no 0-or-1 predicate shows: a zero test of whole bytes, not of bit 0.
TEST(PredicateLogic, NorTestsWholeBytes) {
  cpu_state s{};
  s.p[1][0] = s.p[1][1] = 1;
  s.p[2][0] = 0xFE;
  sve_nor_pppp(&s, p_reg(0, size_b), p_reg(1, p_zeroing), p_reg(2, size_b), p_reg(3, size_b));
  EXPECT_EQ(s.p[0][0], 0);
  EXPECT_EQ(s.p[0][1], 1);
}

}  // namespace
}  // namespace quern
