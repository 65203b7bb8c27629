#include "sve/handlers/integer/integer_compare.h"

#include "tests/harness/agreement.h"

namespace quern {
namespace {

// Whether a comparison holds for the elements n and m of a size.
using relation = bool (*)(std::uint64_t n, std::uint64_t m, std::uint32_t size);

constexpr relation equal = [](std::uint64_t n, std::uint64_t m, std::uint32_t) { return n == m; };
constexpr relation unequal = [](std::uint64_t n, std::uint64_t m, std::uint32_t) { return n != m; };
constexpr relation at_least = [](std::uint64_t n, std::uint64_t m, std::uint32_t size) {
  return signed_value(element_width(size), n) >= signed_value(element_width(size), m);
};
constexpr relation greater = [](std::uint64_t n, std::uint64_t m, std::uint32_t size) {
  return signed_value(element_width(size), n) > signed_value(element_width(size), m);
};
constexpr relation less = [](std::uint64_t n, std::uint64_t m, std::uint32_t size) { return greater(m, n, size); };
constexpr relation at_most = [](std::uint64_t n, std::uint64_t m, std::uint32_t size) { return at_least(m, n, size); };
constexpr relation same_or_higher = [](std::uint64_t n, std::uint64_t m, std::uint32_t) { return n >= m; };
constexpr relation higher = [](std::uint64_t n, std::uint64_t m, std::uint32_t) { return n > m; };
constexpr relation lower = [](std::uint64_t n, std::uint64_t m, std::uint32_t) { return n < m; };

void define_compare(cpu_state& s, std::uint32_t size, registers r, relation holds, const elements& m) {
  const flags_of active = read_flags(s.p[r.g], size);
  const elements n = read_elements(s.z[r.n], size);
  flags_of result(n.size());
  for (std::size_t i = 0; i != n.size(); ++i) result[i] = active[i] && holds(n[i], m[i], size);
  define_flags(s, active, result);
  write_flags(s.p[r.d], size, result);
}

TEST(IntegerCompare, OfVectorsAgreesWithItsRelation) {
  struct {
    const char* name;
    handler_ppzz& handler;
    relation holds;
  } const cases[] = {
      {"cmpeq", sve_cmpeq_ppzz, equal},          {"cmpne", sve_cmpne_ppzz, unequal},
      {"cmpge", sve_cmpge_ppzz, at_least},       {"cmpgt", sve_cmpgt_ppzz, greater},
      {"cmphs", sve_cmphs_ppzz, same_or_higher}, {"cmphi", sve_cmphi_ppzz, higher},
  };
  for (const auto& c : cases)
    expect_agreement(
        c.name,
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return c.handler(s, p_reg(r.d, size), p_reg(r.g, p_zeroing), z_reg(r.n, size), z_reg(r.m, size));
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          define_compare(s, size, r, c.holds, read_elements(s.z[r.m], size));
        });
}

TEST(IntegerCompare, WithASignedImmediateAgreesWithItsRelation) {
  struct {
    const char* name;
    handler_ppzi_signed& handler;
    relation holds;
  } const cases[] = {
      {"cmpeq", sve_cmpeq_ppzi, equal}, {"cmpne", sve_cmpne_ppzi, unequal}, {"cmpgt", sve_cmpgt_ppzi, greater},
      {"cmplt", sve_cmplt_ppzi, less},  {"cmple", sve_cmple_ppzi, at_most},
  };
  for (const auto& c : cases)
    for (const int imm : {-16, -1, 0, 1, 15})
      expect_agreement(
          c.name,
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return c.handler(s, p_reg(r.d, size), p_reg(r.g, p_zeroing), z_reg(r.n, size), imm);
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            const std::uint64_t element = low_bits(element_width(size), static_cast<std::uint64_t>(std::int64_t{imm}));
            define_compare(s, size, r, c.holds, elements(count_of(size), element));
          });
}

TEST(IntegerCompare, WithAnUnsignedImmediateAgreesWithItsRelation) {
  struct {
    const char* name;
    handler_ppzi& handler;
    relation holds;
  } const cases[] = {{"cmphi", sve_cmphi_ppzi, higher}, {"cmplo", sve_cmplo_ppzi, lower}};
  for (const auto& c : cases)
    for (const unsigned imm : {0u, 1u, 64u, 127u})
      expect_agreement(
          c.name,
          [&](cpu_state* s, std::uint32_t size, registers r) {
            return c.handler(s, p_reg(r.d, size), p_reg(r.g, p_zeroing), z_reg(r.n, size), imm);
          },
          [&](cpu_state& s, std::uint32_t size, registers r) {
            define_compare(s, size, r, c.holds, elements(count_of(size), imm));
          });
}

TEST(IntegerCompare, TakesFlagsUnderTheOldPredicateWhereTheResultReplacesIt) {
  cpu_state s{};
  s.p[0][1] = s.p[0][VL_BYTES - 1] = 1;  // active: elements 1 and the last
  s.z[1][1] = 7;                         // of which only the last compares equal to 0
  sve_cmpeq_ppzi(&s, p_reg(0, size_b), p_reg(0, p_zeroing), z_reg(1, size_b), 0);
  EXPECT_EQ(s.nzcv, 0u);  // under the result alone, N would be set
  EXPECT_EQ(s.p[0][1], 0);
  EXPECT_EQ(s.p[0][VL_BYTES - 1], 1);
}

}  // namespace
}  // namespace quern
