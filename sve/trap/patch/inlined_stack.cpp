// Instructions of a thunk that use the stack.
#include "sve/trap/patch/inlined_thunk.h"
#include "sve/trap/patch/instruction_classes.h"
#include "sve/trap/patch/instruction_effect.h"

namespace quern {
namespace {

using namespace aarch64;
using kind = known_value::kind;

constexpr std::uint32_t stack_pointer = 31, zero_register = 31, first_kept = 19;

// A load or store of doublewords, or a load of a word, at an offset from a base that it may move, in front or behind.
struct simple_access {
  std::uint32_t count, registers[2];
  bool is_load, is_vector, is_word, moves_base, is_behind;
  std::uint64_t offset;
};
constexpr std::uint32_t behind = 1, in_front = 3;

std::optional<simple_access> pair_of(word w) {
  const std::uint32_t mode = field(w, 24, 23);
  if (field(w, 31, 30) != 2 || is_set(w, 26) || mode == 0) return {};
  return simple_access{.count = 2,
                       .registers = {field(w, 4, 0), field(w, 14, 10)},
                       .is_load = is_set(w, 22),
                       .is_vector = false,
                       .is_word = false,
                       .moves_base = mode == behind || mode == in_front,
                       .is_behind = mode == behind,
                       .offset = static_cast<std::uint64_t>(signed_field(w, 21, 15) * 8)};
}

std::optional<simple_access> single_of(word w) {
  const std::uint32_t size = field(w, 31, 30), operation = field(w, 23, 22), mode = field(w, 11, 10);
  const bool has_unsigned = is_set(w, 24), is_load = operation == 1, is_vector = is_set(w, 26);
  const bool is_word = size == 2 && is_load && !is_vector, is_doubleword = size == 3 && operation <= 1;
  const bool is_other = !has_unsigned && (is_set(w, 21) || mode == 2);
  if (is_other || !(is_word || is_doubleword)) return {};
  const auto near = static_cast<std::uint64_t>(signed_field(w, 20, 12));
  return simple_access{.count = 1,
                       .registers = {field(w, 4, 0)},
                       .is_load = is_load,
                       .is_vector = is_vector,
                       .is_word = is_word,
                       .moves_base = !has_unsigned && (mode == behind || mode == in_front),
                       .is_behind = !has_unsigned && mode == behind,
                       .offset = has_unsigned ? std::uint64_t{field(w, 21, 10)} << size : near};
}

std::optional<simple_access> access_of(word w) {
  if (is::pair_access(w)) return pair_of(w);
  return is::single_access(w) ? single_of(w) : std::nullopt;
}

}  // namespace

// The distance of an address from where the stack pointer stood at first.
std::optional<std::uint64_t> inlined_thunk::distance_in_stack(std::uint32_t n) const {
  if (!stack_is_known_) return {};
  if (n == stack_pointer) return stack_.top();
  if (known_[n].is != kind::stack) return {};
  return known_[n].number;
}

// ADD and SUB, of addresses in the stack and immediates.
bool inlined_thunk::stack_sum(word w) {
  const std::uint32_t d = field(w, 4, 0);
  const bool sets_flags = is_set(w, 29), is_whole = is_set(w, 31), is_difference = is_set(w, 30);
  if (!is::sum_with_immediate(w) || !is_whole || sets_flags) return false;
  const auto from = distance_in_stack(field(w, 9, 5));
  if (!from) return false;
  const std::uint64_t immediate = std::uint64_t{field(w, 21, 10)} << (is_set(w, 22) ? 12 : 0);
  const std::uint64_t sum = is_difference ? *from - immediate : *from + immediate;
  const bool moves_pointer = d == stack_pointer;
  if (moves_pointer ? !known_stack::may_be_top(sum) : !known_stack::has(sum) || is_kept(d)) return false;
  if (moves_pointer) stack_.move_top(sum);
  if (!moves_pointer) set(d, {kind::stack, sum});
  return true;
}

// What a register holds that is stored: something known, or what it had when the thunk began.
std::optional<known_value> inlined_thunk::stored_value(std::uint32_t t, bool is_vector) const {
  if (is_vector) return known_vector_ >> t & 1 ? std::optional(known_value{kind::number, doubleword_}) : std::nullopt;
  if (t == zero_register) return known_value{kind::number, 0};
  if (known_[t].is != kind::nothing) return known_[t];
  const bool is_as_before = t >= first_kept && !(set_ >> t & 1);
  return is_as_before ? std::optional(known_value{kind::kept, t}) : std::nullopt;
}

// What a load of the stack's slot gives the register, if that is known.
std::optional<known_value> inlined_thunk::loaded_value(std::uint32_t t, std::uint64_t place, bool is_word) {
  const std::uint64_t half = is_word ? place % 8 : 0;
  if (half % 4 != 0 || !known_stack::has_slot(place - half)) return {};
  const known_value value = stack_.slot(place - half);
  if (value.is == kind::nothing || (value.is == kind::kept && value.number != t)) return {};
  if (!is_word) return value;
  if (value.is != kind::number) return {};
  return known_value{kind::number, value.number >> (8 * half) & 0xFFFFFFFF};
}

void inlined_thunk::take_from_stack(std::uint32_t t, known_value value) {
  if (t == zero_register) return;
  if (value.is != kind::kept) return set(t, value);
  known_[t] = {};  // in the processor it still is what it was
  missing_ &= ~set_of(t);
  set_ &= ~set_of(t);
}

// All of it, or nothing is done.
bool inlined_thunk::stack_access(word w) {
  const std::uint32_t n = field(w, 9, 5);
  const auto access = access_of(w);
  const auto from = distance_in_stack(n);
  if (!access || !from || (access->moves_base && n != stack_pointer)) return false;
  const std::uint64_t moved = *from + access->offset, place = access->is_behind ? *from : moved;
  if (access->moves_base && !known_stack::may_be_top(moved)) return false;
  std::optional<known_value> values[2];
  for (std::uint32_t i = 0; i != access->count; ++i) {
    const std::uint32_t t = access->registers[i];
    if (!access->is_load) values[i] = stored_value(t, access->is_vector);
    if (access->is_load && !access->is_vector) values[i] = loaded_value(t, place + 8 * i, access->is_word);
    const bool fits = access->is_load || known_stack::has_slot(place + 8 * i);
    if (!fits || !values[i] || (access->is_load && is_kept(t) && values[i]->is != kind::kept)) return false;
  }
  for (std::uint32_t i = 0; i != access->count; ++i) {
    if (access->is_load) take_from_stack(access->registers[i], *values[i]);
    if (!access->is_load) stack_.slot(place + 8 * i) = *values[i];
  }
  if (access->moves_base) stack_.move_top(moved);
  return true;
}

// Whether the instruction, as it is copied, has to do with the stack, or overwrites what a slot of it is to have.
bool inlined_thunk::needs_stack(word w) const {
  const std::uint32_t d = field(w, 4, 0), n = field(w, 9, 5);
  const bool is_access = (w >> 25 & 0b101) == 0b100;
  const bool is_sum = is::sum_with_immediate(w) || is::sum_of_extended(w);
  const bool is_logical = is::logical_with_immediate(w) && field(w, 30, 29) != 3;
  const bool writes_pointer = d == stack_pointer && (is_logical || (is_sum && !is_set(w, 29)));
  const auto effect = effect_of(w);
  return writes_pointer || (n == stack_pointer && (is_access || is_sum)) || (effect && stack_.keeps_any_of(effect->x));
}

// The stack as the thunk would have it, and its pointer.
void inlined_thunk::put_stack(code_part& part) {
  const std::uint64_t bytes = stack_is_known_ ? stack_.bytes() : 0;
  if (bytes != 0) part.put(sub_x(sp, sp, static_cast<word>(bytes)));
  for (std::uint64_t offset = 0; offset != bytes; offset += 8) {
    const known_value value = stack_.slot(stack_.top() + offset);
    if (value.is == kind::nothing) continue;
    const bool is_kept = value.is == kind::kept, is_zero = value == known_value{kind::number, 0};
    const std::uint32_t n = is_kept ? static_cast<std::uint32_t>(value.number) : is_zero ? none : unused_register();
    if (!is_kept && !is_zero) {
      if (n == none) has_failed_ = true;
      put_value(part, n, value);
    }
    part.put(str_x({n}, sp, static_cast<std::int64_t>(offset)));
  }
}

void inlined_thunk::write_stack() {
  if (!stack_is_known_) return;
  put_stack(hot_);
  for (std::uint32_t n = 0; n != none; ++n) {
    if (known_[n].is != kind::stack) continue;
    put_known(hot_, n);
    load(n);
  }
  stack_is_known_ = false;
}

}  // namespace quern
