#include "sve/handlers/integer/index.h"

#include "tests/harness/agreement.h"

namespace quern {
namespace {

std::uint64_t register_value(const cpu_state& s, std::uint32_t num) { return num == 31 ? 0 : s.x[num]; }
std::uint64_t extended(int imm) { return static_cast<std::uint64_t>(std::int64_t{imm}); }

void define_index(cpu_state& s, std::uint32_t size, std::uint32_t d, std::uint64_t start, std::uint64_t step) {
  elements all(count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) all[i] = start + i * step;
  write_elements(s.z[d], size, all);
}

TEST(Index, AgreesWithAMultiplicationALane) {
  for (const int imm : {-16, -1, 0, 1, 15})
    for (const std::uint32_t x : {4u, 5u, 31u}) {
      expect_agreement(
          "index_zii",
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return sve_index_zii(s, z_reg(r.d, size), imm, 7 - imm);
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            define_index(s, size, r.d, extended(imm), extended(7 - imm));
          });
      expect_agreement(
          "index_zir",
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return sve_index_zir(s, z_reg(r.d, size), imm, {x, size, i_none, i_none});
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            define_index(s, size, r.d, extended(imm), register_value(s, x));
          });
      expect_agreement(
          "index_zri",
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return sve_index_zri(s, z_reg(r.d, size), {x, size, i_none, i_none}, imm);
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            define_index(s, size, r.d, register_value(s, x), extended(imm));
          });
      expect_agreement(
          "index_zrr",
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return sve_index_zrr(s, z_reg(r.d, size), {x, size, i_none, i_none}, {6, size, i_none, i_none});
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            define_index(s, size, r.d, register_value(s, x), register_value(s, 6));
          });
    }
}

TEST(Index, OfDoublewordsStartsAtASignExtendedImmediate) {
  cpu_state s{};
  sve_index_zii(&s, z_reg(0, size_d), -1, 1);
  const elements all = read_elements(s.z[0], size_d);
  EXPECT_EQ(all[0], ~std::uint64_t{0});
  EXPECT_EQ(all[1], 0u);
}

class IndexOf2048Bits : public vectors_of_2048_bits {};

TEST_F(IndexOf2048Bits, OfBytesWrapsInTheLastLane) {
  sve_index_zii(&s, z_reg(0, size_b), 1, 1);
  EXPECT_EQ(s.z[0][VL_BYTES - 2], 255);
  EXPECT_EQ(s.z[0][VL_BYTES - 1], 0);
}

}  // namespace
}  // namespace quern
