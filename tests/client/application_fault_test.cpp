// A fault of an emulated load or store: where the client goes on, and the context that the application's handler sees.
#include <csignal>
#include <numeric>
#include <optional>

#include "client_test.h"
#include "sve/client/emulate_instruction.h"
#include "sve/decoder/sve_utils.h"
#include "tests/support/mapped_pages.h"

namespace quern {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t word_ld1b = 0xA400A000;             // ld1b z0.b, p0/z, [x0]
constexpr std::uint32_t word_st1b = 0xE400E000;             // st1b z0.b, p0, [x0]
constexpr std::uint32_t word_ldnf1b = 0xA410A000;           // ldnf1b z0.b, p0/z, [x0]
constexpr std::uint32_t word_gather = 0x85414000;           // ld1w z0.s, p0/z, [x0, z1.s, sxtw]
constexpr std::uint32_t word_gather_in_place = 0x85414001;  // ld1w z1.s, p0/z, [x0, z1.s, sxtw]

struct ApplicationFault : client_test {
  cpu_state& state = start_thread();
  mapped_pages pages{page::open, page::closed};
  unsigned char* pc = nullptr;
  std::array<std::array<std::uint64_t, 2>, 32> vectors{};  // V0 to V31 before the instruction

  ~ApplicationFault() override { framework.thread_exit(framework.drcontext()); }

  // Carries out the word with lane 2 the first that can't be accessed; where the client goes on, if not in the block.
  std::optional<dr_mcontext_t> fault(std::uint32_t word) {
    for (std::uint64_t n = 0; n != 31; ++n) state.x[n] = 100 + n;
    state.sp = 0x5000;
    state.nzcv = 0x90000000;
    state.fpsr = 0x08000011;
    state.fpcr = 0;  // as on the processor that runs the tests
    std::fill(state.p[0], state.p[0] + VL_BYTES, 1);
    state.x[0] = pages.address(mapped_pages::size() - 2);
    framework.slots[0] = 126;
    framework.slots[1] = 127;
    framework.slots[2] = 128;
    for (std::size_t n = 0; n != 32; ++n) std::memcpy(&vectors[n], state.z[n], sizeof vectors[n]);
    pc = application_word(word);
    try {
      emulate_instruction(word, pc, get_sve_handler(word));
    } catch (const redirected& to) {
      return to.context;
    }
    return std::nullopt;
  }

  dr_signal_action_t signal(int number, dr_mcontext_t& context) {
    dr_siginfo_t info{number, framework.drcontext(), &context};
    return framework.signal(framework.drcontext(), &info);
  }

  // The bytes that the code at which the client goes on will touch.
  static std::vector<std::uint64_t> touched(const dr_mcontext_t& to) {
    const auto* const first = reinterpret_cast<const std::uint64_t*>(to.r0);
    return {first, first + to.r1};
  }

  // All that the client goes on with, but where the code that repeats the access has its own registers.
  void expect_registers(const dr_mcontext_t& context, std::size_t first_general = 0) {
    for (std::uint64_t n = first_general; n != 31; ++n)
      EXPECT_EQ((&context.r0)[n], n == 0 ? pages.address(mapped_pages::size() - 2) : 100 + n) << n;
    EXPECT_EQ(context.xsp, 0x5000u);
    EXPECT_EQ(context.nzcv, 0x90000000u);
    EXPECT_EQ(context.fpsr, 0x08000011u);
    EXPECT_EQ(context.fpcr, 0u);
    for (std::size_t n = 0; n != 32; ++n) {
      EXPECT_EQ(context.simd[n].u64[0], vectors.at(n)[0]) << n;
      EXPECT_EQ(context.simd[n].u64[1], vectors.at(n)[1]) << n;
    }
  }

