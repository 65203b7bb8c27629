// Vector lengths as scalars.
#include <gtest/gtest.h>

#include "sve/veclib/integer/address.h"
#include "tests/veclib/library_values.h"

namespace {

TEST(VectorLength, IsCountedInBytesAndAPredicatesInEighths) {
  CpuContext ctx = quern::veclib::context();
  EXPECT_EQ(VecS64VLX(3, &ctx), 3u * VL_BYTES);
  EXPECT_EQ(VecS64VLX(-1, &ctx), ~std::uint64_t{0} - VL_BYTES + 1);
  EXPECT_EQ(VecS64AddVLX(1000, -2, &ctx), std::uint64_t{1000} - 2 * VL_BYTES);
  EXPECT_EQ(VecS64AddPLX(1000, 5, &ctx), 1000u + 5 * VL_BYTES / 8);
}

}  // namespace
