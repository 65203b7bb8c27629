// The cache in front of the decoder answers what the decoder answers.
#include "sve/trap/handler_cache.h"

#include <gtest/gtest.h>

namespace quern {
namespace {

int lookups;

aarch64_decode_rc even(cpu_state*, unsigned int) { return DECODE_OK; }
aarch64_decode_rc odd(cpu_state*, unsigned int) { return DECODE_OK; }

// Null for multiples of 4, as most words have no handler.
sve_handler look_up(unsigned int word) {
  ++lookups;
  return word % 4 == 0 ? nullptr : word % 2 == 0 ? even : odd;
}

TEST(HandlerCache, AnswersAsTheLookupWithWordsThatMeetInOnePlace) {
  static handler_cache cache{};
  for (int round = 0; round != 2; ++round) {
    for (std::uint32_t i = 0; i != 5000; ++i) {
      const std::uint32_t word = i * 0x01003001;
      ASSERT_EQ(cache.find(word, look_up), look_up(word)) << word;
    }
  }
}

TEST(HandlerCache, LooksAWordUpOnce) {
  static handler_cache cache{};
  lookups = 0;
  for (int i = 0; i != 10; ++i) EXPECT_EQ(cache.find(0x04A00001, look_up), odd);
  for (int i = 0; i != 10; ++i) EXPECT_EQ(cache.find(0x04A00004, look_up), nullptr);
  EXPECT_EQ(lookups, 2);
}

TEST(HandlerCache, KnowsWord0FromTheStart) {
  static handler_cache cache{};
  lookups = 0;
  EXPECT_EQ(cache.find(0, look_up), nullptr);
  EXPECT_EQ(lookups, 0);
}

}  // namespace
}  // namespace quern
