// The type tags of loads and stores whose lanes may be wider than their elements in memory.
#pragma once

#include <type_traits>

#include "sve/state/lanes.h"
#include "sve/state/type_tag.h"

namespace quern::rows {

// Of elements T in lanes of U: T's sign and U's width.
template <class T, class U>
consteval type_tag element_type() {
  constexpr type_tag signed_types[] = {S8, S16, S32, S64}, unsigned_types[] = {U8, U16, U32, U64};
  return (std::is_signed_v<T> ? signed_types : unsigned_types)[size_code<U>];
}

// The same with field z as the architecture's dtype codes them: the element's size above the lane's, and all bits
// inverted where the element is sign-extended.
template <class T, class U>
inline constexpr type_tag dtype = element_type<T, U>().at((size_code<T> << 2 |
                                                           size_code<U>)^(std::is_signed_v<T> ? 0b1111 : 0));

}  // namespace quern::rows
