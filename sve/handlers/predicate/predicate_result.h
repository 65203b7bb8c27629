// The flags of a predicate result, for handlers that set them by what they know of it.
#pragma once

#include "sve/handlers/predicate/nzcv.h"
#include "sve/handlers/predicate/predicate_scan.h"

namespace quern {

// The first and the last element that a predicate has active, or no_element.
struct active_ends {
  std::size_t first, last;
};
template <class T>
inline active_ends ends_of(const unsigned char* predicate) {
  return {first_element<T>(set_in{predicate}), last_element<T>(set_in{predicate})};
}

// The flags of a result, by the ends of what governs it. `active` are the result's active elements: they are searched
// only if the first one is not set, as it often is.
template <class T, class Elements>
inline void set_flags(cpu_state* state, active_ends governing, const unsigned char* result, Elements active) {
  const bool n = governing.first != no_element && is_active<T>(result, governing.first);
  set_flags(state, {.n = n,
                    .z = !n && !any_element<T>(active),
                    .c = governing.last == no_element || !is_active<T>(result, governing.last)});
}

// The same for a result that has no other elements set than active ones.
template <class T>
inline void set_flags(cpu_state* state, active_ends governing, const unsigned char* result) {
  set_flags<T>(state, governing, result, set_in{result});
}

}  // namespace quern
