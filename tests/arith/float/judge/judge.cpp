// Runs cases of one routine through the library and the processor, and compares value and FPSR, bit by bit.
#include "tests/arith/float/judge/judge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "tests/arith/float/judge/deviations.h"

namespace quern::judge {
namespace {

constexpr int shown_at_most = 5;

std::uint64_t judged = 0;

bool is_known(const routine& r, std::uint32_t fpcr, const operands& x, const outcome& software,
              const outcome& processor) {
  return std::ranges::any_of(known_deviations(), [&](const deviation& d) {
    return concerns(d, r) && (fpcr & d.controls) != 0 && d.applies(x, software, processor);
  });
}

}  // namespace

trial::~trial() { judge(); }

void trial::judge() {
  const std::span cases(cases_.data(), count_);
  routine_.software(cases, fpcr_, software_.data());
  routine_.processor(cases, fpcr_, processor_.data());
  judged += count_;
  count_ = 0;
  // An outcome has no padding, so that the usual case is quick to see.
  if (std::memcmp(software_.data(), processor_.data(), cases.size() * sizeof(outcome)) == 0) return;
  for (std::size_t i = 0; i != cases.size(); ++i)
    if (software_[i] != processor_[i] && !is_known(routine_, fpcr_, cases[i], software_[i], processor_[i]))
      report(cases[i], software_[i], processor_[i]);
}

void trial::report(const operands& x, const outcome& software, const outcome& processor) {
  if (++shown_ > shown_at_most) return;
  std::ostringstream text;
  text << std::hex << routine_.name << " FPCR " << fpcr_ << " of";
  for (std::size_t i = 0; i != routine_.kinds.size(); ++i) text << ' ' << x.value[i];
  text << ": library " << software.value << " FPSR " << software.fpsr << ", processor " << processor.value << " FPSR "
       << processor.fpsr;
  ADD_FAILURE() << text.str();
}

std::uint64_t cases_judged() { return judged; }

void judge_cross(const routine& r, std::uint32_t fpcr, std::span<const std::vector<std::uint64_t>* const> lists) {
  static const std::vector<std::uint64_t> none{0};
  const auto list = [&](std::size_t i) -> const std::vector<std::uint64_t>& {
    return i < lists.size() ? *lists[i] : none;
  };
  trial t(r, fpcr);
  for (const std::uint64_t a : list(0))
    for (const std::uint64_t b : list(1))
      for (const std::uint64_t c : list(2)) t.add({{a, b, c}});
}

void judge_random(const routine& r, std::uint32_t fpcr, std::uint64_t count, std::uint64_t seed) {
  random_source random(seed);
  trial t(r, fpcr);
  while (count-- != 0) t.add(random_operands(r, random));
}

void judge_half_pairs(const routine& r, std::uint32_t fpcr, std::uint32_t step, std::uint32_t slice,
                      std::uint32_t slices) {
  trial t(r, fpcr);
  for (std::uint32_t a = slice; a < 65536; a += slices)
    for (std::uint32_t b = a * 40503 % step; b < 65536; b += step) t.add({{a, b, 0}});
}

}  // namespace quern::judge
