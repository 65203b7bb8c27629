// The table of the library's functions, made of their lists.
#include "tests/veclib/library_members.h"

#include <gtest/gtest.h>

#include <charconv>
#include <tuple>
#include <type_traits>

#include "sve/veclib/veclib.h"

namespace quern {
namespace {

template <class P>
constexpr bool is_in_memory = std::is_same_v<P, VecV*> || std::is_same_v<P, const VecV*>;

// Hands out operands by the types of parameters.
struct operand_reader {
  const library_operands& operands;
  CpuContext* ctx;
  int vectors = 0, predicates = 0, scalars = 0;

  template <class P>
  P take() {
    if constexpr (std::is_same_v<P, VecV>) return operands.vectors[vectors++];
    if constexpr (std::is_same_v<P, PredV>) return operands.predicates[predicates++];
    if constexpr (std::is_same_v<P, CpuContext*>) return ctx;
    if constexpr (is_in_memory<P>) return operands.registers;
    if constexpr (std::is_integral_v<P>) return static_cast<P>(operands.scalars[scalars++]);
  }
};

template <class R>
library_result as_result(const R& result) {
  if constexpr (std::is_same_v<R, VecV>) return {result, {}, 0};
  if constexpr (std::is_same_v<R, PredV>) return {{}, result, 0};
  if constexpr (std::is_integral_v<R>) return {{}, {}, static_cast<std::make_unsigned_t<R>>(result)};
}

template <class R>
constexpr result_kind result_of() {
  if (std::is_same_v<R, VecV>) return result_kind::vector;
  if (std::is_same_v<R, PredV>) return result_kind::predicate;
  return std::is_void_v<R> ? result_kind::none : result_kind::scalar;
}

template <class Function>
struct call_of;
template <class R, class... P>
struct call_of<R (*)(P...)> {
  static library_result call(const void* function, const library_operands& operands, CpuContext* ctx) {
    operand_reader reader{operands, ctx};
    std::tuple<P...> arguments{reader.take<P>()...};  // in braces, so that they are taken from left to right
    const auto typed = *static_cast<R (*const*)(P...)>(function);
    if constexpr (std::is_void_v<R>) {
      std::apply(typed, arguments);
      return {};
    } else {
      return as_result(std::apply(typed, arguments));
    }
  }
  static constexpr operand_counts takes{(0 + ... + std::is_same_v<P, VecV>), (0 + ... + std::is_same_v<P, PredV>),
                                        (0 + ... + std::is_integral_v<P>), result_of<R>()};
};

// A pointer to the function that the compiler can put into a table: a cast of the function itself would be made when
// the program starts, by much code.
template <auto Function>
constexpr auto held = Function;

constexpr library_member members[] = {
#define MEMBERS "sve/veclib/members/all.inc"
#include "sve/veclib/members/signatures.inc"
#define MEMBER_AS(name, tag, stem, result, parameters, arguments) \
  {#name, #tag, #stem, &held<&name>, call_of<decltype(&name)>::takes, call_of<decltype(&name)>::call},
#include MEMBERS
#include "sve/veclib/members/undefine.inc"
};

}  // namespace

std::span<const library_member> library_members() { return members; }

std::vector<library_member> members_of(std::string_view stem) {
  std::vector<library_member> found;
  for (const library_member& member : library_members())
    if (member.stem == stem && std::string_view("USP").find(member.tag.front()) != std::string_view::npos)
      found.push_back(member);
  EXPECT_FALSE(found.empty()) << stem;
  return found;
}

int library_member::width() const {
  int bits = 8;  // the tag P has no digits
  std::from_chars(tag.data() + 1, tag.data() + tag.size(), bits);
  return bits;
}

bool library_member::is_unsigned() const { return tag.front() != 'S'; }

}  // namespace quern
