// A walk along the common way through a thunk's code: what is known is carried out, the rest is copied.
#include "sve/trap/patch/inlined_thunk.h"

#include <cstring>

#include "sve/state/lane_marks.h"
#include "sve/trap/patch/instruction_classes.h"
#include "sve/trap/patch/instruction_effect.h"

namespace quern {
namespace {

using namespace aarch64;
using kind = known_value::kind;

constexpr std::uint32_t link = 30;

// Of sums, logical operations and conditional comparisons.
bool sets_flags(word w) {
  const bool is_sum = is::sum_with_immediate(w) || is::sum_of_registers(w) || is::sum_with_carry(w);
  const bool is_logical = is::logical_with_immediate(w) || is::logical_of_registers(w);
  return is::conditional_comparison(w) || (is_sum && is_set(w, 29)) || (is_logical && field(w, 30, 29) == 3);
}

bool reads_flags(word w) {
  return is::sum_with_carry(w) || is::conditional_comparison(w) || is::conditional_selection(w);
}

}  // namespace

inlined_thunk::word inlined_thunk::word_at(const unsigned char* pc) {
  word w;
  std::memcpy(&w, pc, sizeof w);
  return w;
}

bool inlined_thunk::compute(word w, const unsigned char* pc) {
  const bool is_of_flags = is::sum_with_carry(w) && field(w, 15, 10) != 0;  // RMIF, SETF
  const std::uint32_t d = is::conditional_comparison(w) ? none : field(w, 4, 0);
  if (is_kept(d) || is_of_flags) return false;
  if (const auto result = result_of(w, pc, known_)) {
    set(result->d, result->value);
    if (result->nzcv) flags_ = *result->nzcv;
    flags_are_known_ = flags_are_known_ || result->nzcv;
    return true;
  }
  if (is::wide_move(w) || is::bit_field_insertion(w)) need(d);
  if (!is::wide_move(w)) need(field(w, 9, 5));
  if (!is::with_immediate(w) || is::extraction(w)) need(field(w, 20, 16));
  if (is::of_three_registers(w)) need(field(w, 14, 10));
  if (reads_flags(w)) need_flags();
  hot_.put(w);
  if (sets_flags(w)) flags_are_known_ = false;
  load(d);
  return true;
}

// UMOV and FMOV of a doubleword that MOVI has set: so compilers fill halves of several general registers.
bool inlined_thunk::move_known_vector(word w) {
  const std::uint32_t d = field(w, 4, 0);
  const bool is_moved = (w & 0xFFFFFC00) == 0x4E083C00 || (w & 0xFFFFFC00) == 0x9E660000;
  if (is_moved && !is_kept(d) && known_vector_ & set_of(field(w, 9, 5))) {
    set(d, {kind::number, doubleword_});
    return true;
  }
  const bool is_movi_of_words = (w & 0xBFF8FC00) == 0x0F000400;
  if (!is_movi_of_words) return false;
  hot_.put(w);
  known_vector_ = std::uint32_t{1} << d;
  doubleword_ = (field(w, 18, 16) << 5 | field(w, 9, 5)) * 0x100000001;
  return true;
}

// General registers that it may read or write are looked at as if it did both.
bool inlined_thunk::vector_operation(word w) {
  if (move_known_vector(w)) return true;
  const std::uint32_t d = field(w, 4, 0);
  const bool may_be_general = effect_of(w & ~word{31})->x != 0;
  const bool compares = (w & 0xFF20FC00) == 0x1E202000, compares_on_condition = (w & 0xFF200C00) == 0x1E200400;
  const bool selects = (w & 0xFF200C00) == 0x1E200C00;
  const bool is_from_vector = (w & 0xBFE0EC00) == 0x0E002C00 || (w & 0x7FBFFC00) == 0x1E260000;  // SMOV, UMOV, FMOV
  if (may_be_general && is_kept(d)) return false;
  if (may_be_general && !is_from_vector) need(field(w, 9, 5)), need(d);
  if (compares_on_condition || selects) need_flags();
  hot_.put(w);
  if (compares || compares_on_condition) flags_are_known_ = false;
  if (may_be_general) load(d);
  return true;
}

bool inlined_thunk::system_operation(word w) {
  const std::uint32_t t = field(w, 4, 0);
  const bool is_read = is::system_read(w), is_of_flags = (w & 0xFFDFFFE0) == msr(system_register::nzcv, {0});
  if (w == nop) return true;
  if (!(is::system_write(w) || is_read || is::barrier(w)) || (is_read && is_kept(t))) return false;
  if (is::system_write(w)) need(t);
  if (is_of_flags && is_read) need_flags();
  hot_.put(w);
  if (is_of_flags) flags_are_known_ = false;
  if (is_read) load(t);
  return true;
}

bool inlined_thunk::carry_out(word w, const unsigned char* pc) {
  if (stack_sum(w) || stack_access(w)) return true;
  if (needs_stack(w)) write_stack();
  if (const auto effect = effect_of(w)) known_vector_ &= ~effect->v;
  switch (field(w, 28, 25)) {
    case 0b1000:
    case 0b1001:
    case 0b0101:
    case 0b1101: return compute(w, pc);
    case 0b1010:
    case 0b1011: return system_operation(w);
    case 0b0100:
    case 0b0110:
    case 0b1100:
    case 0b1110: return access(w);
    case 0b0111:
    case 0b1111: return vector_operation(w);
    default: return false;
  }
}

// A condition that is not known leads on; where it would lead away, the code leaves for the thunk's own.
const unsigned char* inlined_thunk::follow_condition(word w, const unsigned char* pc, std::int64_t distance) {
  const bool is_of_flags = is::branch_on_flags(w), is_of_bit = is::branch_on_bit(w);
  const std::uint32_t t = is_of_flags ? none : field(w, 4, 0);
  const known_value value = t == none ? known_value{kind::number, 0} : known_[t];
  const unsigned char *const target = pc + distance, *const next = pc + sizeof w;
  if (is_of_flags && flags_are_known_) return meets(flags_, field(w, 3, 0)) ? target : next;
  if (!is_of_flags && value.is == kind::number) {
    const std::uint64_t whole = is_set(w, 31) ? value.number : value.number & 0xFFFFFFFF;
    const bool is_zero = is_of_bit ? !(value.number >> (field(w, 31, 31) << 5 | field(w, 23, 19)) & 1) : whole == 0;
    return is_zero != is_set(w, 24) ? target : next;
  }
  need(t);
  if (!add_exit()) has_failed_ = true;
  hot_.put(w & ~(is_of_bit ? word{0x0007FFE0} : word{0x00FFFFE0}));
  put_exit(cold_, target);
  return next;
}

const unsigned char* inlined_thunk::follow_return(word w, const unsigned char* pc) {
  const known_value to = known_[link];
  if (w != ret) return leave(pc);
  const bool is_last = to.is != kind::number;
  if (is_last && stack_is_known_ && stack_.bytes() != 0) has_failed_ = true;
  if (to.is == kind::number) return reinterpret_cast<const unsigned char*>(to.number);
  if (to.is != kind::way_back) {
    hot_.put(w);
    leaves_ = true;
  }
  is_done_ = true;
  return nullptr;
}

const unsigned char* inlined_thunk::follow_branch(word w, const unsigned char* pc) {
  const way_on way = way_on_of(w);
  if (way.is_call && !follows_calls_) return leave(pc);
  if (way.is_call) set(link, {kind::number, reinterpret_cast<std::uint64_t>(pc + sizeof w)});
  switch (way.to) {
    case way_on::kind::jump: return pc + way.distance;
    case way_on::kind::jump_and_next: return way.is_call ? pc + way.distance : follow_condition(w, pc, way.distance);
    case way_on::kind::none: return follow_return(w, pc);
    default: return leave(pc);
  }
}

// Functions that keep registers are not copied: some must be where they are, as the probe of memory, whose load is
// known by its place.
const unsigned char* inlined_thunk::step(const unsigned char* pc) {
  constexpr std::size_t room_to_leave = 32;
  const word w = word_at(pc);
  if (hot_.count + room_to_leave > code_part::most || cold_.count + room_to_leave > code_part::most) return leave(pc);
  if (w == keeps_registers_word) return leave(pc);
  if (is_lane_mark(w)) return marked_code(pc);
  if (way_on_of(w).to != way_on::kind::next) return follow_branch(w, pc);
  return carry_out(w, pc) ? pc + sizeof w : leave(pc);
}

void inlined_thunk::begin(std::uint32_t w, const given& what) {
  known_.fill({});
  before_.fill({});
  known_[0] = {kind::state, 0};
  known_[1] = {kind::number, w};
  known_[link] = {kind::way_back, 0};
  known_vector_ = 0;
  word_is_stored_ = false;
  word_ = w;
  stack_is_known_ = true;
  stack_.clear();
  missing_ = set_ = set_of(0) | set_of(1) | set_of(link);
  usable_ = what.usable;
  written_predicates_ = what.written_predicates;
  follows_calls_ = what.follows_calls;
  pc_ = what.pc;
  flags_are_known_ = is_done_ = has_failed_ = knows_written_ = leaves_ = false;
  hot_.clear();
  cold_.clear();
  exit_count_ = way_on_count_ = 0;
}

std::optional<written_registers> inlined_thunk::written() const {
  written_registers all;
  for (const std::span<const word> part : {hot_.code(), cold_.code()}) {
    for (const word w : part) {
      if (way_on_of(w).to != way_on::kind::next) continue;
      const auto effect = effect_of(w);
      if (!effect) return {};
      all.x |= effect->x;
      all.v |= effect->v;
    }
  }
  return all;
}

bool inlined_thunk::make(sve_handler thunk, std::uint32_t w, const given& what) {
  constexpr int most_steps = 1000;
  begin(w, what);
  const unsigned char* pc = reinterpret_cast<const unsigned char*>(thunk);
  for (int i = 0; i != most_steps && pc; ++i) pc = step(pc);
  return is_done_ && !has_failed_ && !hot_.is_too_long && !cold_.is_too_long;
}

}  // namespace quern
