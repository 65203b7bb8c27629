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

// Two neighbouring bytes as one number, and back.
inline std::uint16_t byte_pair(const unsigned char* bytes, int i) {
  std::uint16_t pair;
  std::memcpy(&pair, bytes + 2 * i, sizeof pair);
  return pair;
}
inline void set_byte_pair(unsigned char* bytes, int i, unsigned pair) {
  const auto value = static_cast<std::uint16_t>(pair);
  std::memcpy(bytes + 2 * i, &value, sizeof value);
}

// Packs VL_BYTES bytes at `bytes` into the predicate_image_bytes bytes at `image`. Only bit 0 of a byte is looked at.
// In three steps that compilers make vector instructions of: each joins the bits of two neighbouring bytes in one.
inline void pack_predicate(const unsigned char* bytes, unsigned char* image) {
  unsigned char twos[VL_BYTES / 2], fours[VL_BYTES / 4];
  for (int i = 0; i != VL_BYTES / 2; ++i) {
    const unsigned pair = byte_pair(bytes, i) & 0x0101u;
    twos[i] = static_cast<unsigned char>(pair | pair >> 7);
  }
  for (int i = 0; i != VL_BYTES / 4; ++i) {
    const unsigned pair = byte_pair(twos, i);
    fours[i] = static_cast<unsigned char>(pair | pair >> 6);
  }
  for (int i = 0; i != VL_BYTES / 8; ++i) {
    const unsigned pair = byte_pair(fours, i);
    image[i] = static_cast<unsigned char>(pair | pair >> 4);
  }
}

// Unpacks the predicate_image_bytes bytes at `image` into VL_BYTES bytes of 0 or 1 at `bytes`, by the same steps back.
inline void unpack_predicate(const unsigned char* image, unsigned char* bytes) {
  unsigned char twos[VL_BYTES / 2], fours[VL_BYTES / 4];
  for (int i = 0; i != VL_BYTES / 8; ++i) set_byte_pair(fours, i, (image[i] | image[i] << 4u) & 0x0F0Fu);
  for (int i = 0; i != VL_BYTES / 4; ++i) set_byte_pair(twos, i, (fours[i] | fours[i] << 6u) & 0x0303u);
  for (int i = 0; i != VL_BYTES / 2; ++i) set_byte_pair(bytes, i, (twos[i] | twos[i] << 7u) & 0x0101u);
}
