// Moves between a cpu_state and the vector library's context and predicate values.
#include "sve/state/cpu_context.h"

#include <bit>
#include <iterator>

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

// All are read before any is written: so vectors are moved by pairs.
void clean_pred(unsigned char* bytes) {
  using vector [[gnu::vector_size(16), gnu::may_alias, gnu::aligned(1)]] = unsigned char;
  auto* const vectors = reinterpret_cast<vector*>(bytes);
  vector clean[VL_BYTES / sizeof(vector)];
#pragma GCC unroll 16
  for (unsigned i = 0; i != std::size(clean); ++i) clean[i] = vectors[i] & 1;
#pragma GCC unroll 16
  for (unsigned i = 0; i != std::size(clean); ++i) vectors[i] = clean[i];
}
