// The placeholders: what they print and answer, and that they are all there.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "sve/decoder/decode_map.h"
#include "sve/handlers/placeholders.h"
#include "tests/harness/agreement.h"

namespace quern {
namespace {

TEST(Placeholders, ReportTheWordUnderTheirNameAndChangeNothing) {
  for (const placeholder& p : placeholders()) {
    cpu_state s = random_state(size_b, lanes_on::random);
    s.pc = reinterpret_cast<unsigned char*>(0x7F00400104);
    s.instr_word = 0xDEADBEEF'04200000;
    const cpu_state before = s;
    testing::internal::CaptureStderr();
    EXPECT_EQ(p.handler(&s), DECODE_UNIMPLEMENTED);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unimplemented instruction: [  7f00400104:\t 04200000\t " + std::string(p.name) + "  ]\n");
    EXPECT_EQ(difference(s, before), "") << p.name;
  }
}

TEST(Placeholders, TakeTheOperandsOfTheirInstruction) {
  cpu_state s = random_state(size_b, lanes_on::random);
  testing::internal::CaptureStderr();
  EXPECT_EQ(sve_clasta_vpz(&s, 0u, p_reg(0, p_unqualified), z_reg(1, size_b)), DECODE_UNIMPLEMENTED);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("\t sve_clasta_vpz  ]\n"), std::string::npos);
}

TEST(Placeholders, AreTwoHundredAndNinetyFiveByUniqueNamesInOrder) {
  const auto all = placeholders();
  EXPECT_EQ(all.size(), 295u);
  EXPECT_TRUE(
      std::ranges::is_sorted(all, std::ranges::less{}, [](const placeholder& p) { return std::string_view(p.name); }));
  std::set<std::string_view> names;
  std::set<placeholder_handler*> handlers;
  for (const placeholder& p : all) {
    EXPECT_TRUE(names.insert(p.name).second) << p.name;
    EXPECT_TRUE(handlers.insert(p.handler).second) << p.name;
  }
  for (const char* name : {"sve_clasta_vpz", "sve_fabd_zpz", "sve_lsr_wide_d2b_zpz", "sve_ldff1d_uxtw_zpzr"})
    EXPECT_TRUE(names.contains(name)) << name;
}

// Handlers that exist, though no thunk calls them.
constexpr std::string_view uncalled_handlers[] = {
    "sve_st1sb_zpri",   "sve_st1sb_h_zpri", "sve_st1sb_s_zpri", "sve_st1sb_d_zpri", "sve_st1sh_zpri",
    "sve_st1sh_s_zpri", "sve_st1sh_d_zpri", "sve_st1sw_zpri",   "sve_st1sw_d_zpri", "sve_st1sd_zpri",
    "sve_trn1_ppp",     "sve_uqdecd_rii",   "sve_uqdecw_rii",   "sve_lsr_zzi",      "sve_lsr_zpi",
    "sve_not_ppp",      "sve_cntb_rii",     "sve_cnth_rii",     "sve_cntw_rii",     "sve_cntd_rii",
    "sve_fadda_vpz",    "sve_faddv_vpz"};

TEST(Placeholders, StandForNoInstructionThatHasAHandler) {
  std::set<std::string_view> names;
  for (const placeholder& p : placeholders()) names.insert(p.name);
  for (const std::string_view handler : uncalled_handlers) EXPECT_FALSE(names.contains(handler)) << handler;
  for (const decode_map& map : decode_maps()) {
    for (const decode_row& row : map.rows) EXPECT_FALSE(names.contains(row.handler)) << row.handler;
  }
}

}  // namespace
}  // namespace quern
