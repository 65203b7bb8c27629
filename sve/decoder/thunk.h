// Thunks: the routines that decode maps hand out. A thunk knows its form and element size by its identity, binds the
// word's operands, and calls the routine that does the work.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "sve/decoder/bridge.h"
#include "sve/decoder/memory_effect.h"
#include "sve/decoder/operand.h"
#include "sve/handlers/floating_point/host_fpsr.h"
#include "sve/state/cpu_state.h"
#include "sve/state/type_tag.h"
#include "sve/veclib/family.h"

namespace quern {

// Where a row's instruction is carried out.
enum class route : std::uint8_t {
  direct,     // a handler
  direct_fp,  // a handler that computes with the host's floating-point unit
  library,    // the vector library
  none,       // nowhere: it does nothing
};

// The name of a function or of a family given as a template argument, as the compiler spells it: rows need not repeat
// it.
template <auto Function>
consteval std::string_view function_name() {
  std::string_view text = __PRETTY_FUNCTION__;  // "... function_name() [with auto Function = NAME; ...]"
  text.remove_prefix(text.find("Function = ") + 11);
  return text.substr(0, text.find_first_of(";]"));
}
template <class Family>
consteval std::string_view family_name() {
  std::string_view text = __PRETTY_FUNCTION__;  // "... family_name() [with Family = quern::families::NAME; ...]"
  text.remove_prefix(text.find("families::") + 10);
  return text.substr(0, text.find_first_of(";]"));
}

// A shape is what a row says beside its encoding: the route, the routine, and the operands. Of it a row takes
//   way        where its instruction is carried out
//   routine    the handler's name, or the family's; empty if there is none
//   operands   in the order that the routine takes them, and of a library function the result before
//   memory     what it does to memory
//   thunk<Tag> the thunk for a type; it does not compile where the routine does not exist or takes other operands
// and that of a library form
//   function<Tag>  answers the address of the library's function, which no constant expression can hold
template <operand... Operands>
struct operands_shape {
  static constexpr std::array<operand, sizeof...(Operands)> operands{Operands...};
  static constexpr memory_effect memory{};
};

template <auto Handler, operand... Operands>
struct direct_shape : operands_shape<Operands...> {
  static constexpr route way = route::direct;
  static constexpr std::string_view routine = function_name<Handler>();

  template <type_tag Tag>
  static aarch64_decode_rc thunk(cpu_state* state, unsigned int word) {
    state->instr_word = word;
    return Handler(state, bind<Operands, Tag.size>(word)...);
  }
};

template <auto Handler, operand... Operands>
struct direct_fp_shape : direct_shape<Handler, Operands...> {
  using under_host_fpsr = direct_shape<Handler, Operands...>;
  static constexpr route way = route::direct_fp;

  template <type_tag Tag>
  static aarch64_decode_rc thunk(cpu_state* state, unsigned int word) {
    load_host_fpsr(state);
    const aarch64_decode_rc result = under_host_fpsr::template thunk<Tag>(state, word);
    store_host_fpsr(state);
    return result;
  }
};

// The operands of a library form, each once: the result, and the arguments that stand in other bits.
template <operand Result, operand... Arguments>
consteval auto distinct_operands() {
  constexpr std::size_t results = Result.kind == operand_kind::nothing ? 0 : 1;
  std::array<operand, results + (0 + ... + std::size_t{Arguments.mask != Result.mask})> distinct{};
  std::size_t count = 0;
  if constexpr (results != 0) distinct[count++] = Result;
  (void(Arguments.mask != Result.mask ? distinct[count++] = Arguments : Result), ...);
  return distinct;
}

template <bool UsesFfr, class Family, operand Result, operand... Arguments>
struct library_shape {
  static constexpr route way = route::library;
  static constexpr std::string_view routine = family_name<Family>();
  static constexpr auto operands = distinct_operands<Result, Arguments...>();
  static constexpr memory_effect memory{};

  template <type_tag Tag>
  static const void* function() {
    return reinterpret_cast<const void*>(library_function<Family, Tag.plain()>);
  }

  template <type_tag Tag>
  static aarch64_decode_rc thunk(cpu_state* state, unsigned int word) {
    constexpr auto function = library_function<Family, Tag.plain()>;
    using type = std::remove_const_t<decltype(function)>;
    static_assert(!std::same_as<type, std::nullptr_t>, "the family has no function for the type");
    static_assert(fits<type, Result, Arguments...>, "the function takes other operands, or answers another result");
    return cross<UsesFfr, bare<Result, Tag.size>(), bare<Arguments, Tag.size>()...>(state, word, function);
  }
};

template <operand... Operands>
struct empty_shape : operands_shape<Operands...> {
  static constexpr route way = route::none;
  static constexpr std::string_view routine{};

  template <type_tag>
  static aarch64_decode_rc thunk(cpu_state*, unsigned int) {
    return DECODE_OK;
  }
};

// A shape that accesses memory.
template <memory_effect Access, class Shape>
struct accessing_shape : Shape {
  static constexpr memory_effect memory = Access;
};

// Calls Handler with the operands; the thunk stores the word in instr_word first.
template <auto Handler, operand... Operands>
inline constexpr direct_shape<Handler, Operands...> direct{};

// The same, with FPSR moved from the state to the host before the call, and back after it.
template <auto Handler, operand... Operands>
inline constexpr direct_fp_shape<Handler, Operands...> direct_fp{};

// Calls the family's function for the row's type with the arguments, in the function's order, and delivers to Result. A
// register that is source and destination stands in both places; a form that only sets flags has no_result.
template <class Family, operand Result, operand... Arguments>
inline constexpr library_shape<false, Family, Result, Arguments...> library{};

// The same, for functions that read or write FFR.
template <class Family, operand Result, operand... Arguments>
inline constexpr library_shape<true, Family, Result, Arguments...> library_ffr{};

// Does nothing (prefetches).
template <operand... Operands>
inline constexpr empty_shape<Operands...> no_operation{};

}  // namespace quern