  void expect_of_the_instruction(const dr_mcontext_t& context) {
    EXPECT_EQ(context.pc, pc);
    expect_registers(context);
  }
};

TEST_F(ApplicationFault, IsRepeatedOnTheBytesThatCanHaveFaulted) {
  for (const std::uint32_t word : {word_ld1b, word_st1b}) {
    const auto to = fault(word);
    ASSERT_TRUE(to);
    EXPECT_THAT(touched(*to),
                ElementsAre(pages.address(mapped_pages::size() - 2), pages.address(mapped_pages::size())));
    expect_registers(*to, 2);
  }
  EXPECT_NE(fault(word_ld1b)->pc, fault(word_st1b)->pc);
  EXPECT_THAT(framework.calls, ElementsAre()) << "the slots stay as they are";
}

// The lanes behind the one that faulted had addresses in an earlier instruction, on pages that this one does not touch.
TEST_F(ApplicationFault, OfAGatherIsNotLookedForInLanesThatItHasNotReached) {
  std::array<std::int32_t, VL_BYTES / 4> offsets;
  offsets.fill(-4);
  std::memcpy(state.z[1], offsets.data(), sizeof offsets);
  EXPECT_FALSE(fault(word_gather));
  offsets[1] = 2;
  std::memcpy(state.z[1], offsets.data(), sizeof offsets);
  const auto to = fault(word_gather);
  ASSERT_TRUE(to);
  EXPECT_THAT(touched(*to), ElementsAre(state.x[0] - 4, state.x[0] + 2));
}

// Its second lane faults, after the first has been written: the instruction's next run needs all offsets.
TEST_F(ApplicationFault, OfAGatherThatOverwritesItsOffsetsLeavesThemAsTheyWere) {
  std::array<std::int32_t, VL_BYTES / 4> offsets;
  std::iota(offsets.begin(), offsets.end(), -3);
  offsets[1] = 2;
  std::memcpy(state.z[1], offsets.data(), sizeof offsets);
  const auto to = fault(word_gather_in_place);
  ASSERT_TRUE(to);
  EXPECT_THAT(touched(*to), ElementsAre(state.x[0] - 3, state.x[0] + 2));
  EXPECT_EQ(std::memcmp(state.z[1], offsets.data(), sizeof offsets), 0);
  fault(word_ld1b);
  EXPECT_EQ(std::memcmp(state.z[1], offsets.data(), sizeof offsets), 0);
}

// A non-fault load survives what is not mapped, not a page that has nothing behind it.
TEST_F(ApplicationFault, OfAProbeIsRepeatedOnItsByte) {
  const auto load = fault(word_ld1b);
  fault(word_st1b);
  pages.set(0, page::closed);
  framework.failing = {"dr_safe_read"};
  framework.page_protection = DR_MEMPROT_READ;
  const auto to = fault(word_ldnf1b);
  ASSERT_TRUE(to);
  EXPECT_THAT(touched(*to), ElementsAre(state.x[0]));
  EXPECT_EQ(to->pc, load->pc);
}

#ifdef __aarch64__
// Goes where the client has sent the application.
void go_on(const dr_mcontext_t& to) {
  register reg_t bytes __asm__("x0") = to.r0;
  register reg_t count __asm__("x1") = to.r1;
  __asm__ volatile("br %0" : : "r"(to.pc), "r"(bytes), "r"(count) : "x2", "x3", "x4", "memory");
}

// By a load or by a store, as it was; where nothing faults any more, the code ends at an undefined instruction.
TEST_F(ApplicationFault, IsRaisedAgainByAnAccessOfItsKind) {
  pages.set(1, page::open);
  ASSERT_EQ(mprotect(pages.at(mapped_pages::size()), mapped_pages::size(), PROT_READ), 0);
  const dr_mcontext_t store = *fault(word_st1b);
  EXPECT_EXIT(go_on(store), testing::KilledBySignal(SIGSEGV), "SIGSEGV");
  pages.set(1, page::open);
  EXPECT_EXIT(go_on(store), testing::KilledBySignal(SIGILL), "");

  pages.set(1, page::closed);
  const dr_mcontext_t load = *fault(word_ld1b);
  EXPECT_EXIT(go_on(load), testing::KilledBySignal(SIGSEGV), "SIGSEGV");
  ASSERT_EQ(mprotect(pages.at(mapped_pages::size()), mapped_pages::size(), PROT_READ), 0);
  EXPECT_EXIT(go_on(load), testing::KilledBySignal(SIGILL), "");
}
#endif

TEST_F(ApplicationFault, HasTheContextOfTheInstruction) {
  for (const std::uint32_t word : {word_ld1b, word_st1b}) {
    for (const int number : {SIGSEGV, SIGBUS, SIGUSR1}) {
      dr_mcontext_t context = *fault(word);
      context.r2 = context.r3 = context.r4 = 0;
      EXPECT_EQ(signal(number, context), DR_SIGNAL_DELIVER);
      expect_of_the_instruction(context);
    }
  }
}

// One SIGILL is the client's own, behind the code that found nothing to fault. Any other signal may come there too.
TEST_F(ApplicationFault, ThatIsNoMoreHasTheInstructionRunAgain) {
  const dr_mcontext_t start = *fault(word_ld1b);
  std::vector<std::pair<int, std::ptrdiff_t>> again;
  for (const int number : {SIGILL, SIGSEGV, SIGUSR1}) {
    for (std::ptrdiff_t offset = 0; offset != 48; offset += 4) {
      dr_mcontext_t context = start;
      context.pc += offset;
      if (signal(number, context) == DR_SIGNAL_REDIRECT) again.emplace_back(number, offset);
      expect_of_the_instruction(context);
    }
  }
  EXPECT_THAT(again, ElementsAre(testing::Pair(SIGILL, 44)));
}

TEST_F(ApplicationFault, LeavesSignalsElsewhereAlone) {
  const dr_mcontext_t start = *fault(word_ld1b);
  for (const std::ptrdiff_t offset : {-4, 48}) {
    dr_mcontext_t context = start;
    context.pc += offset;
    EXPECT_EQ(signal(SIGSEGV, context), DR_SIGNAL_DELIVER);
    EXPECT_EQ(context.pc, start.pc + offset);
    EXPECT_EQ(context.r0, start.r0);
  }
}

// A fault of an instruction without memory would be the emulator's own.
TEST_F(ApplicationFault, IsLookedForInMemoryInstructionsOnly) {
  EXPECT_FALSE(fault(word_add_b));
  EXPECT_EQ(framework.tries, 0);
  EXPECT_TRUE(fault(word_ld1b));
  EXPECT_EQ(framework.tries, 1);
}

}  // namespace
}  // namespace quern
