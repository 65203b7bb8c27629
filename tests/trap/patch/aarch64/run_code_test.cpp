// Generated code on the processor, against the thunks called one by one: every register, bit for bit.
//
// QUERN_PATCH_SEED starts the sequence of cases elsewhere, QUERN_PATCH_CASES gives their number a row.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "sve/trap/patch/inlined_thunk.h"
#include "sve/trap/patch/ordinary_instruction.h"
#include "tests/harness/comparison.h"
#include "tests/random_cases/case_choice.h"
#include "tests/random_cases/random_source.h"
#include "tests/random_cases/test_case.h"
#include "tests/support/host_controls.h"
#include "tests/trap/patch/aarch64/patched_place.h"

namespace quern {
namespace {

constexpr side_names sides{"patched", "thunks"};
constexpr std::size_t stack_bytes = 1 << 20;

thread_local thread_registers registers;

const std::vector<case_row>& rows() {
  static const std::vector<case_row> all = all_rows();
  return all;
}

bool is_stack_pointer(const operand& op, std::uint32_t word) {
  return op.kind == operand_kind::rsp && (word & op.mask) == op.mask;
}

// The stack pointer is that of a real stack: no access may go by it, and what is written to it must be near.
bool leaves_stack(const run_word& w) {
  const auto is_near = [&](const operand& op) { return op.kind != operand_kind::rsp || is_stack_pointer(op, w.word); };
  const auto& operands = w.row->operands;
  if (w.row->memory.touches_memory())
    return std::none_of(operands.begin(), operands.end(), [&](auto& op) { return is_stack_pointer(op, w.word); });
  return !use_of(w).sp_written || std::all_of(operands.begin(), operands.end(), is_near);
}

struct run_case {
  test_case c;
  std::vector<run_word> run;
};

run_word word_of(const case_row& row, std::uint32_t word) {
  return {word, row.row, row.row->thunk, written_by(*row.row), ordinary_instruction(word, *row.row)};
}

// A case of the row, followed by `further` words that touch no memory; false if its word can't be run here.
bool make_run_case(const case_row& row, std::uint64_t seed, std::size_t further, run_case& r) {
  make_case(row, seed, r.c);
  r.run = {word_of(row, r.c.word)};
  if (!leaves_stack(r.run[0])) return false;
  random_source random(seed ^ r.c.word);
  while (r.run.size() < 1 + further) {
    const case_row& other = rows()[random.below(rows().size())];
    if (other.row->memory.touches_memory()) continue;
    const run_word word = word_of(other, make_word(other, random));
    if (leaves_stack(word)) r.run.push_back(word);
  }
  return true;
}

class AgainstThunks : public testing::Test {
 protected:
  // What the thunks make of the case, word by word.
  void run_thunks(const run_case& r) {
    const host_controls controls(thunks_->state);
    unsigned char* pc = last_code().site;
    for (const run_word& w : r.run) {
      thunks_->state.pc = pc;
      w.row->thunk(&thunks_->state, w.word);
      pc += 4;
    }
  }

  // The processor has what a real one has; the emulator's part of what it has too is to be brought in.
  void run_code_of(const run_case& r) {
    registers.state = r.c.state;
    registers.known = 0;
    processor_->state = r.c.state;
    for (int n = 0; n != 32; ++n) {
      std::memcpy(processor_->v[n], r.c.state.z[n], 16);
      std::memset(registers.state.z[n], 0xA5, 16);
    }
    std::memset(registers.state.x, 0x5A, sizeof registers.state.x);
    registers.state.sp = registers.state.nzcv = registers.state.fpsr = registers.state.fpcr = 0x12345;
    run_patched(r.run, *processor_, registers);
  }

  // The whole register file as the application sees it.
  cpu_state& outcome() {
    cpu_state& seen = *seen_;
    seen = registers.state;
    const cpu_state& real = processor_->state;
    std::memcpy(seen.x, real.x, sizeof seen.x);
    seen.sp = real.sp;
    seen.nzcv = real.nzcv;
    seen.fpsr = real.fpsr;
    seen.fpcr = real.fpcr;
    for (int n = 0; n != 32; ++n) std::memcpy(seen.z[n], processor_->v[n], 16);
    return seen;
  }

