// Moves between a cpu_state and the vector library's context and predicate values.
#include "sve/state/cpu_context.h"

#include <bit>
#include <cstring>

#include "sve/state/predicate_bits.h"

static_assert(std::endian::native == std::endian::little, "byte j of a PredV is byte j of the predicate's image");

CpuContext cpu_ctxt{};
CpuContext* ctxt = nullptr;

PredV to_pred(const unsigned char* bytes) {
  unsigned char image[sizeof(PredV)]{};
  pack_predicate(bytes, image);
  return std::bit_cast<PredV>(image);
}

void from_pred(const PredV& value, unsigned char* bytes) {
  unsigned char image[sizeof(PredV)];
  std::memcpy(image, &value, sizeof image);
  unpack_predicate(image, bytes);
}

void clean_pred(unsigned char* bytes) {
  for (int i = 0; i != VL_BYTES; ++i) bytes[i] &= 1;
}
