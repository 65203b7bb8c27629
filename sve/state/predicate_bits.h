// Conversion between the register file's predicates, one byte for each byte of a vector, and the packed form of the
// vector library and of memory, one bit for each.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "sve/state/vector_length.h"

static_assert(std::endian::native == std::endian::little, "byte i of a 64-bit load is predicate byte i");

// The packed image of a predicate, as it stands in memory: bit b of byte j is bit 0 of predicate byte 8 * j + b.
inline constexpr int predicate_image_bytes = VL_BYTES / 8;

// Packs VL_BYTES bytes at `bytes` into the predicate_image_bytes bytes at `image`. Only bit 0 of a byte is looked at.
inline void pack_predicate(const unsigned char* bytes, unsigned char* image) {
  for (int j = 0; j != predicate_image_bytes; ++j) {
    std::uint64_t eight;
    std::memcpy(&eight, bytes + 8 * j, sizeof eight);
    // The factor moves bit 0 of byte b to bit 56 + b; no two partial products meet, so nothing carries.
    image[j] = static_cast<unsigned char>((eight & 0x0101010101010101) * 0x0102040810204080 >> 56);
  }
}

// Unpacks the predicate_image_bytes bytes at `image` into VL_BYTES bytes of 0 or 1 at `bytes`.
inline void unpack_predicate(const unsigned char* image, unsigned char* bytes) {
  for (int j = 0; j != predicate_image_bytes; ++j) {
    // Byte b of the product keeps bit b of the image byte alone, and the addition carries it to bit 7.
    const std::uint64_t spread = image[j] * 0x0101010101010101u & 0x8040201008040201u;
    const std::uint64_t eight = (spread + 0x7F7F7F7F7F7F7F7Fu) >> 7 & 0x0101010101010101u;
    std::memcpy(bytes + 8 * j, &eight, sizeof eight);
  }
}
