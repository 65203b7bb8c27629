// How many different numbers there are among many: exactly while they are few, then by an estimate that takes 4 kB
// however many they are (HyperLogLog, with a standard error of 1.6 %).
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <unordered_set>

namespace quern {

class distinct_count {
 public:
  void add(std::uint64_t number) {
    if (estimate_ != nullptr) return note(number);
    few_.insert(number);
    if (few_.size() <= most_exact) return;
    estimate_ = std::make_unique<ranks>();
    for (const std::uint64_t each : few_) note(each);
    few_ = {};
  }
  bool is_exact() const { return estimate_ == nullptr; }
  std::uint64_t count() const {
    if (is_exact()) return few_.size();
    double sum = 0;
    unsigned unused = 0;
    for (const std::uint8_t rank : *estimate_) {
      sum += std::ldexp(1.0, -rank);
      unused += rank == 0;
    }
    constexpr double size = places, correction = 0.7213 / (1 + 1.079 / size);
    const double raw = correction * size * size / sum;
    const bool is_low = raw <= 2.5 * size && unused != 0;  // the places that are unused tell better then
    return static_cast<std::uint64_t>(std::llround(is_low ? size * std::log(size / unused) : raw));
  }

 private:
  static constexpr std::size_t most_exact = 256;
  static constexpr unsigned place_bits = 12;
  static constexpr std::size_t places = std::size_t{1} << place_bits;
  using ranks = std::array<std::uint8_t, places>;

  // The number's bits, well mixed (the finalizer of SplitMix64).
  static std::uint64_t mixed(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15;
    number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
    number = (number ^ number >> 27) * 0x94D049BB133111EB;
    return number ^ number >> 31;
  }
  void note(std::uint64_t number) {
    const std::uint64_t bits = mixed(number);
    const auto rank = static_cast<std::uint8_t>(std::countl_zero(bits << place_bits | 1) + 1);
    std::uint8_t& highest = (*estimate_)[bits >> (64 - place_bits)];
    if (rank > highest) highest = rank;
  }

  std::unordered_set<std::uint64_t> few_;
  std::unique_ptr<ranks> estimate_;
};

}  // namespace quern