  std::string judge(run_case& r) {
    const auto top = reinterpret_cast<std::uintptr_t>(stack_.get() + stack_bytes / 2) & ~std::uintptr_t{15};
    r.c.state.sp = top;
    r.c.state.nzcv &= 0xF0000000;
    // Bits that this processor's registers have not, and traps, which it may not have either.
    r.c.state.fpsr &= 0x0800009F;
    r.c.state.fpcr &= 0x07C80000;
    if (r.c.has_memory) std::memcpy(arena(), r.c.memory, arena_bytes);
    run_code_of(r);
    const auto memory = std::make_unique<unsigned char[]>(arena_bytes);
    std::memcpy(memory.get(), arena(), arena_bytes);
    thunks_->state = r.c.state;
    if (r.c.has_memory) std::memcpy(arena(), r.c.memory, arena_bytes);
    run_thunks(r);
    registers.state.pc = thunks_->state.pc;  // told to thunks alone
    std::vector<difference> found = compare_states(outcome(), thunks_->state, r.run[0].row->size, sides);
    if (r.c.has_memory) compare_memory(memory.get(), arena(), arena_bytes, sides, found);
    std::string text;
    for (const difference& d : found) text += "  " + d.text + "\n";
    for (std::size_t i = 0; !text.empty() && i != r.run.size(); ++i)
      text += describe(*r.run[i].row, r.run[i].word) + "\n";
    return text;
  }

  void judge_all(std::size_t further) {
    const auto r = std::make_unique<run_case>();
    const case_choice chosen = choose_cases("QUERN_PATCH", 1);
    std::size_t judged = 0;
    for (const case_row& row : rows()) {
      for (std::uint64_t seed = chosen.first; seed != chosen.first + chosen.count; ++seed) {
        if (!make_run_case(row, seed, further, *r)) continue;
        const std::string differences = judge(*r);
        ASSERT_TRUE(differences.empty()) << differences << "again by QUERN_PATCH_SEED=" << seed;
        EXPECT_EQ(registers.running, nullptr);
        ++judged;
      }
    }
    EXPECT_GT(judged, rows().size() * chosen.count * 9 / 10);
  }

