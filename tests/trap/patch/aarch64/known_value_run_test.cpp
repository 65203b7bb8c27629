// What instructions make of known registers, against the processor.
#include <gtest/gtest.h>

#include <memory>

#include "sve/trap/patch/known_value.h"
#include "tests/random_cases/random_source.h"
#include "tests/trap/patch/aarch64/patched_place.h"

extern "C" const unsigned char quern_place[];

namespace quern {
namespace {

// A random instruction of the classes that are looked at, more often than by chance.
std::uint32_t some_word(random_source& random) {
  constexpr std::uint32_t classes[] = {0x10000000, 0x11000000, 0x12000000, 0x12800000,
                                       0x13000000, 0x0A000000, 0x0B000000, 0x0B200000};
  return (static_cast<std::uint32_t>(random.next()) & 0xE07FFFFF) | random.pick(classes);
}

// Reserved: shifts of 32 bits and more in W, by more than four of an extended register, ROR in a sum, and others.
bool is_undefined(std::uint32_t w) {
  const bool is_x = w >> 31, is_shifted = (w & 0x1E000000) == 0x0A000000, is_sum = (w & 0x01000000) != 0;
  const bool is_extended = (w & 0x1F200000) == 0x0B200000, is_wide_move = (w & 0x1F800000) == 0x12800000;
  const std::uint32_t imms = w >> 10 & 63, immr = w >> 16 & 63, n = w >> 22 & 1;
  if ((w & 0x1F000000) == 0x13000000)
    return n != (w >> 31) || (!is_x && (imms > 31 || immr > 31)) || (w >> 29 & 3) == 3;
  if ((w & 0x1F800000) == 0x12000000) {
    const std::uint32_t length = 31 - static_cast<std::uint32_t>(__builtin_clz((n << 6 | (~imms & 63)) | 1));
    const bool has_length = (n << 6 | (~imms & 63)) > 1;
    return !has_length || (!is_x && n) || (imms & ((1u << length) - 1)) == (1u << length) - 1;
  }
  if (is_wide_move) return (w >> 29 & 3) == 1 || (!is_x && (w >> 22 & 1));
  if (is_extended) return (w >> 10 & 7) > 4 || (w >> 22 & 3) != 0;
  if (is_shifted) return (!is_x && imms > 31) || (is_sum && (w >> 22 & 3) == 3);
  return false;
}

TEST(KnownValueRun, IsWhatTheProcessorComputes) {
  const auto processor = std::make_unique<processor_registers>();
  const auto stack = std::make_unique<unsigned char[]>(1 << 16);
  random_source random(23);
  std::size_t judged = 0;
  for (int i = 0; i != 6000 && !testing::Test::HasFailure(); ++i) {
    const std::uint32_t word = some_word(random);
    known_registers known{};
    for (int n = 0; n != 31; ++n) {
      processor->state.x[n] = random.one_in(4) ? random.below(64) : random.next();
      known[n] = {known_value::kind::number, processor->state.x[n]};
    }
    const auto result = result_of(word, quern_place, known);
    if (!result || is_undefined(word)) continue;
    processor->state.sp = reinterpret_cast<std::uint64_t>(stack.get() + (1 << 15)) & ~std::uint64_t{15};
    processor->state.nzcv = 0x90000000;
    run_unpatched({&word, 1}, *processor);
    if (result->d != 31) {
      EXPECT_EQ(result->value.number, processor->state.x[result->d]) << std::hex << word;
    }
    EXPECT_EQ(result->nzcv.value_or(0x90000000), processor->state.nzcv) << std::hex << word;
    ++judged;
  }
  EXPECT_GT(judged, 2000u);
}

}  // namespace
}  // namespace quern
