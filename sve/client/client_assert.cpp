// What the client does when one of its assumptions about the framework is broken.
#include "sve/client/client_assert.h"

#include "sve/client/framework.h"

void quern::client_assert(bool holds, const char* check, std::source_location where) {
  if (holds) return;
  const char* const no_further_message = "";
  dr_fprintf(our_stderr, "ASSERT FAILURE: %s:%d: %s (%s)\n", where.file_name(), static_cast<int>(where.line()), check,
             no_further_message);
  dr_abort();
}
