#include "sve/handlers/permute/interleave.h"

#include "tests/harness/agreement.h"

namespace quern {
namespace {

// The elements of a result from those of two sources.
using permutation = elements (*)(const elements& n, const elements& m);

constexpr permutation zip1 = [](const elements& n, const elements& m) {
  elements d(n.size());
  for (std::size_t i = 0; i != d.size(); ++i) d[i] = (i % 2 == 0 ? n : m)[i / 2];
  return d;
};
constexpr permutation zip2 = [](const elements& n, const elements& m) {
  elements d(n.size());
  for (std::size_t i = 0; i != d.size(); ++i) d[i] = (i % 2 == 0 ? n : m)[d.size() / 2 + i / 2];
  return d;
};
// Every other element of n and m one after the other.
elements unzip(const elements& n, const elements& m, std::size_t from) {
  elements both = n, d;
  both.insert(both.end(), m.begin(), m.end());
  for (std::size_t i = from; i < both.size(); i += 2) d.push_back(both[i]);
  return d;
}
constexpr permutation uzp1 = [](const elements& n, const elements& m) { return unzip(n, m, 0); };
constexpr permutation uzp2 = [](const elements& n, const elements& m) { return unzip(n, m, 1); };
constexpr permutation trn1 = [](const elements& n, const elements& m) {
  elements d(n.size());
  for (std::size_t i = 0; i != d.size(); ++i) d[i] = i % 2 == 0 ? n[i] : m[i - 1];
  return d;
};
constexpr permutation trn2 = [](const elements& n, const elements& m) {
  elements d(n.size());
  for (std::size_t i = 0; i != d.size(); ++i) d[i] = i % 2 == 0 ? n[i + 1] : m[i];
  return d;
};

TEST(Interleave, OfVectorsAgreesWithItsPermutation) {
  struct {
    const char* name;
    handler_zzz& handler;
    permutation permute;
  } const cases[] = {{"zip1", sve_zip1_zzz, zip1}, {"zip2", sve_zip2_zzz, zip2}, {"uzp1", sve_uzp1_zzz, uzp1},
                     {"uzp2", sve_uzp2_zzz, uzp2}, {"trn1", sve_trn1_zzz, trn1}, {"trn2", sve_trn2_zzz, trn2}};
  for (const auto& c : cases)
    expect_agreement(
        c.name,
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return c.handler(s, z_reg(r.d, size), z_reg(r.n, size), z_reg(r.m, size));
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          write_elements(s.z[r.d], size, c.permute(read_elements(s.z[r.n], size), read_elements(s.z[r.m], size)));
        });
}

TEST(Interleave, OfPredicatesMovesWholeElements) {
  struct {
    const char* name;
    handler_ppp& handler;
    permutation permute;
    bool cut_to_bit_0;
  } const cases[] = {{"zip1", sve_zip1_ppp, zip1, false},
                     {"zip2", sve_zip2_ppp, zip2, false},
                     {"uzp1", sve_uzp1_ppp, uzp1, false},
                     {"trn1", sve_trn1_ppp, trn1, true}};
  for (const auto& c : cases)
    expect_agreement(
        c.name,
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return c.handler(s, p_reg(r.d, size), p_reg(r.n, size), p_reg(r.m, size));
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          elements d = c.permute(read_elements(s.p[r.n], size), read_elements(s.p[r.m], size));
          if (c.cut_to_bit_0)
            for (auto& element : d) element %= 2;
          write_elements(s.p[r.d], size, d);
        });
}

// The routines write a whole register elsewhere, and leave their sources alone.
TEST(Interleave, RoutinesWorkOnAnyBytes) {
  char a[VL_BYTES], b[VL_BYTES], d[VL_BYTES];
  for (int i = 0; i != VL_BYTES; ++i) {
    a[i] = static_cast<char>(i);
    b[i] = static_cast<char>(i + 100);
  }
  const std::string a_before(a, VL_BYTES), b_before(b, VL_BYTES);
  const auto bytes = [](char* p) { return reinterpret_cast<const unsigned char*>(p); };
  struct {
    void (*routine)(char*, char*, char*, element_size);
    permutation permute;
  } const cases[] = {{sve_zip1, zip1}, {sve_zip2, zip2}, {sve_uzp1, uzp1}};
  for (const auto& c : cases)
    for (const element_size size : {ELEMENT_B, ELEMENT_H, ELEMENT_S, ELEMENT_D}) {
      c.routine(d, a, b, size);
      EXPECT_EQ(read_elements(bytes(d), size), c.permute(read_elements(bytes(a), size), read_elements(bytes(b), size)));
    }
  EXPECT_EQ(std::string(a, VL_BYTES), a_before);
  EXPECT_EQ(std::string(b, VL_BYTES), b_before);
}

// ZIP1 of doubleword predicates: what matters afterwards stands in bytes 0, 8, 16 and so on.
TEST(Interleave, OfDoublewordPredicatesSetsFirstBytesOnly) {
  cpu_state s{};
  for (int i = 0; i < VL_BYTES; i += 8) s.p[1][i] = 1;
  sve_zip1_ppp(&s, p_reg(0, size_d), p_reg(1, size_d), p_reg(2, size_d));
  for (int i = 0; i != VL_BYTES; ++i) EXPECT_EQ(s.p[0][i], i % 16 == 0) << i;
}

}  // namespace
}  // namespace quern
