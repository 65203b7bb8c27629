// Scalars and vectors moved by a count of elements.
#include "sve/handlers/predicate/element_count.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/lane_loops.h"
#include "sve/handlers/predicate/predicate_scan.h"
#include "sve/state/predicate_pattern.h"

using namespace quern;

namespace {

// Xdn = Xdn + change, modulo 2^64.
aarch64_decode_rc add_to_x(cpu_state* state, aarch64_i_reg xdn, std::uint64_t change) {
  write_x(state, xdn, read_x(state, xdn) + change);
  return DECODE_OK;
}

// Every element of Zdn + change, modulo the element.
template <class T>
aarch64_decode_rc add_to_lanes(cpu_state* state, aarch64_z_reg zdn, std::uint64_t change) {
  unsigned char* const d = bytes_of(state, zdn);
  each_lane<T>([=](T element) { return static_cast<T>(element + static_cast<T>(change)); }, d, d);
  return DECODE_OK;
}

std::uint64_t saturating_subtract(std::uint64_t value, std::uint32_t count) {
  return count >= value ? 0 : value - count;
}

aarch64_decode_rc decrease_to_zero(cpu_state* state, aarch64_i_reg rdn, std::uint32_t count) {
  const std::uint64_t x = read_x(state, rdn);
  write_x(state, rdn, saturating_subtract(rdn.dsize == size_x ? x : static_cast<std::uint32_t>(x), count));
  return DECODE_OK;
}

}  // namespace

#define SCALAR_COUNTS(suffix, size)                                                                                    \
  aarch64_decode_rc sve_inc##suffix##_rii(cpu_state* state, aarch64_i_reg xdn, unsigned int pattern,                   \
                                          unsigned int multiplier) {                                                   \
    return add_to_x(state, xdn, pattern_count(pattern, size) * multiplier);                                            \
  }                                                                                                                    \
  aarch64_decode_rc sve_dec##suffix##_rii(cpu_state* state, aarch64_i_reg xdn, unsigned int pattern,                   \
                                          unsigned int multiplier) {                                                   \
    return add_to_x(state, xdn, -std::uint64_t{pattern_count(pattern, size) * multiplier});                            \
  }                                                                                                                    \
  aarch64_decode_rc sve_cnt##suffix##_rii(cpu_state* state, aarch64_i_reg xd, unsigned int, unsigned int multiplier) { \
    write_x(state, xd, (static_cast<std::uint32_t>(VL_BYTES) >> (size)) * multiplier);                                 \
    return DECODE_OK;                                                                                                  \
  }
SCALAR_COUNTS(b, size_b)
SCALAR_COUNTS(h, size_h)
SCALAR_COUNTS(w, size_s)
SCALAR_COUNTS(d, size_d)
#undef SCALAR_COUNTS

#define SATURATING_COUNT(suffix, size)                                                                 \
  aarch64_decode_rc sve_uqdec##suffix##_rii(cpu_state* state, aarch64_i_reg rdn, unsigned int pattern, \
                                            unsigned int multiplier) {                                 \
    return decrease_to_zero(state, rdn, pattern_count(pattern, size) * multiplier);                    \
  }
SATURATING_COUNT(b, size_b)
SATURATING_COUNT(w, size_s)
SATURATING_COUNT(d, size_d)
#undef SATURATING_COUNT

#define VECTOR_COUNTS(suffix, type)                                                                              \
  aarch64_decode_rc sve_inc##suffix##_zii(cpu_state* state, aarch64_z_reg zdn, unsigned int pattern,             \
                                          unsigned int multiplier) {                                             \
    return add_to_lanes<type>(state, zdn, pattern_count(pattern, size_code<type>) * multiplier);                 \
  }                                                                                                              \
  aarch64_decode_rc sve_dec##suffix##_zii(cpu_state* state, aarch64_z_reg zdn, unsigned int pattern,             \
                                          unsigned int multiplier) {                                             \
    return add_to_lanes<type>(state, zdn, -std::uint64_t{pattern_count(pattern, size_code<type>) * multiplier}); \
  }
VECTOR_COUNTS(h, std::uint16_t)
VECTOR_COUNTS(w, std::uint32_t)
VECTOR_COUNTS(d, std::uint64_t)
#undef VECTOR_COUNTS

aarch64_decode_rc sve_cntp_rpp(cpu_state* state, aarch64_i_reg xd, aarch64_p_reg pg, aarch64_p_reg pn) {
  by_size(pn.size, [&]<class T>(T) {
    write_x(state, xd, count_elements<T>(set_in_both{bytes_of(state, pg), bytes_of(state, pn)}));
  });
  return DECODE_OK;
}

aarch64_decode_rc sve_incp_rp(cpu_state* state, aarch64_i_reg xdn, aarch64_p_reg pm) {
  by_size(pm.size, [&]<class T>(T) { add_to_x(state, xdn, count_elements<T>(set_in{bytes_of(state, pm)})); });
  return DECODE_OK;
}
