// Names that this host takes over from the C library. All else in the shared object is hidden, so that none of it meets
// a name of the application.
#pragma once

#include <errno.h>

#define QUERN_EXPORT extern "C" __attribute__((visibility("default")))

namespace quern {

// What a function of such a name answers: 0, or -1 with errno set.
inline int result_of(int error) {
  if (error == 0) return 0;
  errno = error;
  return -1;
}

}  // namespace quern
