// Conversion between the register file's predicates, one byte for each byte of a vector, and the packed form of the
// vector library and of memory, one bit for each.
#pragma once

#include "sve/state/vector_length.h"

// The packed image of a predicate, as it stands in memory: bit b of byte j is bit 0 of predicate byte 8 * j + b.
inline constexpr int predicate_image_bytes = VL_BYTES / 8;

// Both ways go by half bytes of the image: so each loop has as many parts side by side as AArch64 loads and stores
// interleaved, four or two (LD4, ST2), and none of them shifts bytes singly.
inline constexpr int predicate_halves = 2 * predicate_image_bytes;

// Packs VL_BYTES bytes at `bytes` into the predicate_image_bytes bytes at `image`. Only bit 0 of a byte is looked at.
inline void pack_predicate(const unsigned char* bytes, unsigned char* image) {
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
  unsigned char halves[predicate_halves];
  for (int j = 0; j != predicate_image_bytes; ++j) {
    halves[2 * j] = image[j] & 0xF;
    halves[2 * j + 1] = static_cast<unsigned char>(image[j] >> 4);
  }
  for (int i = 0; i != predicate_halves; ++i) {
    for (int b = 0; b != 4; ++b) bytes[4 * i + b] = halves[i] >> b & 1;
  }
}
