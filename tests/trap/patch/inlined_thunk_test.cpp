// Thunks of a few instructions, made anew for a word.
#include "sve/trap/patch/inlined_thunk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "sve/memory/current_access.h"
#include "sve/trap/patch/written_registers.h"

namespace quern {
namespace {

using aarch64::word;
using words = std::vector<word>;

constexpr std::uint32_t emulated = 0x04250083, usable = 0x4003FFFF;
constexpr std::uint64_t place = 0x123456789C;
constexpr word ret = 0xD65F03C0, udf = 0;

class InlinedThunk : public testing::Test {
 protected:
  bool make(const words& thunk, inlined_thunk::given what = {usable}) {
    what.pc = reinterpret_cast<const unsigned char*>(place);
    code_ = thunk;
    return thunk_->make(reinterpret_cast<sve_handler>(code_.data()), emulated, what);
  }
  words hot() const { return {thunk_->hot().code().begin(), thunk_->hot().code().end()}; }
  words cold() const { return {thunk_->cold().code().begin(), thunk_->cold().code().end()}; }
  // The last words of a way out to the thunk's instruction of that number: the emulated word's place is told, then the
  // jump, and both addresses.
  words jump_to(std::size_t instruction, word n) const {
    const auto address = reinterpret_cast<std::uint64_t>(code_.data() + instruction);
    const word to_state = aarch64::str_x({n}, aarch64::x19, offsetof(cpu_state, pc));
    return {0x58000080 | n,
            to_state,
            0x58000080 | n,
            0xD61F0000 | n << 5,
            static_cast<word>(place),
            place >> 32,
            static_cast<word>(address),
            static_cast<word>(address >> 32)};
  }
  static words joined(words first, const words& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
  }

