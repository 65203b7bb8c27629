// Text of bounded length.
#include "utils/fixed_text.h"

#include <gtest/gtest.h>

namespace quern::test {
namespace {

TEST(FixedText, HoldsAllThatFits) {
  fixed_text<8> text;
  text << "ab" << std::uint64_t{0} << "cdefg";
  EXPECT_EQ(text.view(), "ab0cdefg");
  EXPECT_STREQ(text.c_str(), "ab0cdefg");
  EXPECT_TRUE(text.complete());
  text << "";
  EXPECT_TRUE(text.complete());
}

TEST(FixedText, TellsThatItWasCutUntilItIsCleared) {
  fixed_text<4> text;
  text << "abc"
       << "de";
  EXPECT_EQ(text.view(), "abcd");
  EXPECT_STREQ(text.c_str(), "abcd");
  EXPECT_FALSE(text.complete());
  text << "";
  EXPECT_FALSE(text.complete());
  text.clear();
  EXPECT_EQ(text.view(), "");
  EXPECT_STREQ(text.c_str(), "");
  EXPECT_TRUE(text.complete());
}

TEST(FixedText, HoldsTheGreatestNumber) {
  fixed_text<20> text;
  text << ~std::uint64_t{0};
  EXPECT_EQ(text.view(), "18446744073709551615");
  EXPECT_TRUE(text.complete());
}

}  // namespace
}  // namespace quern::test
