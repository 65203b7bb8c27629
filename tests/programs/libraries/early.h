// What the library with early SVE code has found.
#ifndef QUERN_TESTS_EARLY_H
#define QUERN_TESTS_EARLY_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

bool library_constructor_works(void);
bool static_object_works(void);
bool resolver_works(void);
bool thread_works(void);

#ifdef __cplusplus
}
#endif

#endif
