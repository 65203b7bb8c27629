// The flags of a predicate result: PTEST, and the test that every flag-setting predicate handler ends with.
#pragma once

#include "sve/handlers/handler_types.h"

// Sets NZCV by the predicate `result` under the predicate `governing`, both VL_BYTES bytes (PredTest): N the first
// active element, Z no active element set, C the last active element not set, V 0. With no active element N is 0 and C
// is 1. The other bits of nzcv stay. T gives the width of an element and nothing else; there are instances for the
// eight integer types from signed char to unsigned long.
template <class T>
void sve_ptest(cpu_state* state, const char* governing, const char* result);

extern template void sve_ptest<signed char>(cpu_state*, const char*, const char*);
extern template void sve_ptest<short>(cpu_state*, const char*, const char*);
extern template void sve_ptest<int>(cpu_state*, const char*, const char*);
extern template void sve_ptest<long>(cpu_state*, const char*, const char*);
extern template void sve_ptest<unsigned char>(cpu_state*, const char*, const char*);
extern template void sve_ptest<unsigned short>(cpu_state*, const char*, const char*);
extern template void sve_ptest<unsigned int>(cpu_state*, const char*, const char*);
extern template void sve_ptest<unsigned long>(cpu_state*, const char*, const char*);

namespace quern {

// sve_ptest on predicates as the register file and a handler's result hold them.
template <class T>
inline void test_flags(cpu_state* state, const unsigned char* governing, const unsigned char* result) {
  sve_ptest<T>(state, reinterpret_cast<const char*>(governing), reinterpret_cast<const char*>(result));
}

}  // namespace quern

// (Pg, Pn): sets NZCV by Pn under Pg, byte elements (PTEST).
handler_pp sve_ptest_pp;
