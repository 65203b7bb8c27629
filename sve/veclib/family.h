// Which function a family of the vector library has for a type: what the decoder's rows name, and what the macros that
// declare the functions fill in.
#pragma once

#include "sve/state/type_tag.h"

namespace quern {

// One incomplete type for each stem, declared where its functions are: families::AbdVVM.
namespace families {}

// The function Vec<Tag><stem of Family>, or a null pointer where the family has none for the type.
template <class Family, type_tag Tag>
inline constexpr auto library_function = nullptr;

}  // namespace quern

// Enters the function Vec<tag><stem>, which must be declared. The same stem may come up in several headers.
#define QUERN_LIBRARY_FUNCTION(tag, stem)                                               \
  namespace quern {                                                                     \
  namespace families {                                                                  \
  struct stem;                                                                          \
  }                                                                                     \
  template <>                                                                           \
  inline constexpr auto library_function<families::stem, tag.plain()> = Vec##tag##stem; \
  }
