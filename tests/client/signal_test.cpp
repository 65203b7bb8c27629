// What a signal finds and leaves: the application's registers in rewritten code, and the scalable registers across
// handlers.
#include <algorithm>
#include <optional>

#include "client_test.h"
#include "sve/client/emulate_instruction.h"
#include "sve/client/signal_vectors.h"
#include "sve/client/thread_state.h"
#include "sve/decoder/sve_utils.h"
#include "sve/state/saved_vectors.h"

namespace quern {
namespace {

struct Signals : client_test {
  cpu_state& state = start_thread();

  ~Signals() override {
    if (framework.tls_field != nullptr) framework.thread_exit(framework.drcontext());
  }

  void fill(unsigned char value) {
    std::memset(state.z, value, sizeof state.z);
    std::memset(state.p, value, sizeof state.p);
    std::memset(state.ffr, value, sizeof state.ffr);
  }
  bool is_filled(unsigned char value) const {
    const auto all = [value](const auto& bytes) {
      const auto* const first = reinterpret_cast<const unsigned char*>(&bytes);
      return std::find_if_not(first, first + sizeof bytes, [value](unsigned char b) { return b == value; }) ==
             first + sizeof bytes;
    };
    return all(state.z) && all(state.p) && all(state.ffr);
  }

  // A handler begins at `handler_sp`, which interrupts code at `sp`; one ends and goes on at `sp`.
  void deliver(reg_t sp, reg_t handler_sp) {
    const dr_mcontext_t interrupted{.xsp = sp};
    transfer({DR_XFER_SIGNAL_DELIVERY, &interrupted, nullptr, handler_sp, 10});
  }
  void deliver(reg_t sp) { deliver(sp, sp - 0x1200); }
  void end(reg_t sp) { transfer({DR_XFER_SIGNAL_RETURN, nullptr, nullptr, sp, 10}); }

  void transfer(const dr_kernel_xfer_info_t& info) { framework.kernel_transfer(framework.drcontext(), &info); }

