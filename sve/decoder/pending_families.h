// Families of the vector library that rows name and that are not there yet: their rows answer as unimplemented, and say
// so. Whoever writes the last function that rows want of a family deletes its line here; a function that exists is
// called even while its line stands. When a row's operands and the function do not fit, the row does not compile.
#pragma once

#include "sve/decoder/thunk.h"

namespace quern {

#define PENDING(stem)  \
  namespace families { \
  struct stem;         \
  }                    \
  template <>          \
  inline constexpr bool is_pending_family<families::stem> = true;

// clang-format off
PENDING(CLoadFF1LSSZ)
PENDING(CLoadFF2LSSZ)
PENDING(CLoadFF4LSSZ)
PENDING(LoadDup1QSIZ)
PENDING(LoadDup1QSSZ)
PENDING(LoadDup2QSIZ)
PENDING(LoadDup2QSSZ)
PENDING(LoadDup4QSIZ)
PENDING(LoadDup4QSSZ)
PENDING(LoadDup8QSIZ)
PENDING(LoadDup8QSSZ)
PENDING(LoadFF1VIZ)
PENDING(LoadFF1VSZ)
PENDING(LoadFF1XVSZ)
PENDING(LoadFF1YVSZ)
PENDING(LoadFF2SVZ)
PENDING(LoadFF2VIZ)
PENDING(LoadFF2VSZ)
PENDING(LoadFF2XSVZ)
PENDING(LoadFF2XVSZ)
PENDING(LoadFF2YSVZ)
PENDING(LoadFF2YVSZ)
PENDING(LoadFF4SVZ)
PENDING(LoadFF4VIZ)
PENDING(LoadFF4VSZ)
PENDING(LoadFF4XSVZ)
PENDING(LoadFF4XVSZ)
PENDING(LoadFF4YSVZ)
PENDING(LoadFF4YVSZ)
PENDING(LoadFF8SVZ)
PENDING(LoadFF8VIZ)
PENDING(LoadFF8VSZ)
PENDING(LoadFF8XSVZ)
PENDING(LoadFF8XVSZ)
PENDING(LoadFF8YSVZ)
PENDING(LoadFF8YVSZ)
// clang-format on
#undef PENDING

}  // namespace quern
