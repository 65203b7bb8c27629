// The judges themselves.
#include "tests/harness/agreement.h"

#include <gtest/gtest-spi.h>

#include <cstddef>
#include <cstring>
#include <utility>

#include "tests/harness/lane_judge.h"

namespace quern {
namespace {

void expect_seen(std::size_t byte) {
  const cpu_state& before = samples().front().state;
  cpu_state changed = before;
  reinterpret_cast<unsigned char*>(&changed)[byte] ^= 1;
  EXPECT_NE(difference(changed, before), "") << "byte " << byte;
}

// Every byte of the scalar fields, and a byte in each vector and predicate.
TEST(Agreement, SeesAChangeOfAnyRegister) {
  EXPECT_EQ(difference(samples().front().state, samples().front().state), "");
  for (std::size_t i = 0; i != offsetof(cpu_state, fpcr) + 4; ++i) expect_seen(i);
  for (std::size_t i = offsetof(cpu_state, z) + VL_BYTES - 1; i < offsetof(cpu_state, instr_word); i += VL_BYTES)
    expect_seen(i);
  for (std::size_t i = 0; i != 8; ++i) expect_seen(offsetof(cpu_state, instr_word) + i);
}

TEST(Agreement, TriesEachSizeWithEachChoiceOfLanes) {
  for (std::uint32_t size = size_b; size <= size_d; ++size) {
    for (const int p : {0, 1, 2}) {
      EXPECT_EQ(read_flags(random_state(size, lanes_on::none).p[p], size), flags_of(count_of(size), false));
      EXPECT_EQ(read_flags(random_state(size, lanes_on::all).p[p], size), flags_of(count_of(size), true));
      EXPECT_FALSE(element_active(random_state(size, lanes_on::alternate).p[p], size, 0));
      EXPECT_TRUE(element_active(random_state(size, lanes_on::alternate).p[p], size, 1));
    }
  }
}

const auto do_nothing = [](cpu_state*, std::uint32_t, const registers&) { return DECODE_OK; };

// What changes nothing agrees with what changes nothing, but not with one lane more, nor with another answer.
TEST(Agreement, FailsWhereADefinitionDiffers) {
  expect_agreement("nothing", do_nothing, [](cpu_state&, std::uint32_t, const registers&) {});
  EXPECT_FATAL_FAILURE(
      expect_agreement("another", do_nothing,
                       [](cpu_state& s, std::uint32_t, const registers& r) { s.z[r.d][VL_BYTES - 1] ^= 1; }),
      "another, size b, no lane");
  EXPECT_NONFATAL_FAILURE(
      {
        bool first = true;
        expect_agreement(
            "refusal",
            [&](cpu_state*, std::uint32_t, const registers&) {
              return std::exchange(first, false) ? DECODE_UNIMPLEMENTED : DECODE_OK;
            },
            [](cpu_state&, std::uint32_t, const registers&) {});
      },
      "DECODE_OK");
}

TEST(LaneJudge, FailsWhereALaneDiffers) {
  const auto keep = [](unsigned, std::uint64_t d, std::uint64_t, std::uint64_t) { return d; };
  judge_lanes({"keep", "bhsd", do_nothing, keep});
  static lane_case wrong{"wrong", "d", do_nothing, keep};
  wrong.zeroing = true;
  EXPECT_FATAL_FAILURE(judge_lanes(wrong), "wrong, size d, no lane");
  wrong.zeroing = false;
  wrong.lane = [](unsigned, std::uint64_t d, std::uint64_t, std::uint64_t) { return d + 1; };
  EXPECT_FATAL_FAILURE(judge_lanes(wrong), "wrong, size d, all lanes");
}

TEST(Elements, AreLittleEndianAndExtendedAsAsked) {
  const unsigned char bytes[] = {0x01, 0x80, 0xFF};
  EXPECT_EQ(element_at(bytes, 2), 0x8001u);
  EXPECT_EQ(element_at(bytes, 2, true), 0xFFFFFFFFFFFF8001u);
  EXPECT_EQ(element(bytes, size_b, 2), 0xFFu);
  EXPECT_EQ(signed_value(16, 0x8001), -0x7FFF);
  EXPECT_EQ(low_bits(16, 0x123456), 0x3456u);
}

TEST(Elements, OfLibraryValuesAreThoseOfRegisters) {
  for (std::uint32_t size = size_b; size <= size_d; ++size) {
    const cpu_state& s = random_state(size, lanes_on::random);
    VecV vector;
    std::memcpy(vector.bytes, s.z[0], VL_BYTES);
    EXPECT_EQ(read_elements(vector, size), read_elements(s.z[0], size));
    EXPECT_EQ(read_flags(to_pred(s.p[1]), size), read_flags(s.p[1], size));
  }
}

}  // namespace
}  // namespace quern
