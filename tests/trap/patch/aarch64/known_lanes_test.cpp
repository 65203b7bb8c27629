// What generated code remembers of predicates, against the thunks called one by one: each run looks at a predicate's
// lanes, changes the predicate, and looks again.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "sve/state/lane_marks.h"
#include "sve/trap/patch/known_lanes.h"
#include "sve/trap/patch/plain_instruction.h"
#include "tests/random_cases/random_source.h"
#include "tests/trap/patch/aarch64/patched_place.h"

namespace quern {
namespace {

thread_local thread_registers registers;

constexpr std::size_t stack_bytes = 1 << 16, memory_bytes = 64 * VL_BYTES;

run_word word_of(std::uint32_t word) {
  const decode_row* const row = decode_word(word).row;
  return {word, row, row ? row->thunk : nullptr, row ? written_by(*row) : written_registers{}, 0};
}

// X0 points to memory of small numbers, X1 counts up from 0, X2 and X3 are less and more than the lanes of any vector;
// P1 and P2 have some lanes; FFR has all but the last.
class KnownLanes : public testing::Test {
 protected:
  struct side {
    processor_registers processor;
    alignas(64) unsigned char memory[memory_bytes];
  };

  void begin() {
    random_source random(31);
    side& a = *patched_;
    std::memset(&a, 0, sizeof a);
    for (unsigned char& byte : a.memory) byte = static_cast<unsigned char>(random.below(100));
    cpu_state& state = a.processor.state;
    for (std::uint64_t& x : state.x) x = random.next();
    for (auto& z : state.z)
      for (unsigned char& byte : z) byte = static_cast<unsigned char>(random.below(50));
    for (auto& p : state.p)
      for (unsigned char& byte : p) byte = random.one_in(2);
    state.x[1] = 0;
    state.x[2] = 5;
    state.x[3] = 2 * VL_BYTES + 5;
    std::memset(state.ffr, 1, VL_BYTES - 8);
    *called_ = *patched_;
    for (side* const s : {&*patched_, &*called_}) {
      s->processor.state.x[0] = reinterpret_cast<std::uintptr_t>(s->memory);
      s->processor.state.sp = (reinterpret_cast<std::uintptr_t>(stack_.get()) + stack_bytes / 2) & ~std::uintptr_t{15};
    }
  }

  // As runs of so many words, one after the other.
  void run_code(const std::vector<std::uint32_t>& words, std::size_t at_once) {
    std::vector<run_word> run;
    for (const std::uint32_t word : words) run.push_back(word_of(word));
    processor_registers& processor = patched_->processor;
    registers.state = processor.state;
    registers.known = 0;
    for (int n = 0; n != 32; ++n) std::memcpy(processor.v[n], processor.state.z[n], 16);
    for (std::size_t i = 0; i < run.size(); i += at_once)
      run_patched(std::span(run).subspan(i, std::min(at_once, run.size() - i)), processor, registers);
    for (int n = 0; n != 32; ++n) std::memcpy(registers.state.z[n], processor.v[n], 16);
  }

  // A loop goes back to its first word while the flags say so: Z clear.
  void call_thunks(const std::vector<std::uint32_t>& words) {
    cpu_state& state = called_->processor.state;
    for (std::size_t i = 0; i != words.size(); ++i) {
      if (const auto branch = plain_branch_of(words[i])) {
        if (!(state.nzcv >> 30 & 1)) i -= static_cast<std::size_t>(-branch->distance) / sizeof(std::uint32_t) + 1;
      } else {
        decode_word(words[i]).row->thunk(&state, words[i]);
      }
    }
  }

  void expect_same(const std::string& what) const {
    const cpu_state &a = registers.state, &b = called_->processor.state;
    for (int n = 0; n != 32; ++n) EXPECT_EQ(std::memcmp(a.z[n], b.z[n], VL_BYTES), 0) << "z" << n << what;
    for (int n = 0; n != 16; ++n) EXPECT_EQ(std::memcmp(a.p[n], b.p[n], VL_BYTES), 0) << "p" << n << what;
    for (int n = 1; n != 31; ++n) EXPECT_EQ(patched_->processor.state.x[n], b.x[n]) << "x" << n << what;
    EXPECT_EQ(patched_->processor.state.nzcv, b.nzcv) << what;
    EXPECT_EQ(std::memcmp(patched_->memory, called_->memory, memory_bytes), 0) << "memory" << what;
  }

  // As one run; and without a loop as runs of one word too, which hand on what is known.
  void judge(const std::vector<std::uint32_t>& words, const std::string& what) {
    begin();
    run_code(words, words.size());
    call_thunks(words);
    expect_same(", " + what);
    if (plain_branch_of(words.back())) return;
    begin();
    run_code(words, 1);
    call_thunks(words);
    expect_same(", " + what + ", word by word");
  }

