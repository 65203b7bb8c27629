// Destinations that are kept, and put back once.
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
  unsigned char other[VL_BYTES] = {};
};

TEST_F(KeptDestination, IsPutBackOnce) {
  fill(3);
  {
    const destination_kept<MEM_LOAD, 2> kept({other, z});
    fill(4);
    put_destination_back();
  }
  expect_all(3);
  fill(5);
  put_destination_back();
  expect_all(5);
}

TEST_F(KeptDestination, IsNotPutBackAfterTheLoad) {
  fill(3);
  {
    const destination_kept<MEM_LOAD, 1> kept({z});
    fill(4);
  }
  put_destination_back();
  expect_all(4);
}

TEST_F(KeptDestination, IsNoneOfAStore) {
  fill(3);
  const destination_kept<MEM_STORE, 1> kept({z});
  fill(4);
  put_destination_back();
  expect_all(4);
}

}  // namespace
}  // namespace quern
