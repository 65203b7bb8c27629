// Moves between a cpu_state and the vector library's context and predicate values.
#include "sve/state/cpu_context.h"

#include <bit>

#include "sve/state/predicate_bits.h"

static_assert(std::endian::native == std::endian::little, "byte j of a PredV is byte j of the predicate's image");

CpuContext cpu_ctxt{};
CpuContext* ctxt = nullptr;

PredV to_pred(const unsigned char* bytes) {
  PredV value;
  if constexpr (sizeof value != predicate_image_bytes) value = {};
  pack_predicate(bytes, reinterpret_cast<unsigned char*>(&value));
  return value;
}

void from_pred(const PredV& value, unsigned char* bytes) {
  unpack_predicate(reinterpret_cast<const unsigned char*>(&value), bytes);
}

void clean_pred(unsigned char* bytes) {
#ifdef __aarch64__
  // Four vectors by one instruction; the compiler makes none.
  if constexpr (VL_BYTES % 64 == 0) {
#pragma GCC unroll 4
    for (unsigned i = 0; i != VL_BYTES; i += 64) {
      uint8x16x4_t four = vld1q_u8_x4(bytes + i);
#pragma GCC unroll 4
      for (uint8x16_t& vector : four.val) vector &= 1;
      vst1q_u8_x4(bytes + i, four);
    }
    return;
  }
#endif
  for (unsigned i = 0; i != VL_BYTES; ++i) bytes[i] &= 1;
}
