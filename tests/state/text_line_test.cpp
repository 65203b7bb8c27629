// Lines made on the stack.
#include "sve/state/text_line.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace quern {
namespace {

std::string hex(std::uint64_t value, int least_digits) { return text_line().put_hex(value, least_digits).c_str(); }

TEST(TextLine, PutsNumbersInHexadecimal) {
  EXPECT_EQ(hex(0, 1), "0");
  EXPECT_EQ(hex(0x1F, 1), "1f");
  EXPECT_EQ(hex(0x1F, 8), "0000001f");
  EXPECT_EQ(hex(0x123456789ABCDEF0, 8), "123456789abcdef0");
  EXPECT_EQ(hex(~std::uint64_t{0}, 16), "ffffffffffffffff");
}

TEST(TextLine, IsCutWhereItDoesNotFit) {
  const std::string half(100, 'a'), other_half(100, 'b');
  EXPECT_EQ(text_line().put(half).put(other_half).put("c").c_str(), (half + other_half).substr(0, 192));
}

TEST(TextLine, IsPrintedOnStandardError) {
  testing::internal::CaptureStderr();
  text_line().put("one ").put_hex(2).put("\n").print();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "one 2\n");
}

TEST(TextLine, KeepsErrnoWhereItCannotBePrinted) {
  const int kept = dup(STDERR_FILENO);
  close(STDERR_FILENO);
  errno = E2BIG;
  text_line().put("nowhere\n").print();
  EXPECT_EQ(errno, E2BIG);
  dup2(kept, STDERR_FILENO);
  close(kept);
}

}  // namespace
}  // namespace quern