  // How many places of the store are in use.
  static std::size_t in_use() {
    static const cpu_state any{};
    std::vector<saved_vectors*> free;
    while (saved_vectors* const place = save_vectors(any)) free.push_back(place);
    for (saved_vectors* const place : free) release_vectors(place);
    return saved_vectors_capacity - free.size();
  }
};

TEST_F(Signals, AHandlerLeavesTheScalableRegistersAsTheyWere) {
  fill(1);
  deliver(0x8000);
  fill(2);
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
  EXPECT_EQ(in_use(), 0u);
}

// A signal that came during a call-out waits for that.
TEST_F(Signals, AThreadLeavesTheLinkedBlocksNowAndThen) {
  unsigned char* const pc = application_word(word_rdvl_x26);
  const auto leaves = [&]() -> std::optional<dr_mcontext_t> {
    try {
      emulate_instruction(word_rdvl_x26, pc, get_sve_handler(word_rdvl_x26));
    } catch (const redirected& to) {
      return to.context;
    }
    return std::nullopt;
  };
  for (int round = 0; round != 2; ++round) {
    for (unsigned int i = 1; i != most_call_outs; ++i) ASSERT_FALSE(leaves()) << i;
    state.x[3] = 33;
    state.sp = 0x5000;
    framework.slots[1] = 127;
    framework.slots[2] = 128;
    const auto to = leaves();
    ASSERT_TRUE(to);
    EXPECT_EQ(to->pc, pc + 4);
    EXPECT_EQ((&to->r0)[26], VL_BYTES);
    EXPECT_EQ((&to->r0)[27], 127u);
    EXPECT_EQ((&to->r0)[28], 128u);
    EXPECT_EQ(to->r3, 33u);
    EXPECT_EQ(to->xsp, 0x5000u);
  }
}

TEST_F(Signals, AllElseIsNotTouched) {
  deliver(0x8000);
  state.x[0] = 77;
  state.fpsr = 78;
  end(0x8000);
  EXPECT_EQ(state.x[0], 77u);
  EXPECT_EQ(state.fpsr, 78u);
}

TEST_F(Signals, NestedHandlersEndFromTheInnermost) {
  fill(1);
  deliver(0x8000);
  fill(2);
  deliver(0x6000);
  fill(3);
  end(0x6000);
  EXPECT_TRUE(is_filled(2));
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(Signals, ARedirectionByTheClientIsNoHandler) {
  const dr_mcontext_t anywhere{.xsp = 0x8000};
  transfer({DR_XFER_CLIENT_REDIRECT, &anywhere, nullptr, 0x8000, 0});
  EXPECT_EQ(in_use(), 0u);
}

// After a long jump out of the inner handler or out of both, the next signal finds the code above where they began.
TEST_F(Signals, HandlersThatWereLeftAreDropped) {
  deliver(0x8000);
  deliver(0x6000);
  deliver(0x6800);
  EXPECT_EQ(in_use(), 2u);
  fill(2);
  deliver(0x8800);
  EXPECT_EQ(in_use(), 1u);
  fill(3);
  end(0x8800);
  EXPECT_TRUE(is_filled(2));
  EXPECT_EQ(in_use(), 0u);
}

TEST_F(Signals, AnInnerHandlerThatWasLeftIsDroppedWhenTheOuterEnds) {
  fill(1);
  deliver(0x8000);
  fill(2);
  deliver(0x6000);
  fill(3);
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
  EXPECT_EQ(in_use(), 0u);
}

// On an alternate stack, which may lie above the interrupted one.
TEST_F(Signals, AHandlerOnAnAlternateStackIsKept) {
  fill(1);
  deliver(0x8000, 0x900000);
  fill(2);
  deliver(0x8FF000);
  end(0x8FF000);
  fill(3);
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(Signals, AReturnToWhereNoHandlerCameFromChangesNothing) {
  deliver(0x8000);
  fill(2);
  end(0x7000);
  EXPECT_TRUE(is_filled(2));
}

// The outer one runs on the interrupted stack, two inner ones on an alternate stack above it.
TEST_F(Signals, AHandlerIsKeptWhileOthersRunOnAStackAbove) {
  fill(1);
  deliver(0x8000);
  fill(2);
  deliver(0x6000, 0x900000);
  fill(3);
  deliver(0x8FF000);
  end(0x8FF000);
  end(0x6000);
  EXPECT_TRUE(is_filled(2));
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(Signals, AHandlerThatWasLeftOnAnAlternateStackIsDroppedWhenThatIsUsedAgain) {
  deliver(0x8000, 0x900000);
  deliver(0x7000, 0x900000);
  EXPECT_EQ(in_use(), 1u);
}

// Left on one alternate stack, interrupted at the same place again by a handler on another.
TEST_F(Signals, TheLaterOfTwoHandlersAtOnePlaceEnds) {
  fill(1);
  deliver(0x8000, 0x900000);
  fill(2);
  deliver(0x8000, 0xA00000);
  fill(3);
  end(0x8000);
  EXPECT_TRUE(is_filled(2));
}

// Each on a stack of its own.
TEST_F(Signals, TheOldestHandlersLeftUnseenGiveWay) {
  for (std::size_t i = 0; i != saved_vectors_capacity; ++i) {
    fill(i == saved_vectors_capacity - 1 ? 1 : 0);
    deliver(0x8000 + i, 0x900000 + 0x100000 * i);
  }
  fill(2);
  deliver(0x7000, 0x800000);
  fill(3);
  end(0x7000);
  EXPECT_TRUE(is_filled(2));
  end(0x8000 + saved_vectors_capacity - 1);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(Signals, AHandlerWithoutAPlaceEndsTheProcess) {
  std::vector<saved_vectors*> taken;
  while (saved_vectors* const place = save_vectors(state)) taken.push_back(place);
  EXPECT_THROW(deliver(0x8000), aborted);
  EXPECT_EQ(framework.error_stream, "quern: too many signal handlers run at once; at most 1024 may\n");
  for (saved_vectors* const place : taken) release_vectors(place);
}

TEST_F(Signals, AThreadThatEndsLeavesNothing) {
  deliver(0x8000);
  framework.thread_exit(framework.drcontext());
  framework.tls_field = nullptr;
  EXPECT_EQ(in_use(), 0u);
}

// As when a new thread has the drcontext of one that a fork has left behind.
TEST_F(Signals, AThreadThatBeginsFindsNothing) {
  deliver(0x8000);
  framework.thread_init(framework.drcontext());
  EXPECT_EQ(in_use(), 0u);
  framework.thread_exit(framework.drcontext());
  framework.tls_field = &state;
}

TEST_F(Signals, AnotherThreadThatEndsLeavesThisOnes) {
  deliver(0x8000);
  const int another_thread = 0;
  forget_signal_vectors(&another_thread);
  EXPECT_EQ(in_use(), 1u);
}

}  // namespace
}  // namespace quern
