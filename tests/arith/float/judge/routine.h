// One row of the judge's tables: a routine of the library beside the instruction that does the same on the processor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "sve/arith/float/fpscr.h"

namespace quern::judge {

// The operands of one case, as bit patterns. A routine of fewer than three leaves out the last.
struct operands {
  std::uint64_t value[3];
};

// What a routine or an instruction makes of them: the result as a bit pattern, and FPSR, which was 0 before.
struct outcome {
  std::uint64_t value;
  std::uint64_t fpsr;

  bool operator==(const outcome&) const = default;
};

// Runs all of `cases` under `fpcr`; `results` has as many places.
using runner = void (*)(std::span<const operands> cases, std::uint32_t fpcr, outcome* results);

// What an operand is: a pattern of one of the formats, or an integer.
enum class operand_kind { half, single, dbl, int16, int32, int64 };

constexpr bool is_float(operand_kind kind) { return kind <= operand_kind::dbl; }

// An unsigned type stands for the format of its width, a signed one for an integer.
template <class T>
constexpr operand_kind kind_of = static_cast<operand_kind>((sizeof(T) == 2   ? 0
                                                            : sizeof(T) == 4 ? 1
                                                                             : 2) +
                                                           (std::is_signed_v<T> ? 3 : 0));

struct routine {
  std::string name;
  std::vector<operand_kind> kinds;  // one an operand
  runner software, processor;
};

// What GoogleTest says of a routine.
inline void PrintTo(const routine& r, std::ostream* out) { *out << r.name; }

template <class T>
std::uint64_t pattern_of(T result) {
  if constexpr (std::is_signed_v<T>) return static_cast<std::make_unsigned_t<T>>(result);
  return result;
}

// A library routine on operands `A`, which takes an FPSCR last if it reads or raises anything.
template <class... A>
struct signature {
  static std::vector<operand_kind> kinds() { return {kind_of<A>...}; }

  template <class Function>
  static std::uint64_t apply(Function function, const operands& x, FPSCR& fpscr) {
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
      if constexpr (std::is_invocable_v<Function, A..., FPSCR&>) {
        return pattern_of(function(static_cast<A>(x.value[I])..., fpscr));
      } else {
        return pattern_of(function(static_cast<A>(x.value[I])...));
      }
    }
    (std::index_sequence_for<A...>{});
  }
};

template <auto function, class... A>
void run_software(std::span<const operands> cases, std::uint32_t fpcr, outcome* results) {
  for (const operands& x : cases) {
    FPSCR fpscr{fpcr};
    const std::uint64_t value = signature<A...>::apply(function, x, fpscr);
    *results++ = {value, fpscr.word ^ fpcr};
  }
}

// The row of `function`, whose operands are of types `A`.
template <auto function, class... A>
routine row(std::string name, runner processor) {
  return {std::move(name), signature<A...>::kinds(), run_software<function, A...>, processor};
}

}  // namespace quern::judge
