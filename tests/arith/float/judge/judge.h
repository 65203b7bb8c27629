// Runs cases of one routine through the library and the processor, and compares value and FPSR, bit by bit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tests/arith/float/judge/routine.h"
#include "tests/arith/float/judge/values.h"

namespace quern::judge {

// Compares one routine under one or more settings. A difference that is not a known deviation fails the current test,
// which shows the first few of them.
class trial {
 public:
  trial(const routine& r, std::uint32_t fpcr) : routine_(r), fpcr_(fpcr) {}
  trial(const trial&) = delete;
  trial& operator=(const trial&) = delete;
  ~trial();  // judges what is left over

  void add(const operands& x) {
    cases_[count_++] = x;
    if (count_ == cases_.size()) judge();
  }

 private:
  void judge();
  void report(const operands& x, const outcome& software, const outcome& processor);

  const routine& routine_;
  std::uint32_t fpcr_;
  int shown_ = 0;
  std::size_t count_ = 0;
  std::array<operands, 1024> cases_;
  std::array<outcome, 1024> software_, processor_;
};

// How many cases were judged in this process.
std::uint64_t cases_judged();

// All combinations of the values of `lists`, one list an operand.
void judge_cross(const routine& r, std::uint32_t fpcr, std::span<const std::vector<std::uint64_t>* const> lists);

void judge_random(const routine& r, std::uint32_t fpcr, std::uint64_t count, std::uint64_t seed);

// Pairs of halves: for each first operand, one in `step` of the second ones; 1 makes it all 2^32. Of the first operands
// those whose remainder by `slices` is `slice`.
void judge_half_pairs(const routine& r, std::uint32_t fpcr, std::uint32_t step, std::uint32_t slice,
                      std::uint32_t slices);

}  // namespace quern::judge
