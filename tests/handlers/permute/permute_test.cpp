#include "sve/handlers/permute/permute.h"

#include <algorithm>
#include <cstring>

#include "tests/harness/agreement.h"

namespace quern {
namespace {

TEST(Permute, TableLookupAgreesWithItsDefinition) {
  expect_agreement(
      "tbl",
      [](cpu_state* s, std::uint32_t size, registers r) {
        return sve_tbl_zzz(s, z_reg(r.d, size), z_reg(r.n, size), z_reg(r.m, size));
      },
      [](cpu_state& s, std::uint32_t size, registers r) {
        const elements table = read_elements(s.z[r.n], size), index = read_elements(s.z[r.m], size);
        elements d(table.size());
        for (std::size_t i = 0; i != d.size(); ++i) d[i] = index[i] < table.size() ? table[index[i]] : 0;
        write_elements(s.z[r.d], size, d);
      });
}

TEST(Permute, TableLookupOfEveryIndexAndTheFirstOneBeyond) {
  for (std::uint32_t size = size_b; size <= size_d; ++size) {
    cpu_state s{};
    elements table(count_of(size)), index(table.size());
    for (std::size_t i = 0; i != table.size(); ++i) {
      table[i] = i + 1;
      index[i] = (i + 1) % 256;  // bytes of the longest vector are in range whatever they hold
    }
    write_elements(s.z[1], size, table);
    write_elements(s.z[2], size, index);
    sve_tbl_zzz(&s, z_reg(0, size), z_reg(1, size), z_reg(2, size));
    elements expected = table;
    for (auto& element : expected) element = element < table.size() ? (element + 1) : 0;
    if (size == size_b && VL_BYTES == 256) {
      std::rotate(table.begin(), table.begin() + 1, table.end());
      expected = table;
    }
    for (auto& element : expected) element = low_bits(element_width(size), element);
    EXPECT_EQ(read_elements(s.z[0], size), expected) << "size " << size;
  }
}

TEST(Permute, ExtractTakesBytesFromBothRegisters) {
  for (unsigned imm = 0; imm < 256; imm += imm < 20 ? 1 : 47)
    expect_agreement(
        "ext",
        [&](cpu_state* s, std::uint32_t, registers r) {
          return sve_ext_zzi(s, z_both(r.d, size_b), z_reg(r.m, size_b), imm);
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          elements both = read_elements(s.z[r.d], size_b);
          const elements m = read_elements(s.z[r.m], size_b);
          both.insert(both.end(), m.begin(), m.end());
          const std::size_t from = imm < VL_BYTES ? imm : 0;
          write_elements(s.z[r.d], size_b, elements(both.begin() + from, both.begin() + from + VL_BYTES));
        });
}

TEST(Permute, ExtractAtTheLastByteKeepsOne) {
  cpu_state s{};
  std::memset(s.z[0], 5, VL_BYTES);
  s.z[0][VL_BYTES - 1] = 6;
  std::memset(s.z[1], 7, VL_BYTES);
  s.z[1][VL_BYTES - 1] = 8;
  sve_ext_zzi(&s, z_both(0, size_b), z_reg(1, size_b), VL_BYTES - 1);
  EXPECT_EQ(s.z[0][0], 6);
  for (int i = 1; i != VL_BYTES; ++i) EXPECT_EQ(s.z[0][i], 7) << i;
}

TEST(Permute, ExtractBeyondTheVectorKeepsIt) {
  for (const unsigned imm : {unsigned{VL_BYTES}, unsigned{VL_BYTES} + 1, 300u}) {
    cpu_state s{};
    std::memset(s.z[0], 5, VL_BYTES);
    sve_ext_zzi(&s, z_both(0, size_b), z_reg(1, size_b), imm);
    EXPECT_EQ(read_elements(s.z[0], size_b), elements(VL_BYTES, 5));
  }
}

TEST(Permute, ReverseTurnsTheOrderOfElements) {
  expect_agreement(
      "rev",
      [](cpu_state* s, std::uint32_t size, registers r) { return sve_rev_zz(s, z_reg(r.d, size), z_reg(r.n, size)); },
      [](cpu_state& s, std::uint32_t size, registers r) {
        elements all = read_elements(s.z[r.n], size);
        write_elements(s.z[r.d], size, {all.rbegin(), all.rend()});
      });
  expect_agreement(
      "rev (predicate)",
      [](cpu_state* s, std::uint32_t size, registers r) { return sve_rev_pp(s, p_reg(r.d, size), p_reg(r.n, size)); },
      [](cpu_state& s, std::uint32_t size, registers r) {
        elements all = read_elements(s.p[r.n], size);
        write_elements(s.p[r.d], size, {all.rbegin(), all.rend()});
      });
}

TEST(Permute, UnpackWidensAHalf) {
  struct {
    const char* name;
    handler_zz& handler;
    std::uint32_t narrow;
    bool high, is_signed;
  } const cases[] = {
      {"uunpklo_b2h", sve_uunpklo_b2h_zz, size_b, false, false},
      {"uunpkhi_b2h", sve_uunpkhi_b2h_zz, size_b, true, false},
      {"uunpklo_h2s", sve_uunpklo_h2s_zz, size_h, false, false},
      {"uunpkhi_h2s", sve_uunpkhi_h2s_zz, size_h, true, false},
      {"uunpklo_s2d", sve_uunpklo_s2d_zz, size_s, false, false},
      {"uunpkhi_s2d", sve_uunpkhi_s2d_zz, size_s, true, false},
      {"sunpklo_s2d", sve_sunpklo_s2d_zz, size_s, false, true},
      {"sunpkhi_s2d", sve_sunpkhi_s2d_zz, size_s, true, true},
  };
  for (const auto& c : cases)
    expect_agreement(
        c.name,
        [&](cpu_state* s, std::uint32_t, registers r) {
          return c.handler(s, z_reg(r.d, c.narrow + 1), z_reg(r.n, c.narrow));
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          const elements all = read_elements(s.z[r.n], c.narrow);
          elements d(all.size() / 2);
          for (std::size_t i = 0; i != d.size(); ++i) {
            d[i] = all[i + (c.high ? d.size() : 0)];
            if (c.is_signed) d[i] = static_cast<std::uint64_t>(signed_value(element_width(c.narrow), d[i]));
          }
          write_elements(s.z[r.d], c.narrow + 1, d);
        });
}

TEST(Permute, UnpackOfAPredicateWidensBit0) {
  for (const bool high : {false, true})
    expect_agreement(
        high ? "punpkhi" : "punpklo",
        [&](cpu_state* s, std::uint32_t, registers r) {
          return (high ? sve_punpkhi_pp : sve_punpklo_pp)(s, p_reg(r.d, size_h), p_reg(r.n, size_b));
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          const flags_of all = read_flags(s.p[r.n], size_b);
          const auto from = all.begin() + (high ? VL_BYTES / 2 : 0);
          write_flags(s.p[r.d], size_h, flags_of(from, from + VL_BYTES / 2));
        });
}

TEST(Permute, UnpackIntoItsSourceReadsAllOfItFirst) {
  cpu_state s{};
  for (int i = 0; i != VL_BYTES; ++i) s.z[0][i] = static_cast<unsigned char>(i);
  sve_uunpkhi_b2h_zz(&s, z_reg(0, size_h), z_reg(0, size_b));
  for (int i = 0; i != VL_BYTES / 2; ++i) {
    EXPECT_EQ(s.z[0][2 * i], VL_BYTES / 2 + i);
    EXPECT_EQ(s.z[0][2 * i + 1], 0);
  }
}

}  // namespace
}  // namespace quern
