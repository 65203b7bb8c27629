// A destination that is kept, and put back once.
#include "sve/memory/kept_destination.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quern {
namespace {

class KeptDestination : public testing::Test {
 protected:
  void expect_all(unsigned char value) { EXPECT_EQ(std::ranges::count(z, value), VL_BYTES) << "of " << int{value}; }
  void fill(unsigned char value) { std::ranges::fill(z, value); }

  unsigned char z[VL_BYTES] = {};
};

TEST_F(KeptDestination, IsPutBackOnce) {
  fill(3);
  keep_destination(z);
  fill(4);
  put_destination_back();
  expect_all(3);
  fill(5);
  put_destination_back();
  expect_all(5);
}

TEST_F(KeptDestination, IsNotPutBackOnceForgotten) {
  fill(3);
  keep_destination(z);
  fill(4);
  forget_destination();
  put_destination_back();
  expect_all(4);
}

}  // namespace
}  // namespace quern
