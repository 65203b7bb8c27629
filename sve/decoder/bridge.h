// The bridge from the register file to the vector library. It is made once for each signature of a function and places
// of its operands, and the function travels as a pointer.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>

#include "sve/decoder/operand.h"
#include "sve/state/cpu_context.h"
#include "sve/state/cpu_state.h"
#include "sve/state/lanes.h"

namespace quern {

// Whether a function's parameter of type A can be given the operand: a vector as VecV, a predicate as PredV, and as an
// integer a general register, element 0 of a vector, or an immediate that is one number.
template <class A, operand Op>
consteval bool takes() {
  constexpr register_file file = Op.traits().file;
  if (std::same_as<A, VecV>) return file == register_file::vector;
  if (std::same_as<A, PredV>) return file == register_file::predicate;
  if (!std::integral<A> || file == register_file::vector || file == register_file::predicate) return false;
  return Op.kind != operand_kind::nothing && Op.kind != operand_kind::imm_logical &&
         Op.kind != operand_kind::imm_fp_dup;
}

// Whether a function's result of type R can be delivered to the operand. An integer goes to a general register, or to
// element 0 of a vector.
template <class R, operand Op>
consteval bool gives() {
  constexpr register_file file = Op.traits().file;
  if (std::same_as<R, void>) return Op.kind == operand_kind::nothing;
  if (std::same_as<R, VecV>) return file == register_file::vector;
  if (std::same_as<R, PredV>) return file == register_file::predicate;
  return std::integral<R> && (file == register_file::element || file == register_file::general);
}

// A library function's type: its result, its operands, and the context last.
template <class F>
struct library_signature;
template <class R, class... A>
struct library_signature<R (*)(A...)> {
  using result = R;
  using parameters = std::tuple<A...>;
  static constexpr std::size_t operand_count = sizeof...(A) - 1;
  template <std::size_t I>
  using parameter = std::tuple_element_t<I, parameters>;
};

// Whether a function of type F can be called with the operands In..., and deliver to Out: just as many, each of a kind
// that its parameter takes.
template <class F, operand Out, operand... In>
inline constexpr bool fits = [] {
  using signature = library_signature<F>;
  if constexpr (sizeof...(In) != signature::operand_count) {
    return false;
  } else {
    return []<std::size_t... I>(std::index_sequence<I...>) {
      return gives<typename signature::result, Out>() &&
             (takes<typename signature::template parameter<I>, In>() && ...) &&
             std::same_as<typename signature::template parameter<sizeof...(In)>, CpuContext*>;
    }
    (std::make_index_sequence<sizeof...(In)>{});
  }
}();

// The operand with no more than the bridge needs, so that forms that differ in the rest share one.
template <operand Op, std::uint32_t RowSize>
consteval operand bare() {
  const bool sized = Op.traits().file == register_file::element || Op.traits().file == register_file::general ||
                     Op.traits().file == register_file::none;
  const bool is_vector = Op.traits().file == register_file::vector && Op.kind != operand_kind::z_list;
  const bool is_predicate = Op.traits().file == register_file::predicate;
  operand op{"", ' ', is_vector ? operand_kind::z : is_predicate ? operand_kind::p : Op.kind, Op.mask};
  if (sized) op.size = static_cast<std::int8_t>(Op.size_in(RowSize));
  return op;
}

// An immediate as a number: a multiplier as it is encoded, one bit for a constant as the bit.
template <operand Op>
constexpr auto library_immediate(std::uint32_t word) {
  if constexpr (Op.kind == operand_kind::imm_multiplier) {
    return field<Op>(word);
  } else {
    const auto value = bind_immediate<Op, size_d>(word);
    if constexpr (std::same_as<std::remove_const_t<decltype(value)>, aarch64_sve_fp_arith_imm>) {
      return value.bit;
    } else {
      return value;
    }
  }
}

template <operand Op>
std::uint64_t read_general(const cpu_state& state, std::uint32_t word) {
  const std::uint32_t num = field<Op>(word);
  constexpr bool has_sp = Op.traits().file == register_file::general_sp;
  return num != 31 ? state.x[num] : has_sp ? state.sp : 0;
}

// The value of an operand for a parameter of type A. A vector is the register itself, which the call copies.
template <class A, operand Op>
decltype(auto) library_value(const cpu_state& state, std::uint32_t word) {
  if constexpr (std::same_as<A, VecV>) {
    static_assert(sizeof(VecV) == sizeof state.z[0] && alignof(VecV) == 1, "a register is the bytes of a VecV");
    return reinterpret_cast<const VecV&>(state.z[field<Op>(word)]);
  } else if constexpr (std::same_as<A, PredV>) {
    return to_pred(state.p[field<Op>(word)]);
  } else if constexpr (Op.traits().file == register_file::element) {
    A value{};
    by_size(static_cast<std::uint32_t>(Op.size),
            [&]<class T>(T) { value = static_cast<A>(lane<T>(state.z[field<Op>(word)], 0)); });
    return value;
  } else if constexpr (Op.traits().file == register_file::none) {
    return static_cast<A>(library_immediate<Op>(word));
  } else {
    return static_cast<A>(read_general<Op>(state, word));
  }
}

// A scalar in its register: in X whole, in W from the low 32 bits with the upper ones cleared, in a vector as element 0
// with all above cleared.
template <operand Op, std::integral R>
void deliver_scalar(cpu_state& state, std::uint32_t word, R result) {
  const std::uint32_t num = field<Op>(word);
  if constexpr (Op.traits().file == register_file::element) {
    by_size(static_cast<std::uint32_t>(Op.size),
            [&]<class T>(T) { set_scalar<T>(state.z[num], static_cast<T>(result)); });
  } else if (num != 31) {
    state.x[num] = Op.size == size_x ? static_cast<std::uint64_t>(result) : static_cast<std::uint32_t>(result);
  }
}

// Calls the function and delivers its result. A vector is made in its register, since all operands have been copied by
// then; a load's is not, as its function can fault and must then leave the register.
template <operand Out, class Call>
void deliver(cpu_state& state, std::uint32_t word, Call call) {
  using R = decltype(call());
  if constexpr (std::same_as<R, void>) {
    call();
  } else if constexpr (std::same_as<R, VecV> && Out.kind == operand_kind::z_list) {
    const VecV result = call();
    std::memcpy(state.z[field<Out>(word)], &result, sizeof result);
  } else if constexpr (std::same_as<R, VecV>) {
    ::new (static_cast<void*>(state.z[field<Out>(word)])) VecV(call());
  } else if constexpr (std::same_as<R, PredV>) {
    from_pred(call(), state.p[field<Out>(word)]);
  } else {
    deliver_scalar<Out>(state, word, call());
  }
}

// One call of a library function: brings the context and the operands In out of the register file, and the result to
// Out and the context back. Every call rewrites flags, floating-point status and FFR, whatever the function does.
// UsesFfr tells whether it looks at FFR; where it does not, FFR's bytes are made 0 or 1 where they stand.
template <bool UsesFfr, operand Out, operand... In, class R, class... A>
[[gnu::noinline]] aarch64_decode_rc cross(cpu_state* state, unsigned int word, R (*function)(A...)) {
  CpuContext ctx = make_context<UsesFfr>(*state);
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    using parameters = std::tuple<A...>;
    deliver<Out>(*state, word, [&] {
      return function(library_value<std::tuple_element_t<I, parameters>, In>(*state, word)..., &ctx);
    });
  }
  (std::make_index_sequence<sizeof...(In)>{});
  store_context<UsesFfr>(ctx, *state);
  return DECODE_OK;
}

}  // namespace quern
