// What is noted in a saved mask.
#include "sve/trap/held_note.h"

#include <gtest/gtest.h>

namespace quern {
namespace {

sigset_t all_bytes(int value) {
  sigset_t mask;
  std::memset(&mask, value, sizeof mask);
  return mask;
}

TEST(HeldNote, IsReadBackFromTheMaskAndItsCopies) {
  sigset_t mask = all_bytes(0xFF);
  for (const signal_set held : {never_blocked, signal_set{0}}) {
    note_held(mask, held);
    const sigset_t copy = mask;
    EXPECT_EQ(noted_held(mask), held);
    EXPECT_EQ(noted_held(copy), held);
  }
}

TEST(HeldNote, IsNothingInAMaskThatHasNone) {
  for (const int value : {0x00, 0xFF}) EXPECT_EQ(noted_held(all_bytes(value)), 0u);
}

TEST(HeldNote, LeavesWhatTheKernelFills) {
  sigset_t mask{};
  to_sigset(set_of(SIGSEGV) | set_of(64), mask);
  note_held(mask, never_blocked);
  EXPECT_EQ(from_sigset(mask), set_of(SIGSEGV) | set_of(64));
}

}  // namespace
}  // namespace quern
