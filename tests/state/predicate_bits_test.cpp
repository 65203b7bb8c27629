#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "sve/state/cpu_context.h"
#include "sve/state/predicate_bits.h"

namespace {

// The definition: bit i of the packed value is bit 0 of byte i.
bool packed_bit(const PredV& value, int i) { return (value.words[i / 64] >> i % 64 & 1) != 0; }

TEST(PredicateBits, EachByteHasItsBit) {
  for (int i = 0; i != VL_BYTES; ++i) {
    unsigned char bytes[VL_BYTES]{};
    bytes[i] = 1;
    const PredV value = to_pred(bytes);
    for (int j = 0; j != VL_BYTES; ++j) ASSERT_EQ(packed_bit(value, j), i == j) << "byte " << i << " bit " << j;
    unsigned char back[VL_BYTES];
    std::memset(back, 0xAA, sizeof back);
    from_pred(value, back);
    ASSERT_EQ(std::memcmp(back, bytes, sizeof back), 0) << "byte " << i;
  }
}

TEST(PredicateBits, OnlyBitZeroOfAByteIsPacked) {
  for (unsigned pattern = 0; pattern != 256; ++pattern) {
    unsigned char bytes[VL_BYTES];
    std::memset(bytes, static_cast<int>(pattern), sizeof bytes);
    unsigned char image[predicate_image_bytes];
    pack_predicate(bytes, image);
    for (const unsigned char byte : image) ASSERT_EQ(byte, (pattern & 1) != 0 ? 0xFF : 0) << "bytes of " << pattern;
  }
}

TEST(PredicateBits, EveryImageByteUnpacksToItsBits) {
  for (unsigned pattern = 0; pattern != 256; ++pattern) {
    unsigned char image[predicate_image_bytes], bytes[VL_BYTES];
    std::memset(image, static_cast<int>(pattern), sizeof image);
    unpack_predicate(image, bytes);
    for (unsigned i = 0; i != VL_BYTES; ++i) ASSERT_EQ(bytes[i], pattern >> i % 8 & 1) << "image of " << pattern;
  }
}

TEST(PredicateBits, MixedBytesAgreeWithTheDefinition) {
  std::mt19937 random(1);
  for (int round = 0; round != 200; ++round) {
    unsigned char bytes[VL_BYTES];
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    const PredV value = to_pred(bytes);
    for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(packed_bit(value, i), (bytes[i] & 1) != 0);
    unsigned char back[VL_BYTES];
    from_pred(value, back);
    for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(back[i], bytes[i] & 1);
  }
}

// A vector of 128 bits fills only a part of the value's one word.
TEST(PredicateBits, BitsBeyondTheVectorAreClear) {
  unsigned char bytes[VL_BYTES];
  std::memset(bytes, 1, sizeof bytes);
  const PredV value = to_pred(bytes);
  for (int i = VL_BYTES; i != 8 * int{sizeof(PredV)}; ++i) EXPECT_FALSE(packed_bit(value, i));
}

}  // namespace