  words code_;
  std::unique_ptr<inlined_thunk> thunk_ = std::make_unique<inlined_thunk>();
};

TEST_F(InlinedThunk, HasOperandsFromTheWord) {
  // ubfx x3, x1, #5, #5; ubfiz x3, x3, #8, #32; add x0, x0, #320; add x1, x0, x3; ldp q0, q1, [x1]; add v0.4s, v0.4s,
  // v1.4s; str q0, [x1, #16]; mov w0, #0
  ASSERT_TRUE(
      make({0xD3452423, 0xD3787C63, 0x91050000, 0x8B030001, 0xAD400420, 0x4EA18400, 0x3D800420, 0x52800000, ret}));
  // ldp q0, q1, [x1] from z4, which pairs don't reach; str q0, [x19, #1360]
  EXPECT_EQ(hot(), (words{0x91150261, 0xAD400420, 0x4EA18400, 0x3D815660}));
  EXPECT_TRUE(cold().empty());
}

TEST_F(InlinedThunk, ReachesPairsByAnAddressThatARegisterHas) {
  // add x1, x0, #3072; ldp q0, q1, [x1], #32; stp q0, q1, [x1]; add x1, x1, #32; str q0, [x1], #16; add x1, x1, #16;
  // stp q0, q1, [x1, #-16]!
  ASSERT_TRUE(make({0x91300001, 0xACC10420, 0xAD000420, 0x91008021, 0x3C810420, 0x91004021, 0xADBF8420, ret}));
  // add x1, x19, #3072, once; ldp q0, q1, [x1]; stp q0, q1, [x1, #32]; str q0, [x19, #3136]; stp q0, q1, [x1, #80]
  EXPECT_EQ(hot(), (words{0x91300261, 0xAD400420, 0xAD010420, 0x3D831260, 0xAD028420}));
}

TEST_F(InlinedThunk, TakesBranchesThatFollowFromTheWord) {
  // cmp w1, w1; b.ne udf; cbz w1, udf; tbz w1, #7, udf; b over; udf; mrs x2, tpidr_el0
  ASSERT_TRUE(make({0x6B01003F, 0x540000A1, 0x34000081, 0x36380061, 0x14000002, udf, 0xD53BD042, ret}));
  EXPECT_EQ(hot(), words{0xD53BD042});
}

TEST_F(InlinedThunk, GoesOnInTheThunkWhereABranchIsNotKnown) {
  // ldr x2, [x0]; add x3, x1, #1; cbnz x2, 5; udf behind
  ASSERT_TRUE(make({0xF9400002, 0x91000423, 0xB5000042, ret, udf}));
  EXPECT_EQ(hot(), (words{0xF9400262, 0xB5000002}));
  ASSERT_EQ(thunk_->exits().size(), 1u);
  EXPECT_EQ(thunk_->exits()[0].from, 1);
  EXPECT_EQ(thunk_->exits()[0].to, 0);
  // add x0, x19, #0; movz x1; movk x1; movz x3; movk x3; the way back to x30; and the jump by x4, which nobody uses
  EXPECT_EQ(cold(), joined({0x91000260, 0xD2801061, 0xF2A084A1, 0xD2801083, 0xF2A084A3, 30}, jump_to(4, 4)));
  ASSERT_EQ(thunk_->cold().returns().size(), 1u);
  EXPECT_EQ(thunk_->cold().returns()[0], 5);
}

TEST_F(InlinedThunk, BringsKnownFlagsAlong) {
  // cmp w1, w1; ldr x2, [x0]; cbnz x2, 4
  ASSERT_TRUE(make({0x6B01003F, 0xF9400002, 0xB5000042, ret, udf}));
  const words all = cold();
  ASSERT_GT(all.size(), 10u);
  // movz x3, #0x6000, lsl #16; msr nzcv, x3
  EXPECT_EQ((words{all.end() - 10, all.end()}), joined({0xD2AC0003, 0xD51B4203}, jump_to(4, 3)));
}

TEST_F(InlinedThunk, StoresTheWordWhereAnotherMayReadIt) {
  const word store = aarch64::str_x({1}, {0}, offsetof(cpu_state, instr_word));
  const word load = aarch64::ldr_x({2}, {0}, offsetof(cpu_state, instr_word));
  // str x2, [x0]
  ASSERT_TRUE(make({store, load, 0xF9000002, ret}));
  EXPECT_EQ(hot(), (words{0xD2801062, 0xF2A084A2, 0xF9000262})) << "known, not loaded, nor stored";
  // ldr x2, [x0]; cbnz x2, 4
  ASSERT_TRUE(make({store, 0xF9400002, 0xB5000042, ret, udf}));
  const words all = cold();
  ASSERT_GT(all.size(), 11u);
  const word to_state = aarch64::str_x({3}, aarch64::x19, offsetof(cpu_state, instr_word));
  EXPECT_EQ((words{all.end() - 11, all.end()}), joined({0xD2801063, 0xF2A084A3, to_state}, jump_to(4, 3)));
  // str x0, [sp]: the state's address may be loaded from there
  ASSERT_TRUE(make({store, 0xF90003E0, ret}));
  const word stored = aarch64::str_x({2}, aarch64::x19, offsetof(cpu_state, instr_word));
  EXPECT_EQ(hot(), (words{0xD2801062, 0xF2A084A2, stored, 0x91000260, 0xF90003E0}));
}

struct left {
  const char* text;
  word instruction;
};
constexpr left left_to_the_thunk[] = {
    {"mov x19, x0", 0xAA0003F3},
    {"ldp x19, x20, [sp]", 0xA94053F3},
    {"ldr x19, [x0]", 0xF9400013},
    {"umov x19, v0.d[0]", 0x4E083C13},
    {"mrs x19, nzcv", 0xD53B4213},
    {"ldxr x2, [x0]", 0xC85F7C02},
    {"ldr x2, .+8", 0x58000042},
    {"ldadd x2, x3, [x0]", 0xF8220003},
    {"prfm pldl1keep, [x0]", 0xF9800000},
    {"br x2", 0xD61F0040},
    {"blr x2", 0xD63F0040},
    {"svc #0", 0xD4000001},
    {"bl .+4", 0x94000001},
    {"a function that keeps registers", keeps_registers_word},
    {"brk #1", 0xD4200020},
    {"paciasp", 0xD503233F},
    {"ldr x2, [x0, #256]: where the word is", aarch64::ldr_x({2}, aarch64::x0, offsetof(cpu_state, pc))},
    {"str q0, [x19], #16", 0x3C810660},
    {"ldr x2, [x19, #8]!", 0xF8408E62},
    {"ld1 {v0.4s}, [x19], #16", 0x4CDF7A60}};

TEST_F(InlinedThunk, LeavesToTheThunkWhatItCannotCopy) {
  for (const left& l : left_to_the_thunk) {
    ASSERT_TRUE(make({l.instruction, ret})) << l.text;
    EXPECT_EQ(hot(), joined({0x91000260, 0xD2801061, 0xF2A084A1, 30}, jump_to(0, 2))) << l.text;
  }
}

TEST_F(InlinedThunk, ReturnsByAnAddressFromMemory) {
  // ldr x30, [sp]
  ASSERT_TRUE(make({0xF94003FE, ret}));
  EXPECT_EQ(hot(), (words{0xF94003FE, ret}));
}

// stp x29, x30, [sp, #-32]!; mov x29, sp; movz x3, #7; stp x3, xzr, [sp, #16]
constexpr word push = 0xA9BE7BFD, take_frame = 0x910003FD, seven = 0xD28000E3, store_seven = 0xA9017FE3;
// ldr w4, [x29, #16]; ldp x29, x30, [sp], #32
constexpr word load_seven = 0xB94013A4, pop = 0xA8C27BFD, read_thread = 0xD53BD042;

TEST_F(InlinedThunk, WritesNothingToTheStackThatItReadsBackItself) {
  // str x4, [x0, #8], which is copied, with the number
  ASSERT_TRUE(make({push, take_frame, seven, store_seven, load_seven, 0xF9000404, pop, ret}));
  EXPECT_EQ(hot(), (words{0xD28000E4, 0xF9000664}));
  EXPECT_TRUE(thunk_->is_whole());
  EXPECT_EQ(thunk_->written(), (written_registers{1 << 4, 0}));
  // sub sp, sp, #32; stp x29, x30, [sp, #16]; add x29, sp, #16; movi v0.2s, #7; str d0, [sp, #8]; ldr x4, [sp, #8]
  ASSERT_TRUE(make({0xD10083FF, 0xA9017BFD, 0x910043FD, 0x0F0004E0, 0xFD0007E0, 0xF94007E4, 0xF9000404, 0xA9417BFD,
                    0x910083FF, ret}));
  EXPECT_EQ(hot(), (words{0x0F0004E0, 0x58000004, 0xF9000664})) << "and the frame is popped";
  EXPECT_TRUE(thunk_->is_whole());
  ASSERT_TRUE(make({push, take_frame, pop, push, take_frame, pop, ret}));
  EXPECT_TRUE(hot().empty()) << "again";
}

TEST_F(InlinedThunk, LeavesToTheThunkTheStackThatItWouldHave) {
  // ldr x2, [x0]; cbnz x2, udf
  ASSERT_TRUE(make({push, take_frame, seven, store_seven, 0xF9400002, 0xB5000062, pop, ret, udf}));
  EXPECT_EQ(hot(), (words{0xF9400262, 0xB5000002}));
  EXPECT_FALSE(thunk_->is_whole());
  // sub sp, sp, #32; str x29, [sp]; the way back in x4, and str x4, [sp, #8]; movz x4, #7; str x4, [sp, #16]; str xzr,
  // [sp, #24]; x0, x1, x3 and x30; mov x29, sp
  const words all = cold();
  const words stack = {0xD10083FF, 0xF90003FD, 4, 0xF90007E4, 0xD28000E4, 0xF9000BE4, 0xF9000FFF};
  ASSERT_GT(all.size(), stack.size());
  EXPECT_EQ((words{all.begin(), all.begin() + static_cast<std::ptrdiff_t>(stack.size())}), stack);
  EXPECT_NE(std::find(all.begin(), all.end(), take_frame), all.end());
  // sub sp, sp, #32, behind what has been popped
  ASSERT_TRUE(
      make({push, take_frame, seven, store_seven, pop, 0xD10083FF, 0xF9400002, 0xB5000062, 0x910083FF, ret, udf}));
  EXPECT_EQ(cold().front(), 0xD10083FF);
  EXPECT_EQ(std::ranges::count_if(cold(), [](word w) { return (w & 0xFFC003E0) == 0xF90003E0; }), 0) << "str, [sp]";
}

// Behind the push, each as it is: on a stack that is there, as soon as it comes to it.
constexpr left using_the_stack[] = {
    {"str x4, [sp, #16]: of what is not known", 0xF9000BE4},
    {"ldr x4, [sp, #40]: an argument", 0xF94017E4},
    {"ldr q0, [x29]", 0x3DC003A0},
    {"strb w3, [sp, #16]", 0x390043E3},
    {"add x4, sp, x3", 0x8B2363E4},
    {"sub sp, sp, #1024", 0xD11003FF},
    {"str x3, [x29]", 0xF90003A3},
    {"str x29, [x2]: the address itself", 0xF900005D},
    {"cmp x29, x3", 0xEB0303BF},
    {"mrs x29, tpidr_el0: of a register that is to be kept", 0xD53BD05D},
    {"st1 {v0.4s}, [sp]", 0x4C007BE0},
};

TEST_F(InlinedThunk, WritesTheStackForWhatElseUsesIt) {
  for (const left& l : using_the_stack) {
    ASSERT_TRUE(make({push, take_frame, read_thread | 4, l.instruction, pop, ret})) << l.text;
    const words all = hot();
    const auto at = std::find(all.begin(), all.end(), l.instruction);
    ASSERT_NE(at, all.end()) << l.text;
    EXPECT_EQ(std::count(all.begin(), at, 0xD10083FFu), 1) << l.text << ": sub sp, sp, #32";
    EXPECT_EQ(std::count(all.begin(), at, 0xF90003FDu), 1) << l.text << ": str x29, [sp]";
    EXPECT_EQ(std::count(at, all.end(), pop), 1) << l.text;
    EXPECT_EQ(all.back(), ret) << l.text;
    EXPECT_FALSE(thunk_->is_whole()) << l.text;
  }
}

TEST_F(InlinedThunk, IsNoneIfTheStackPointerDoesNotComeBack) { EXPECT_FALSE(make({push, ret})); }

TEST_F(InlinedThunk, FollowsCallsWhereItMay) {
  // mov x9, x30; bl 5; mrs x3, tpidr_el0; mov x30, x9; ret; mrs x2, tpidr_el0; ret
  const words thunk = {0xAA1E03E9, 0x94000004, 0xD53BD043, 0xAA0903FE, ret, 0xD53BD042, ret};
  ASSERT_TRUE(make(thunk, {usable, 0, true}));
  EXPECT_EQ(hot(), (words{0xD53BD042, 0xD53BD043}));
}

TEST_F(InlinedThunk, IsOfAHostThatNotesNoAccesses) {
  const auto address = reinterpret_cast<std::uint64_t>(&accesses_are_noted);
  words thunk;
  for (word quarter = 0; quarter != 4; ++quarter)
    thunk.push_back(aarch64::movk_x({2}, address >> 16 * quarter & 0xFFFF, quarter));
  thunk[0] = aarch64::movz_x({2}, address & 0xFFFF);
  // ldrb w3, [x2]; cbnz w3, udf; mrs x2, tpidr_el0; ret; udf
  thunk.insert(thunk.end(), {0x39400043, 0x35000063, 0xD53BD042, ret, udf});
  ASSERT_TRUE(make(thunk));
  EXPECT_EQ(hot(), words{0xD53BD042});
}

// Marks, with X3 for an address and X2 for the result.
constexpr word begin_test_of_halves = 0x8A02247F, end_mark = 0x8A02007F;

TEST_F(InlinedThunk, AsksWhetherLanesAreKnown) {
  constexpr word p5 = offsetof(cpu_state, p) + 5 * VL_BYTES, test = 0x4C40A060;
  // add x3, x0, ...; the marks round ld1 {v0.16b, v1.16b}, [x3]; cbnz x2, udf; mrs x2, tpidr_el0
  ASSERT_TRUE(make({aarch64::add_x_4096({3}, aarch64::x0, p5 >> 12), aarch64::add_x({3}, {3}, p5 & 4095),
                    begin_test_of_halves, test, end_mark, 0xB5000062, 0xD53BD042, ret, udf}));
  EXPECT_EQ(hot(), (words{aarch64::tbz_x(aarch64::x20, 21, 0), 0xD53BD042}));
  ASSERT_EQ(thunk_->exits().size(), 1u);
  const words all = cold();
  const auto at = std::find(all.begin(), all.end(), test);
  ASSERT_NE(at, all.end()) << "the test itself";
  EXPECT_EQ(*(at + 1) & 0xFF00001F, 0xB4000002) << "cbz x2";
  // The first words: where it is known that another is inactive, or that all of the next size are the active ones
  EXPECT_EQ(all[0] & 0xFFF8001F, aarch64::tbnz_x(aarch64::x20, known_lanes::partial_bit(5), 0));
  EXPECT_EQ(all[1] & 0xFFF8001F, aarch64::tbnz_x(aarch64::x20, known_lanes::filled_bit(5, 2), 0));
  // The last words: orr x20, x20, #0xe00000; b
  EXPECT_EQ((words{all.end() - 2, all.end()}),
            (words{aarch64::set_bits_x(aarch64::x20, aarch64::x20, 21, 3), aarch64::b(0)}));
  ASSERT_EQ(thunk_->ways_on().size(), 1u);
  EXPECT_EQ(thunk_->ways_on()[0].from, all.size() - 1);
  EXPECT_EQ(thunk_->ways_on()[0].to, 1);
}

TEST_F(InlinedThunk, LeavesMarkedCodeAsItIsForAPredicateThatIsNotKnown) {
  // ldr x3, [x0]
  ASSERT_TRUE(make({0xF9400003, begin_test_of_halves, 0x4C40A060, end_mark, 0xD53BD042, ret}));
  EXPECT_EQ(hot(), (words{0xF9400263, 0x4C40A060, 0xD53BD042}));
}

TEST_F(InlinedThunk, LeavesALongThunkOnItsWay) {
  words thunk(code_part::most, 0xD53BD042);
  thunk.push_back(ret);
  ASSERT_TRUE(make(thunk));
  const words all = hot();
  ASSERT_LE(all.size(), code_part::most);
  const std::size_t copied = code_part::most - 31;
  ASSERT_GT(all.size(), copied);
  EXPECT_EQ((words{all.end() - 8, all.end()}), jump_to(copied, 3));
}

TEST_F(InlinedThunk, IsNoneOfALoopWithoutEnd) { EXPECT_FALSE(make({0x14000000})); }

TEST_F(InlinedThunk, IsNoneWhereNoRegisterIsFreeForAJump) {
  const words with_exit = {0xF9400002, 0xB5000042, ret, udf};
  EXPECT_FALSE(make(with_exit, {0b111}));
  EXPECT_TRUE(make(with_exit, {0b1111}));
}

// Each is copied as it is, with the state's address and the word in the registers that it reads.
constexpr left copied[] = {
    {"str x1, [x2, x0]", 0xF8206841},    {"madd x3, x1, x0, x2", 0x9B000823},   {"dup v0.4s, w1", 0x4E040C20},
    {"fmov d31, x1", 0x9E67003F},        {"scvtf d0, w1", 0x1E620020},          {"msr fpsr, x1", 0xD51B4421},
    {"ccmp x1, #0, #0, eq", 0xFA400820}, {"ld1 {v0.4s}, [x2], x1", 0x4CC17840}, {"clz x3, x1", 0xDAC01023}};

TEST_F(InlinedThunk, BringsInWhatACopiedInstructionReads) {
  for (const left& l : copied) {
    ASSERT_TRUE(make({l.instruction, ret})) << l.text;
    const words all = hot();
    ASSERT_GE(all.size(), 3u) << l.text;
    EXPECT_EQ(all.back(), l.instruction) << l.text;
    const words moves = {0xD2801061, 0xF2A084A1};
    EXPECT_NE(std::search(all.begin(), all.end(), moves.begin(), moves.end()), all.end()) << l.text;
  }
}

}  // namespace
}  // namespace quern
