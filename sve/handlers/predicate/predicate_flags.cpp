// The flags of a predicate result: PTEST, and the test that every flag-setting predicate handler ends with.
#include "sve/handlers/predicate/predicate_flags.h"

#include "sve/handlers/predicate/predicate_result.h"
#include "sve/handlers/register_bytes.h"

using namespace quern;

template <class T>
void sve_ptest(cpu_state* state, const char* governing, const char* result) {
  const auto* pg = reinterpret_cast<const unsigned char*>(governing);
  const auto* r = reinterpret_cast<const unsigned char*>(result);
  set_flags<T>(state, ends_of<T>(pg), r, set_in_both{pg, r});
}

template void sve_ptest<signed char>(cpu_state*, const char*, const char*);
template void sve_ptest<short>(cpu_state*, const char*, const char*);
template void sve_ptest<int>(cpu_state*, const char*, const char*);
template void sve_ptest<long>(cpu_state*, const char*, const char*);
template void sve_ptest<unsigned char>(cpu_state*, const char*, const char*);
template void sve_ptest<unsigned short>(cpu_state*, const char*, const char*);
template void sve_ptest<unsigned int>(cpu_state*, const char*, const char*);
template void sve_ptest<unsigned long>(cpu_state*, const char*, const char*);

aarch64_decode_rc sve_ptest_pp(cpu_state* state, aarch64_p_reg pg, aarch64_p_reg pn) {
  test_flags<signed char>(state, bytes_of(state, pg), bytes_of(state, pn));
  return DECODE_OK;
}
