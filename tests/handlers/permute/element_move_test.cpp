#include "sve/handlers/permute/element_move.h"

#include <cstring>

#include "tests/harness/agreement.h"

namespace quern {
namespace {

std::uint64_t extended(int imm) { return static_cast<std::uint64_t>(std::int64_t{imm}); }
std::uint64_t register_or_sp(const cpu_state& s, std::uint32_t num) { return num == 31 ? s.sp : s.x[num]; }

// The value in the active lanes of z[d]; 0 or the old value in the others.
void define_copy(cpu_state& s, std::uint32_t size, registers r, std::uint64_t value, bool zeroing) {
  const flags_of active = read_flags(s.p[r.g], size);
  elements d = read_elements(s.z[r.d], size);
  for (std::size_t i = 0; i != d.size(); ++i) d[i] = active[i] ? value : zeroing ? 0 : d[i];
  write_elements(s.z[r.d], size, d);
}

constexpr int immediates[] = {-32768, -128, -1, 0, 1, 127, 0x7F00};

TEST(ElementMove, SelectTakesLanesOfOneOrTheOther) {
  expect_agreement(
      "sel",
      [](cpu_state* s, std::uint32_t size, registers r) {
        return sve_sel_zpzz(s, z_reg(r.d, size), p_reg(r.g, p_unqualified), z_reg(r.n, size), z_reg(r.m, size));
      },
      [](cpu_state& s, std::uint32_t size, registers r) {
        const flags_of active = read_flags(s.p[r.g], size);
        const elements n = read_elements(s.z[r.n], size);
        elements d = read_elements(s.z[r.m], size);
        for (std::size_t i = 0; i != d.size(); ++i)
          if (active[i]) d[i] = n[i];
        write_elements(s.z[r.d], size, d);
      });
}

TEST(ElementMove, CopyWritesActiveLanesAndOnlyZeroingClearsTheOthers) {
  for (const int imm : immediates)
    for (const std::uint32_t qualifier : every_qualifier)
      expect_agreement(
          "cpy_zpi",
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return sve_cpy_zpi(s, z_reg(r.d, size), p_reg(r.g, qualifier), imm);
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            define_copy(s, size, r, extended(imm), qualifier == p_zeroing);
          });
  for (const std::uint32_t x : {7u, 31u})
    expect_agreement(
        "cpy_zpr",
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return sve_cpy_zpr(s, z_reg(r.d, size), p_reg(r.g, p_merging), {x, size});
        },
        [&](cpu_state& s, std::uint32_t size, registers r) { define_copy(s, size, r, register_or_sp(s, x), false); });
  expect_agreement(
      "cpy_zpv",
      [](cpu_state* s, std::uint32_t size, registers r) {
        return sve_cpy_zpv(s, z_reg(r.d, size), p_reg(r.g, p_merging), r.n);
      },
      [](cpu_state& s, std::uint32_t size, registers r) {
        define_copy(s, size, r, read_elements(s.z[r.n], size)[0], false);
      });
}

TEST(ElementMove, DuplicateWritesAllLanes) {
  for (const int imm : immediates)
    expect_agreement(
        "dup_zi", [&](cpu_state* s, std::uint32_t size, registers r) { return sve_dup_zi(s, z_reg(r.d, size), imm); },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          write_elements(s.z[r.d], size, elements(count_of(size), extended(imm)));
        });
  for (const std::uint32_t x : {7u, 31u})
    expect_agreement(
        "dup_zr",
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return sve_dup_zr(s, z_reg(r.d, size), {x, size});
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          write_elements(s.z[r.d], size, elements(count_of(size), register_or_sp(s, x)));
        });
  expect_agreement(
      "dupm",
      [](cpu_state* s, std::uint32_t, registers r) { return sve_dupm_zi(s, z_reg(r.d, size_d), {0x0123456789ABCDEF}); },
      [](cpu_state& s, std::uint32_t, registers r) {
        write_elements(s.z[r.d], size_d, elements(count_of(size_d), 0x0123456789ABCDEF));
      });
}

