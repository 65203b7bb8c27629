// Sets of signals.
#include "sve/trap/signal_set.h"

#include <gtest/gtest.h>

namespace quern {
namespace {

TEST(SignalSet, HasTheBitsOfTheCLibrarysSets) {
  for (const int signal : {1, SIGILL, SIGBUS, SIGSEGV, 31, 34, 64}) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    EXPECT_EQ(from_sigset(set), set_of(signal)) << signal;
    EXPECT_TRUE(contains(from_sigset(set), signal)) << signal;
    sigset_t back;
    sigemptyset(&back);
    to_sigset(set_of(signal), back);
    EXPECT_EQ(sigismember(&back, signal), 1) << signal;
  }
}

TEST(TrapSignals, AreTheseThree) {
  for (int signal = -1; signal <= 70; ++signal) {
    EXPECT_EQ(is_trap(signal), signal == SIGILL || signal == SIGBUS || signal == SIGSEGV) << signal;
  }
}

TEST(ChangedMask, DoesWhatSigprocmaskDoes) {
  EXPECT_EQ(changed_mask(0b0011, SIG_BLOCK, 0b0110), 0b0111u);
  EXPECT_EQ(changed_mask(0b0011, SIG_UNBLOCK, 0b0110), 0b0001u);
  EXPECT_EQ(changed_mask(0b0011, SIG_SETMASK, 0b0110), 0b0110u);
}

}  // namespace
}  // namespace quern
