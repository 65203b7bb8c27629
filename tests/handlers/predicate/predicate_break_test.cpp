#include "sve/handlers/predicate/predicate_break.h"

#include <cstring>

#include "tests/harness/agreement.h"

namespace quern {
namespace {

// BRKA and BRKB, byte by byte with a running state.
void define_break(cpu_state& s, registers r, bool after, bool zeroing) {
  const cpu_state old = s;
  bool running = true;
  for (int i = 0; i != VL_BYTES; ++i) {
    const bool active = old.p[r.g][i] % 2 == 1, breaks = old.p[r.n][i] % 2 == 1;
    const bool was_running = running;
    if (active && breaks) running = false;
    if (active)
      s.p[r.d][i] = after ? was_running : running;
    else if (zeroing)
      s.p[r.d][i] = 0;
  }
}

TEST(PredicateBreak, AfterAndBeforeAgreeWithTheRunningStateAndOnlyZeroingClearsInactiveLanes) {
  for (const std::uint32_t qualifier : every_qualifier)
    for (const bool after : {true, false})
      expect_agreement(
          after ? "brka" : "brkb",
          [&](cpu_state* s, std::uint32_t, registers r) {
            return (after ? sve_brka_ppp : sve_brkb_ppp)(s, p_reg(r.d, size_b), p_reg(r.g, qualifier),
                                                         p_reg(r.n, size_b));
          },
          [&](cpu_state& s, std::uint32_t, registers r) { define_break(s, r, after, qualifier == p_zeroing); });
}

// The whole byte of p[n] at the last active byte of p[g]; 0 when there is none.
int byte_at_last_active(const cpu_state& s, registers r) {
  int byte = 0;
  for (int i = 0; i != VL_BYTES; ++i)
    if (s.p[r.g][i] % 2 == 1) byte = s.p[r.n][i];
  return byte;
}

TEST(PredicateBreak, NextKeepsOrClearsItsDestination) {
  for (const bool sets_flags : {false, true})
    expect_agreement(
        "brkn",
        [&](cpu_state* s, std::uint32_t, registers r) {
          return (sets_flags ? sve_brkns_ppp : sve_brkn_ppp)(s, p_both(r.d, size_b), p_reg(r.g, p_zeroing),
                                                             p_reg(r.n, size_b));
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          if (byte_at_last_active(s, r) == 0) write_elements(s.p[r.d], size_b, elements(VL_BYTES, 0));
          if (sets_flags) define_flags(s, flags_of(VL_BYTES, true), read_flags(s.p[r.d], size_b));
        });
}

TEST(PredicateBreak, PreviousAgreesWithItsWalk) {
  for (const bool sets_flags : {false, true})
    expect_agreement(
        "brkpb",
        [&](cpu_state* s, std::uint32_t, registers r) {
          return (sets_flags ? sve_brkpbs_pppp : sve_brkpb_pppp)(s, p_reg(r.d, size_b), p_reg(r.g, p_zeroing),
                                                                 p_reg(r.n, size_b), p_reg(r.m, size_b));
        },
        [&](cpu_state& s, std::uint32_t, registers r) {
          const flags_of active = read_flags(s.p[r.g], size_b), breaks = read_flags(s.p[r.m], size_b);
          flags_of result(VL_BYTES, false);
          bool goes_on = byte_at_last_active(s, r) != 0;
          for (std::size_t i = 0; goes_on && i != result.size(); ++i) {
            if (active[i] && breaks[i]) goes_on = false;
            result[i] = active[i] && !breaks[i];
          }
          if (sets_flags) define_flags(s, active, result);
          write_flags(s.p[r.d], size_b, result);
        });
}

TEST(PredicateBreak, NextElementAgreesWithItsScans) {
  expect_agreement(
      "pnext",
      [](cpu_state* s, std::uint32_t size, registers r) {
        return sve_pnext_pp(s, p_both(r.d, size), p_reg(r.g, p_unqualified));
      },
      [](cpu_state& s, std::uint32_t size, registers r) {
        const flags_of old = read_flags(s.p[r.d], size), active = read_flags(s.p[r.g], size);
        std::size_t next = 0;
        for (std::size_t i = 0; i != old.size(); ++i)
          if (old[i]) next = i + 1;
        while (next != old.size() && !active[next]) ++next;
        flags_of result(old.size(), false);
        if (next != old.size()) result[next] = true;
        define_flags(s, active, result);
        write_flags(s.p[r.d], size, result);
      });
}

// A predicate given by the elements that are set.
using set_elements = std::vector<std::size_t>;

void set(cpu_state& s, std::uint32_t p, std::uint32_t size, const set_elements& elements) {
  flags_of all(count_of(size));
  for (const std::size_t i : elements) all[i] = true;
  write_flags(s.p[p], size, all);
}

set_elements set_in(const cpu_state& s, std::uint32_t p, std::uint32_t size) {
  const flags_of all = read_flags(s.p[p], size);
  set_elements list;
  for (std::size_t i = 0; i != all.size(); ++i)
    if (all[i]) list.push_back(i);
  return list;
}

constexpr std::uint64_t N = 1u << 31, Z = 1u << 30, C = 1u << 29;

TEST(PredicateBreak, NextElementStartsAfterTheLastSetOneActiveOrNot) {
  const struct {
    const char* name;
    set_elements pdn, pg, result;
    std::uint64_t flags;
  } cases[] = {
      {"none set: the first active one", {}, {1, 3}, {1}, N | C},
      {"the last set one is beyond all active ones", {6}, {1, 3}, {}, Z | C},
      {"the last set one is not active", {2}, {1, 3}, {3}, 0},
      {"the last set one is the last of all", {0, VL_BYTES / 2 - 1}, {0, 1}, {}, Z | C},
  };
  for (const auto& c : cases) {
    cpu_state s{};
    set(s, 0, size_h, c.pdn);
    set(s, 1, size_h, c.pg);
    sve_pnext_pp(&s, p_both(0, size_h), p_reg(1, p_unqualified));
    EXPECT_EQ(set_in(s, 0, size_h), c.result) << c.name;
    EXPECT_EQ(s.nzcv, c.flags) << c.name;
  }
}

TEST(PredicateBreak, OnTheFirstActiveElementLeavesNothingBeforeAndOneAfter) {
  cpu_state s{};
  set(s, 1, size_b, {2, 3, 4});
  set(s, 2, size_b, {2, 4});
  sve_brkb_ppp(&s, p_reg(0, size_b), p_reg(1, p_zeroing), p_reg(2, size_b));
  EXPECT_EQ(set_in(s, 0, size_b), set_elements{});
  sve_brka_ppp(&s, p_reg(0, size_b), p_reg(1, p_zeroing), p_reg(2, size_b));
  EXPECT_EQ(set_in(s, 0, size_b), set_elements{2});
}

TEST(PredicateBreak, NextUnderAnAllFalsePredicateClearsAndSetsZeroAndCarry) {
  cpu_state s{};
  std::memset(s.p[0], 1, VL_BYTES);
  std::memset(s.p[2], 1, VL_BYTES);
  sve_brkns_ppp(&s, p_both(0, size_b), p_reg(1, p_zeroing), p_reg(2, size_b));
  EXPECT_EQ(set_in(s, 0, size_b), set_elements{});
  EXPECT_EQ(s.nzcv, Z | C);
}

// A byte of 2 is not set as an element, but it is not zero.
TEST(PredicateBreak, PropagationTestsTheWholeByte) {
  cpu_state s{};
  set(s, 0, size_b, {5});
  set(s, 1, size_b, {1});
  s.p[2][1] = 2;
  sve_brkn_ppp(&s, p_both(0, size_b), p_reg(1, p_zeroing), p_reg(2, size_b));
  EXPECT_EQ(set_in(s, 0, size_b), set_elements{5});
  sve_brkpb_pppp(&s, p_reg(0, size_b), p_reg(1, p_zeroing), p_reg(2, size_b), p_reg(3, size_b));
  EXPECT_EQ(set_in(s, 0, size_b), set_elements{1});
}

}  // namespace
}  // namespace quern
