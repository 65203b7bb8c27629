// Thunks: the routines that decode maps hand out. A thunk knows its form and element size by its identity, binds the
// word's operands, and calls the routine that does the work.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "sve/decoder/operand.h"
#include "sve/handlers/floating_point/host_fpsr.h"
#include "sve/state/cpu_context.h"
#include "sve/state/cpu_state.h"

namespace quern {

// Where a row's instruction is carried out.
enum class route : std::uint8_t {
  direct,     // a handler
  direct_fp,  // a handler that computes with the host's floating-point unit
  library,    // the vector library
  none,       // nowhere: it does nothing
};

// The name of a function given as a template argument, as the compiler spells it: rows need not repeat it.
template <auto Function>
consteval std::string_view function_name() {
  std::string_view text = __PRETTY_FUNCTION__;  // "... function_name() [with auto Function = NAME; ...]"
  text.remove_prefix(text.find("Function = ") + 11);
  return text.substr(0, text.find_first_of(";]"));
}

// The thunk of an instruction whose routine does not exist yet: reports the word under its thunk's name.
aarch64_decode_rc unimplemented_thunk(cpu_state* state, unsigned int word);

// A shape is what a row says beside its encoding: the route, the routine, and the operands in the order that the
// routine takes them. thunk<Size> is the routine's thunk for one element size.
template <auto Handler, operand... Operands>
struct direct_shape {
  static constexpr route way = route::direct;
  static constexpr std::string_view handler = function_name<Handler>();
  static constexpr std::array<operand, sizeof...(Operands)> operands{Operands...};

  template <std::uint32_t Size>
  static aarch64_decode_rc thunk(cpu_state* state, unsigned int word) {
    state->instr_word = word;
    return Handler(state, bind<Operands, Size>(word)...);
  }
};

template <auto Handler, operand... Operands>
struct direct_fp_shape : direct_shape<Handler, Operands...> {
  static constexpr route way = route::direct_fp;

  template <std::uint32_t Size>
  static aarch64_decode_rc thunk(cpu_state* state, unsigned int word) {
    load_host_fpsr(state);
    const aarch64_decode_rc result = direct_shape<Handler, Operands...>::template thunk<Size>(state, word);
    store_host_fpsr(state);
    return result;
  }
};

template <operand... Operands>
struct library_shape {
  static constexpr route way = route::library;
  static constexpr std::string_view handler{};
  static constexpr std::array<operand, sizeof...(Operands)> operands{Operands...};

  template <std::uint32_t>
  static constexpr sve_handler thunk = unimplemented_thunk;
};

// The function answers a scalar for the register Rd, from immediates alone.
template <auto Function, operand Rd, operand... Immediates>
struct library_scalar_shape : library_shape<Rd, Immediates...> {
  template <std::uint32_t Size>
  static aarch64_decode_rc thunk(cpu_state* state, unsigned int word) {
    CpuContext ctx = make_context(*state);
    const std::uint64_t result = Function(bind<Immediates, Size>(word)..., &ctx);
    if (const aarch64_i_reg rd = bind<Rd, Size>(word); rd.num != 31) state->x[rd.num] = result;
    store_context(ctx, *state);
    return DECODE_OK;
  }
};

template <operand... Operands>
struct empty_shape {
  static constexpr route way = route::none;
  static constexpr std::string_view handler{};
  static constexpr std::array<operand, sizeof...(Operands)> operands{Operands...};

  template <std::uint32_t>
  static aarch64_decode_rc thunk(cpu_state*, unsigned int) {
    return DECODE_OK;
  }
};

// Calls Handler with the operands; the thunk stores the word in instr_word first.
template <auto Handler, operand... Operands>
inline constexpr direct_shape<Handler, Operands...> direct{};

// The same, with FPSR moved from the state to the host before the call, and back after it.
template <auto Handler, operand... Operands>
inline constexpr direct_fp_shape<Handler, Operands...> direct_fp{};

// Goes to the vector library's function of the thunk's name.
template <operand... Operands>
inline constexpr library_shape<Operands...> library{};

// Goes to the vector library for a scalar.
template <auto Function, operand Rd, operand... Immediates>
inline constexpr library_scalar_shape<Function, Rd, Immediates...> library_scalar{};

// Does nothing (prefetches).
template <operand... Operands>
inline constexpr empty_shape<Operands...> no_operation{};

}  // namespace quern
