// Conversion between the register file's predicates, one byte for each byte of a vector, and the packed form of the
// vector library and of memory, one bit for each.
#pragma once

#include "sve/state/vector_length.h"

#ifdef __aarch64__
#include <arm_neon.h>
#endif

// The packed image of a predicate, as it stands in memory: bit b of byte j is bit 0 of predicate byte 8 * j + b.
inline constexpr int predicate_image_bytes = VL_BYTES / 8;

// Both ways go by half bytes of the image, as four bytes side by side can be loaded and stored interleaved.
inline constexpr int predicate_halves = 2 * predicate_image_bytes;

#ifdef __aarch64__

// 64 predicate bytes are half bytes for one vector, 16 bytes of the image two of those. A bit is inserted below others
// that are shifted, which no compiler makes of a loop.
inline constexpr bool packs_by_vectors = VL_BYTES % 128 == 0;

// In the low half of each byte, bit 0 of four bytes; in the upper one, what is to be shifted out.
inline uint8x16_t pack_halves(const unsigned char* bytes) {
  const uint8x16x4_t four = vld4q_u8(bytes);
  const uint8x16_t upper_two = vsliq_n_u8(four.val[2], four.val[3], 1);
  return vsliq_n_u8(four.val[0], vsliq_n_u8(four.val[1], upper_two, 1), 1);
}
inline uint8x16_t pack_vectors(const unsigned char* bytes) {
  const uint8x16_t first = pack_halves(bytes), second = pack_halves(bytes + 64);
  return vsliq_n_u8(vuzp1q_u8(first, second), vuzp2q_u8(first, second), 4);
}

inline void unpack_halves(uint8x16_t halves, unsigned char* bytes) {
  const uint8x16_t one = vdupq_n_u8(1);
  const uint8x16_t second = vshrq_n_u8(halves, 1) & one, third = vshrq_n_u8(halves, 2) & one;
  vst4q_u8(bytes, (uint8x16x4_t{halves & one, second, third, vshrq_n_u8(halves, 3)}));
}
inline void unpack_vectors(uint8x16_t image, unsigned char* bytes) {
  const uint8x16_t low = image & vdupq_n_u8(0xF), high = vshrq_n_u8(image, 4);
  unpack_halves(vzip1q_u8(low, high), bytes);
  unpack_halves(vzip2q_u8(low, high), bytes + 64);
}

#endif

// Packs VL_BYTES bytes at `bytes` into the predicate_image_bytes bytes at `image`. Only bit 0 of a byte is looked at.
inline void pack_predicate(const unsigned char* bytes, unsigned char* image) {
#ifdef __aarch64__
  if constexpr (packs_by_vectors) {
    for (int i = 0; i != VL_BYTES; i += 128) vst1q_u8(image + i / 8, pack_vectors(bytes + i));
    return;
  }
#endif
  unsigned char halves[predicate_halves];
  for (int i = 0; i != predicate_halves; ++i) {
    const unsigned char* const four = bytes + 4 * i;
    halves[i] =
        static_cast<unsigned char>((four[0] & 1) | (four[1] & 1) << 1 | (four[2] & 1) << 2 | (four[3] & 1) << 3);
  }
  for (int j = 0; j != predicate_image_bytes; ++j)
    image[j] = static_cast<unsigned char>(halves[2 * j] | halves[2 * j + 1] << 4);
}

// Unpacks the predicate_image_bytes bytes at `image` into VL_BYTES bytes of 0 or 1 at `bytes`.
inline void unpack_predicate(const unsigned char* image, unsigned char* bytes) {
#ifdef __aarch64__
  if constexpr (packs_by_vectors) {
    for (int i = 0; i != VL_BYTES; i += 128) unpack_vectors(vld1q_u8(image + i / 8), bytes + i);
    return;
  }
#endif
  unsigned char halves[predicate_halves];
  for (int j = 0; j != predicate_image_bytes; ++j) {
    halves[2 * j] = image[j] & 0xF;
    halves[2 * j + 1] = static_cast<unsigned char>(image[j] >> 4);
  }
  for (int i = 0; i != predicate_halves; ++i) {
    for (int b = 0; b != 4; ++b) bytes[4 * i + b] = halves[i] >> b & 1;
  }
}