  std::unique_ptr<unsigned char[]> stack_ = std::make_unique<unsigned char[]>(stack_bytes);
  std::unique_ptr<side> patched_ = std::make_unique<side>(), called_ = std::make_unique<side>();
};

// For predicate p, on vectors of their own for each: loads by the lanes of 1 byte, 2, 4 and 8, and additions.
constexpr std::uint32_t governed_by(std::uint32_t word, std::uint32_t p) { return word | p << 10; }
constexpr std::uint32_t ptrue_b = 0x2518E3E0, ptrue_h = 0x2558E3E0, ptrue_s = 0x2598E3E0, ptrue_d = 0x25D8E3E0;
constexpr std::uint32_t ld1b_z1 = 0xA400A001, ld1b_z1_h = 0xA420A001, ld1h_z2 = 0xA4A0A002, ld1w_z3 = 0xA540A003,
                        ld1d_z4 = 0xA5E0A004;
constexpr std::uint32_t st1b_z1_next = 0xE401E001;

struct change {
  const char* text;
  std::uint32_t word;
};
constexpr change changes_of_p0[] = {
    {"whilelo p0.b, x1, x2", 0x25221C20},
    {"whilelt p0.s, x1, x3: all, of another size", 0x25A31420},
    {"whilels p0.b, x1, x2", 0x25221C30},
    {"ptrue p0.b, vl3", 0x2518E060},
    {"ptrue p0.h", ptrue_h},
    {"ptrue p0.s", ptrue_s},
    {"ptrue p0.d", ptrue_d},
    {"pfalse p0.b", 0x2518E400},
    {"brkb p0.b, p1/z, p2.b", 0x25904440},
    {"ldr p0, [x0, #6, mul vl]", 0x85801800},
    {"rdffr p0.b", 0x2519F000},
    {"rdffr p0.b, p1/z", 0x2518F020},
    {"mov p0.b, p2.b", 0x25824840},
    {"pnext p0.b, p1, p0.b", 0x2519C420},
    {"pfirst p0.b, p1, p0.b", 0x2558C020},
    {"cmpeq p0.b, p0/z, z1.b, z5.b", 0x2405A020},
    {"fcmeq p0.s, p0/z, z3.s, z6.s", 0x65866060},
    {"punpklo p0.h, p0.b", 0x05304000},
    {"rev p0.b, p2.b", 0x05344040},
    {"zip1 p0.b, p0.b, p2.b", 0x05224000},
};

constexpr std::uint32_t str_p1 = 0xE5801801;  // str p1, [x0, #6, mul vl]: what ldr p0 finds there
constexpr std::uint32_t branch_if_not_zero(int words) { return aarch64::with_distance(0x54000001, 4 * words); }

TEST_F(KnownLanes, AreForgottenWhenThePredicateChanges) {
  for (const change& c : changes_of_p0)
    judge({ptrue_b, ld1b_z1, str_p1, c.word, ld1h_z2, ld1b_z1, ld1w_z3, ld1d_z4, st1b_z1_next}, c.text);
}

TEST_F(KnownLanes, AreHandedFromRunToRun) {
  if (!has_lane_marks) GTEST_SKIP() << "code for so short vectors remembers nothing";
  const auto is_known = [](std::uint32_t size) {
    return (registers.known >> known_lanes::active_bit(0, size) & 1) != 0;
  };
  begin();
  run_code({0x2598E3E0, ld1w_z3}, 1);  // ptrue p0.s
  EXPECT_TRUE(is_known(2) && is_known(3) && !is_known(0) && !is_known(1));
  const std::uint64_t known = registers.known;
  constexpr std::uint32_t add_z1 = 0x04210021, pfalse = 0x2518E400;
  run_patched(std::array{word_of(add_z1)}, patched_->processor, registers);
  EXPECT_EQ(registers.known, known) << "by a run without predicates";
  run_patched(std::array{word_of(pfalse)}, patched_->processor, registers);
  EXPECT_EQ(registers.known & 0xF, 0u);
}

TEST_F(KnownLanes, TellOfInactiveOnesToo) {
  if (!has_lane_marks) GTEST_SKIP() << "code for so short vectors remembers nothing";
  constexpr std::uint32_t ptrue_s_vl2 = 0x2598E040, mov_p5_p0 = 0x25804005, pfalse = 0x2518E400;
  const auto is_partial = [](std::uint32_t p) { return (registers.known >> known_lanes::partial_bit(p) & 1) != 0; };
  begin();
  run_code({ptrue_s_vl2, ld1w_z3}, 1);
  EXPECT_TRUE(is_partial(0));
  run_patched(std::array{word_of(mov_p5_p0)}, patched_->processor, registers);
  EXPECT_TRUE(is_partial(5) && is_partial(0));
  for (const std::uint32_t word : {ptrue_d, pfalse}) {
    run_patched(std::array{word_of(word)}, patched_->processor, registers);
    EXPECT_FALSE(is_partial(0)) << word;
    EXPECT_TRUE(is_partial(5)) << word;
    run_patched(std::array{word_of(ld1w_z3)}, patched_->processor, registers);
    EXPECT_EQ(is_partial(0), word == pfalse) << "all of the widest lanes are active, or none";
  }
}

TEST_F(KnownLanes, AreForgottenInALoopThatChangesThePredicateBehindTheLook) {
  // As many passes as P1 has lanes set.
  constexpr std::uint32_t pfalse_p7 = 0x2518E407, pnext_p7 = 0x2519C427, ptest_p7 = 0x2550DCE0, add_z1 = 0x04210021;
  for (const change& c : changes_of_p0)
    judge({pfalse_p7, str_p1, ptrue_b, ld1b_z1, ld1h_z2, ld1w_z3, st1b_z1_next, c.word, ld1d_z4, add_z1, pnext_p7,
           ptest_p7, branch_if_not_zero(-9)},
          c.text);
}

TEST_F(KnownLanes, AreThoseOfTheSizeThatIsAsked) {
  constexpr std::uint32_t fills[] = {ptrue_b, ptrue_h, ptrue_s, ptrue_d};
  constexpr std::uint32_t loads[] = {ld1b_z1, ld1h_z2, ld1w_z3, ld1d_z4};
  for (std::uint32_t p = 0; p != known_lanes::predicates; ++p) {
    for (const std::uint32_t first : fills) {
      for (const std::uint32_t second : fills) {
        for (const std::uint32_t load : loads) {
          judge({first | p, governed_by(loads[3], p), second | p, governed_by(load, p), governed_by(loads[0], p),
                 second | p, governed_by(st1b_z1_next, p)},
                "p" + std::to_string(p) + ", " + std::to_string(first) + ", " + std::to_string(second));
        }
      }
    }
  }
}

TEST_F(KnownLanes, AreNotThoseOfTheNextPredicate) {
  constexpr std::uint32_t fills[] = {ptrue_b, ptrue_h, ptrue_s, ptrue_d};
  constexpr std::uint32_t loads[] = {ld1b_z1, ld1h_z2, ld1w_z3, ld1d_z4};
  for (std::uint32_t size = 0; size != known_lanes::sizes; ++size)
    for (std::uint32_t p = 0; p != known_lanes::predicates - 1; ++p)
      judge({fills[size] | p, governed_by(loads[size], p), governed_by(loads[0], p + 1), governed_by(loads[1], p + 1)},
            "p" + std::to_string(p) + ", size " + std::to_string(size));
}

TEST_F(KnownLanes, MoveWithThePredicate) {
  constexpr std::uint32_t mov_p0_p0 = 0x25804000, fills[] = {ptrue_b, ptrue_h, ptrue_s, ptrue_d};
  for (std::uint32_t n = 0; n != 16; n += n == 7 ? 5 : 1) {
    for (std::uint32_t d = 0; d != known_lanes::predicates; ++d) {
      for (std::uint32_t i = 0; i != known_lanes::sizes; ++i) {
        const std::uint32_t mov = mov_p0_p0 | n << 16 | n << 10 | n << 5 | d;
        judge(
            {fills[i] | n, ptrue_b | d, governed_by(ld1b_z1, d), mov, governed_by(ld1h_z2, d), governed_by(ld1w_z3, d),
             governed_by(ld1d_z4, d), governed_by(ld1b_z1, d), governed_by(st1b_z1_next, d), fills[i] | d, ptrue_h | d},
            "p" + std::to_string(n) + " to p" + std::to_string(d) + ", size " + std::to_string(i));
      }
    }
  }
}

TEST_F(KnownLanes, AreForgottenByThunksThatAreCalled) {
  // The code of so many loads leaves no room for the last thunks.
  constexpr std::uint32_t pfalse_p7 = 0x2518E407, pnext_p7 = 0x2519C427, ptest_p7 = 0x2550DCE0;
  for (const change& c : changes_of_p0) {
    std::vector<std::uint32_t> words = {pfalse_p7, str_p1, ptrue_b, ld1h_z2};
    words.insert(words.end(), max_run - 8, ld1b_z1_h);
    words.insert(words.end(), {c.word, pnext_p7, ptest_p7, branch_if_not_zero(-28)});
    judge(words, c.text);
  }
}

TEST_F(KnownLanes, EndWithTheLastPassOfALoop) {
  constexpr std::uint32_t whilelo = 0x25231C20, incb = 0x0430E3E1;  // p0.b, x1, x3; x1
  judge({whilelo, ld1b_z1, st1b_z1_next, incb, whilelo, branch_if_not_zero(-4)}, "bytes");
}

}  // namespace
}  // namespace quern
