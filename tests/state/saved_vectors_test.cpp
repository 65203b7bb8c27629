// Copies of the scalable registers.
#include "sve/state/saved_vectors.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace quern {
namespace {

std::unique_ptr<cpu_state> filled(unsigned char value) {
  auto state = std::make_unique<cpu_state>();
  std::memset(static_cast<void*>(state.get()), value, sizeof *state);
  return state;
}

TEST(SavedVectors, BringBackZPAndFfrAndNothingElse) {
  const auto state = filled(0xA5);
  saved_vectors* const saved = save_vectors(*state);
  const auto other = filled(0x5A);
  restore_vectors(*saved, *other);
  release_vectors(saved);
  EXPECT_EQ(std::memcmp(other->z, state->z, sizeof state->z), 0);
  EXPECT_EQ(std::memcmp(other->p, state->p, sizeof state->p), 0);
  EXPECT_EQ(std::memcmp(other->ffr, state->ffr, sizeof state->ffr), 0);
  EXPECT_EQ(other->x[30], filled(0x5A)->x[30]);
  EXPECT_EQ(other->nzcv, filled(0x5A)->nzcv);
  EXPECT_EQ(other->instr_word, filled(0x5A)->instr_word);
}

TEST(SavedVectors, HavePlacesOfTheirOwnUntilAllAreInUse) {
  const auto state = filled(1);
  std::set<saved_vectors*> places;
  while (saved_vectors* const place = save_vectors(*state)) {
    ASSERT_TRUE(places.insert(place).second);
    ASSERT_LE(places.size(), saved_vectors_capacity);
  }
  EXPECT_EQ(places.size(), saved_vectors_capacity);
  saved_vectors* const one = *places.begin();
  release_vectors(one);
  EXPECT_EQ(save_vectors(*state), one);
  for (saved_vectors* const place : places) release_vectors(place);
  release_vectors(nullptr);
}

TEST(SavedVectors, OfManyThreadsDoNotMix) {
  std::vector<std::thread> threads;
  for (unsigned char value = 1; value <= 8; ++value) {
    threads.emplace_back([value] {
      const auto state = filled(value);
      for (int round = 0; round != 300; ++round) {
        saved_vectors* const outer = save_vectors(*state);
        saved_vectors* const inner = save_vectors(*state);
        ASSERT_NE(outer, inner);
        ASSERT_EQ(outer->z[VL_BYTES - 1], value);
        ASSERT_EQ(inner->ffr[VL_BYTES - 1], value);
        release_vectors(outer);
        release_vectors(inner);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace quern
