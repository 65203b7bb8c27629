// Which handlers are declared but not there yet.
#pragma once

#include <string_view>

namespace quern {

constexpr bool is_pending_handler(std::string_view name) {
  constexpr std::string_view pending[] = {
      "",
#define PENDING(handler, ...) #handler,
#include "sve/handlers/floating_point/pending_handlers.def"
#undef PENDING
  };
  for (const std::string_view handler : pending)
    if (name == handler) return true;
  return false;
}

}  // namespace quern
