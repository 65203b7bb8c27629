// The count that a pattern names.
#include "sve/arith/predicate/predicate_support.h"

#include <gtest/gtest.h>

namespace {

struct count_case {
  std::uint64_t pattern;
  int count, selected;
};

const count_case cases[] = {
    {0, 0, 1},    {0, 1, 1},      {0, 5, 4},      {0, 256, 256},                   // POW2; of none it is 1
    {1, 1, 1},    {1, 0, 0},      {5, 4, 0},      {8, 8, 8},      {8, 7, 0},       // VL1 to VL8
    {9, 16, 16},  {9, 15, 0},     {12, 128, 128}, {13, 128, 0},   {13, 256, 256},  // VL16 to VL256
    {14, 256, 0}, {20, 64, 0},    {28, 256, 0},                                    // not allocated
    {29, 7, 4},   {29, 256, 256}, {30, 7, 6},     {30, 256, 255},                  // MUL4, MUL3
    {31, 7, 6},   {31, 256, 256},                                                  // ALL clears the lowest bit
};

TEST(VecTrueILength, CountsTheElementsThatAPatternSelects) {
  for (const count_case& c : cases)
    EXPECT_EQ(VecTrueILength(c.pattern, c.count), c.selected) << c.pattern << ' ' << c.count;
}

}  // namespace