TEST(ElementMove, DuplicateOfALaneIsZeroBeyondTheVector) {
  for (const unsigned index : {0u, 1u, 2u, 4u, 8u, 15u, 16u, 31u, 32u, 63u, 64u, 128u, 256u})
    expect_agreement(
        "dup_zzi",
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return sve_dup_zzi(s, z_reg(r.d, size), z_reg(r.n, size), index);
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          const elements n = read_elements(s.z[r.n], size);
          write_elements(s.z[r.d], size, elements(n.size(), index < n.size() ? n[index] : 0));
        });
}

TEST(ElementMove, DuplicateOfAQuadwordRepeatsSixteenBytes) {
  for (const unsigned index : {0u, 1u, 2u, 3u, 4u, 8u, 15u, 16u})
    expect_agreement(
        "dup_zzi",
        [&](cpu_state* s, std::uint32_t, registers r) {
          return sve_dup_zzi(s, z_reg(r.d, size_q), z_reg(r.n, size_q), index);
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          const elements n = read_elements(s.z[r.n], size_b);
          elements d(n.size());
          for (std::size_t i = 0; i != d.size(); ++i) d[i] = 16 * index < n.size() ? n[16 * index + i % 16] : 0;
          write_elements(s.z[r.d], size_b, d);
        });
}

class DuplicateIn2048Bits : public vectors_of_2048_bits {};

TEST_F(DuplicateIn2048Bits, TakesTheLastLaneAndNoneBeyond) {
  const struct {
    const char* text;
    std::uint32_t size, index;
    std::uint64_t low;  // of the result
  } cases[] = {
      {"dup z0.s, z1.s[63]", size_s, 63, 0xFFFEFDFCFFFEFDFC},
      {"dup z0.s, z1.s[64]", size_s, 64, 0},
      {"dup z0.q, z1.q[15]", size_q, 15, 0xF7F6F5F4F3F2F1F0},
      {"dup z0.q, z1.q[16]", size_q, 16, 0},
  };
  for (int i = 0; i != VL_BYTES; ++i) s.z[1][i] = static_cast<unsigned char>(i);
  for (const auto& c : cases) {
    std::memset(s.z[0], 0x55, VL_BYTES);
    sve_dup_zzi(&s, z_reg(0, c.size), z_reg(1, c.size), c.index);
    EXPECT_EQ(read_elements(s.z[0], size_d)[0], c.low) << c.text;
    EXPECT_EQ(read_elements(s.z[0], size_d)[count_of(size_d) - 2], c.low) << c.text;
  }
}

TEST(ElementMove, CopyOfTheStackPointerTakesItsLowBits) {
  cpu_state s{};
  s.sp = 0x123456789ABCDEF0;
  s.p[0][2] = 1;  // cpy z0.h, p0/m, wsp
  sve_cpy_zpr(&s, z_reg(0, size_h), p_reg(0, p_merging), {31, size_h});
  EXPECT_EQ(read_elements(s.z[0], size_h)[0], 0u);
  EXPECT_EQ(read_elements(s.z[0], size_h)[1], 0xDEF0u);
}

TEST(ElementMove, ZeroingCopyOfMinusOneIsAllOnesOrNothing) {
  cpu_state s{};
  std::memset(s.z[0], 9, VL_BYTES);
  s.p[0][3] = 1;  // cpy z0.b, p0/z, #-1
  sve_cpy_zpi(&s, z_reg(0, size_b), p_reg(0, p_zeroing), -1);
  for (int i = 0; i != VL_BYTES; ++i) EXPECT_EQ(s.z[0][i], i == 3 ? 0xFF : 0) << i;
}

TEST(ElementMove, SelectIntoASourceKeepsItsInactiveLanes) {
  cpu_state s{};
  write_elements(s.z[0], size_d, elements(count_of(size_d), 5));
  write_elements(s.z[1], size_d, elements(count_of(size_d), 6));
  s.p[0][8] = 1;  // sel z0.d, p0, z1.d, z0.d
  sve_sel_zpzz(&s, z_reg(0, size_d), p_reg(0, p_unqualified), z_reg(1, size_d), z_reg(0, size_d));
  EXPECT_EQ(read_elements(s.z[0], size_d)[0], 5u);
  EXPECT_EQ(read_elements(s.z[0], size_d)[1], 6u);
}

}  // namespace
}  // namespace quern
