#include "sve/handlers/integer/address.h"

#include "tests/harness/agreement.h"

namespace quern {
namespace {

constexpr std::uint64_t length = VL_BYTES;

TEST(Address, MultiplesOfTheVectorLength) {
  for (const int imm : {-32, -1, 0, 1, 31}) {
    cpu_state s{};
    s.sp = 5;
    s.x[2] = 1000;
    const auto times = static_cast<std::uint64_t>(std::int64_t{imm});
    sve_rdvl_ri(&s, x_reg(0), imm);
    EXPECT_EQ(s.x[0], times * length);
    sve_addvl_rri(&s, {1, size_x}, {2, size_x}, imm);
    EXPECT_EQ(s.x[1], 1000 + times * length);
    sve_addpl_rri(&s, {3, size_x}, {2, size_x}, imm);
    EXPECT_EQ(s.x[3], 1000 + times * (length / 8));
    EXPECT_EQ(s.sp, 5u);
  }
}

TEST(Address, Number31IsTheZeroRegisterForRdvlAndTheStackPointerForTheOthers) {
  cpu_state s{};
  s.sp = 1000;
  const cpu_state before = s;
  sve_rdvl_ri(&s, x_reg(31), 3);
  EXPECT_EQ(difference(s, before), "");
  sve_addvl_rri(&s, {31, size_x}, {31, size_x}, 2);
  EXPECT_EQ(s.sp, 1000 + 2 * length);
  sve_addvl_rri(&s, {31, size_x}, {0, size_x}, 2);
  EXPECT_EQ(s.sp, 2 * length);
  sve_addpl_rri(&s, {0, size_x}, {31, size_x}, 8);
  EXPECT_EQ(s.x[0], 3 * length);
}

class AddressOf2048Bits : public vectors_of_2048_bits {};

TEST_F(AddressOf2048Bits, CountsDown) {
  sve_rdvl_ri(&s, x_reg(0), -1);
  EXPECT_EQ(s.x[0], static_cast<std::uint64_t>(std::int64_t{-256}));
  s.sp = 1000;
  sve_addpl_rri(&s, {31, size_x}, {31, size_x}, -1);
  EXPECT_EQ(s.sp, 968u);
}

// ADR Zd.<T>, [Zn.<T>, Zm.<T>, LSL #shift]: bits 11 and 10 are the shift, bit 22 chooses doublewords.
TEST(Address, PackedOffsetsAreScaledByTheWord) {
  for (const std::uint32_t size : {size_s, size_d})
    for (std::uint32_t shift = 0; shift != 4; ++shift) {
      const std::uint64_t word = 0x04A0A000 | (size == size_d ? 1u << 22 : 0) | shift << 10;
      expect_agreement(
          "adr",
          [&](cpu_state* s, std::uint32_t, registers r) {
            s->instr_word = word;
            return sve_adr_scaled_zzz(s, z_reg(r.d, size), z_reg(r.n, size), z_reg(r.m, size));
          },
          [&](cpu_state& s, std::uint32_t, registers r) {
            s.instr_word = word;
            elements base = read_elements(s.z[r.n], size);
            const elements offset = read_elements(s.z[r.m], size);
            for (std::size_t i = 0; i != base.size(); ++i) base[i] += offset[i] << shift;
            write_elements(s.z[r.d], size, base);
          });
    }
}

}  // namespace
}  // namespace quern
