#include "sve/handlers/predicate/first_fault_register.h"

#include "sve/handlers/predicate/element_count.h"
#include "sve/handlers/predicate/predicate_constant.h"
#include "tests/harness/agreement.h"

namespace quern {
namespace {

TEST(FirstFaultRegister, MovesWholeBytes) {
  expect_agreement(
      "rdffr", [](cpu_state* s, std::uint32_t, registers r) { return sve_rdffr_p(s, p_reg(r.d, size_b)); },
      [](cpu_state& s, std::uint32_t, registers r) { write_elements(s.p[r.d], 0, read_elements(s.ffr, 0)); });
  expect_agreement(
      "wrffr", [](cpu_state* s, std::uint32_t, registers r) { return sve_wrffr_p(s, p_reg(r.n, size_b)); },
      [](cpu_state& s, std::uint32_t, registers r) { write_elements(s.ffr, 0, read_elements(s.p[r.n], 0)); });
  expect_agreement(
      "setffr", [](cpu_state* s, std::uint32_t, registers) { return sve_setffr(s); },
      [](cpu_state& s, std::uint32_t, registers) { write_elements(s.ffr, 0, elements(VL_BYTES, 1)); });
}

TEST(FirstFaultRegister, ReadUnderAPredicateIsTheAndOfWholeBytes) {
  expect_agreement(
      "rdffr",
      [](cpu_state* s, std::uint32_t, registers r) {
        return sve_rdffr_pp(s, p_reg(r.d, size_b), p_reg(r.g, p_zeroing));
      },
      [](cpu_state& s, std::uint32_t, registers r) {
        for (int i = 0; i != VL_BYTES; ++i) s.p[r.d][i] = s.ffr[i] & s.p[r.g][i];
      });
}

// All of SETFFR's bytes are set, but only the first of each element that PTRUE made.
TEST(FirstFaultRegister, HoldsWhatItWasGivenWhateverTheElementSize) {
  cpu_state s{};
  const auto bytes_set_in_ffr = [&] {
    sve_rdffr_p(&s, p_reg(1, size_b));
    sve_cntp_rpp(&s, x_reg(0), p_reg(1, p_unqualified), p_reg(1, size_b));
    return s.x[0];
  };
  sve_setffr(&s);
  EXPECT_EQ(bytes_set_in_ffr(), std::uint64_t{VL_BYTES});
  sve_ptrue_pi(&s, p_reg(0, size_d), 31);
  sve_wrffr_p(&s, p_reg(0, size_b));
  EXPECT_EQ(bytes_set_in_ffr(), std::uint64_t{VL_BYTES / 8});
}

}  // namespace
}  // namespace quern