 private:
  std::unique_ptr<unsigned char[]> stack_ = std::make_unique<unsigned char[]>(stack_bytes);
  std::unique_ptr<processor_registers> processor_ = std::make_unique<processor_registers>();
  std::unique_ptr<processor_registers> thunks_ = std::make_unique<processor_registers>();
  std::unique_ptr<cpu_state> seen_ = std::make_unique<cpu_state>();
};

// The cases above then show that no thunk writes more than was found.
TEST(WrittenByThunks, IsUnderstoodForMost) {
  struct counts {
    std::size_t all = 0, understood = 0;
  } direct, library;
  for (const case_row& row : rows()) {
    if (row.row->way == route::none) continue;
    counts& of_route = row.row->way == route::library ? library : direct;
    ++of_route.all;
    of_route.understood += written_by(*row.row) != all_registers;
  }
  EXPECT_GT(direct.all, 800u);
  EXPECT_GT(direct.understood, direct.all * 9 / 10);
  EXPECT_GT(library.all, 600u);
  EXPECT_GT(library.understood, library.all * 17 / 20);
}

TEST(InlinedThunks, AreThoseOfNearlyAllDirectRows) {
  constexpr std::uint32_t usable = 0x4003FFFF;
  const auto thunk = std::make_unique<inlined_thunk>();
  random_source random(24);
  std::size_t direct = 0, inlined = 0, whole = 0;
  for (const case_row& row : rows()) {
    if (row.row->handler.empty()) continue;
    ++direct;
    if (!thunk->make(row.row->under_host_fpsr, make_word(row, random), {usable})) continue;
    ++inlined;
    constexpr aarch64::word jump = 0xD61F0000;
    const std::span<const aarch64::word> hot = thunk->hot().code();
    whole += hot.size() < 3 || (hot[hot.size() - 3] & 0xFFFFFC1F) != jump;
  }
  EXPECT_GT(inlined, direct * 98 / 100);
  EXPECT_GT(whole, direct * 45 / 100) << "without a jump into the thunk at their end";
}

// MOV of a predicate is nothing but copied instructions, though its routine has more; of FMLA one way is copied.
TEST(InlinedThunks, SaveWhatTheirOwnCodeWrites) {
  alignas(64) static unsigned char room[max_run_code_bytes];
  const auto vectors_of = [](std::uint32_t word) {
    const decode_row* const row = decode_word(word).row;
    const run_word w{word, row, row->thunk, written_by(*row), 0};
    make_run_code({&w, 1}, room, 0, room, room);
    const std::uint32_t saved = reinterpret_cast<const run_code*>(room)->v;
    EXPECT_EQ(saved & ~w.written.v, 0u) << word;
    return std::pair(std::popcount(saved), std::popcount(w.written.v & ~use_of(w).z));
  };
  constexpr std::uint32_t mov_p0_p3 = 0x25834C60, fmla_z3_z1_z4 = 0x65A40423;
  const auto [of_move, by_its_thunk] = vectors_of(mov_p0_p3);
  EXPECT_GT(of_move, 0);
  EXPECT_LT(of_move, by_its_thunk);
  const auto [of_sum, by_all_ways] = vectors_of(fmla_z3_z1_z4);
  EXPECT_EQ(of_sum, by_all_ways);
}

// A run of one word saves few registers, and so has few for its code.
TEST(InlinedThunks, StandInRunsOfOneWordToo) {
  alignas(64) static unsigned char room[max_run_code_bytes];
  const auto code_of = [](const run_word& w) {
    make_run_code({&w, 1}, room, 0, room, room);
    const auto& code = *reinterpret_cast<const run_code*>(room);
    return std::span(reinterpret_cast<const aarch64::word*>(code.at(code.entry)),
                     reinterpret_cast<const aarch64::word*>(code.at(code.last)));
  };
  random_source random(25);
  std::size_t direct = 0, called = 0;
  for (const case_row& row : rows()) {
    const run_word w = word_of(row, make_word(row, random));
    if (row.row->handler.empty() || w.written == all_registers) continue;
    ++direct;
    called += std::ranges::count(code_of(w), aarch64::blr(aarch64::x2)) != 0;
  }
  EXPECT_GT(direct, 700u);
  EXPECT_LT(called, direct / 50);
}

// Of words whose code would be nothing but copied instructions, those find no room that come last. They are called, and
// registers saved that the others don't write.
TEST_F(AgainstThunks, WordsThatFindNoRoomForTheirCopies) {
  if (VL_BYTES < 256) GTEST_SKIP() << "a run's room is enough for all copies";
  const auto r = std::make_unique<run_case>();
  const auto row = std::ranges::find_if(rows(), [](const case_row& c) { return c.row->handler == "sve_add_zpz"; });
  ASSERT_NE(row, rows().end());
  ASSERT_TRUE(make_run_case(*row, 1, 0, *r));
  r->run.resize(max_run, r->run[0]);
  EXPECT_EQ(judge(*r), "");
  const auto calls_in = [](std::size_t i) {
    const run_code& code = last_code();
    const std::span words(
        reinterpret_cast<const aarch64::word*>(code.at(code.literals[i].start)),
        reinterpret_cast<const aarch64::word*>(code.at(i + 1 == max_run ? code.way_out : code.literals[i + 1].start)));
    return std::ranges::count(words, aarch64::blr(aarch64::x2));
  };
  EXPECT_EQ(calls_in(0), 0);
  EXPECT_EQ(calls_in(max_run - 1), 1);
}

TEST_F(AgainstThunks, EachWordAlone) { judge_all(0); }
TEST_F(AgainstThunks, RunsOfThreeWords) { judge_all(2); }
TEST_F(AgainstThunks, RunsOfTheMostWords) { judge_all(max_run - 1); }

}  // namespace
}  // namespace quern
