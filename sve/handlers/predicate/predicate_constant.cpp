// PFALSE and PTRUE.
#include "sve/handlers/predicate/predicate_constant.h"

#include <cstring>

#include "sve/handlers/predicate/predicate_scan.h"
#include "sve/handlers/register_bytes.h"
#include "sve/state/predicate_pattern.h"

using namespace quern;

aarch64_decode_rc sve_pfalse_p(cpu_state* state, aarch64_p_reg pd) {
  std::memset(bytes_of(state, pd), 0, VL_BYTES);
  return DECODE_OK;
}

aarch64_decode_rc sve_ptrue_pi(cpu_state* state, aarch64_p_reg pd, unsigned int pattern) {
  by_size(pd.size, [&]<class T>(T) {
    unsigned char* const d = bytes_of(state, pd);
    const std::size_t count = pattern_count(pattern, size_code<T>);
    count == lane_count<T> ? set_all_elements<T>(d) : set_first_elements<T>(d, count);
  });
  return DECODE_OK;
}
