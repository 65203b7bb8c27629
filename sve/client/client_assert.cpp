// What the client does when one of its assumptions about the framework is broken.
#include "sve/client/client_assert.h"

#include "sve/client/framework.h"

void quern::client_assert(bool holds, const char* check, const char* file, int line) {
  if (holds) return;
  const char* const no_further_message = "";
  dr_fprintf(our_stderr, "ASSERT FAILURE: %s:%d: %s (%s)\n", file, line, check, no_further_message);
  dr_abort();
}
