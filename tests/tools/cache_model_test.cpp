// The caches throw out the least recently used line, as a second model does that keeps a list a set.
#include "tools/cache_model.h"

#include <gtest/gtest.h>

#include <random>

#include "plain_cache.h"

namespace quern::test {
namespace {

TEST(CacheModel, AgreesWithAPlainModelOnRandomAccesses) {
  std::mt19937 random(1);
  for (const cache_shape shape : {cache_shape{1024, 1, 64}, {1024, 16, 64}, {4096, 4, 64}, {768, 3, 32}, {64, 1, 64}}) {
    cache_level cache(shape);
    plain_cache plain(shape);
    int hits = 0;
    for (int i = 0; i != 20'000; ++i) {
      const std::uint64_t address = random() % (3 * shape.bytes);
      const bool is_hit = cache.access(address);
      ASSERT_EQ(is_hit, plain.access(address)) << i;
      hits += is_hit;
    }
    EXPECT_GT(hits, 4000);
  }
}

TEST(CacheModel, ALineThatWasUsedAgainOutlivesAnOlderOne) {
  cache_level cache({128, 2, 64});  // one set
  EXPECT_FALSE(cache.access(0));
  EXPECT_FALSE(cache.access(64));
  EXPECT_TRUE(cache.access(63));
  EXPECT_FALSE(cache.access(128));  // in the place of 64
  EXPECT_TRUE(cache.access(0));
  EXPECT_FALSE(cache.access(64));
}

TEST(CacheModel, ALowerLevelIsAskedForWhatTheUpperLacks) {
  cache_hierarchy caches({{64, 1, 64}, {128, 2, 64}});
  EXPECT_EQ(caches.access(0), 2u);
  EXPECT_EQ(caches.access(0), 0u);
  EXPECT_EQ(caches.access(64), 2u);
  EXPECT_EQ(caches.access(0), 1u);
  EXPECT_EQ(caches.access(0), 0u);
}

}  // namespace
}  // namespace quern::test
