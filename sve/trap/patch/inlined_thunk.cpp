// A walk along the common way through a thunk's code: what is known is carried out, the rest is copied.
#include "sve/trap/patch/inlined_thunk.h"

#include <bit>
#include <cstring>

#include "sve/state/lane_marks.h"
#include "sve/trap/patch/constant_memory.h"
#include "sve/trap/patch/instruction_classes.h"
#include "sve/trap/patch/instruction_effect.h"
#include "sve/trap/patch/known_lanes.h"

namespace quern {
namespace {

using namespace aarch64;
using kind = known_value::kind;

constexpr std::uint32_t link = 30, none = 31;

constexpr std::uint32_t set_of(std::uint32_t n) { return n == none ? 0 : std::uint32_t{1} << n; }

word word_at(const unsigned char* pc) {
  word w;
  std::memcpy(&w, pc, sizeof w);
  return w;
}

// Of sums, logical operations and conditional comparisons.
bool sets_flags(word w) {
  const bool is_sum = is::sum_with_immediate(w) || is::sum_of_registers(w) || is::sum_with_carry(w);
  const bool is_logical = is::logical_with_immediate(w) || is::logical_of_registers(w);
  return is::conditional_comparison(w) || (is_sum && is_set(w, 29)) || (is_logical && field(w, 30, 29) == 3);
}

bool reads_flags(word w) {
  return is::sum_with_carry(w) || is::conditional_comparison(w) || is::conditional_selection(w);
}

// Whether a whole number of units from 0 to `most` makes the offset.
bool fits(std::uint64_t offset, unsigned scale, std::uint64_t most) {
  return (offset & ((std::uint64_t{1} << scale) - 1)) == 0 && offset >> scale <= most;
}

constexpr std::uint64_t max_unsigned_offset = 4095;
constexpr std::int64_t max_pair_offset = 63;

}  // namespace

template <class Part>
void inlined_thunk::put_known(Part& part, std::uint32_t n) {
  put_value(part, n, known_[n]);
}

template <class Part>
void inlined_thunk::put_value(Part& part, std::uint32_t n, known_value value) {
  if (value.is == kind::way_back) return part.put_way_back(n);
  if (value.is == kind::stack) {
    const std::uint64_t offset = value.number - stack_.top();
    if (offset > 4095) part.is_too_long = true;
    return part.put(add_x({n}, sp, offset & 4095));
  }
  if (value.is == kind::state) {
    const bool is_far = value.number >> 12 != 0;
    if (value.number >> 24 != 0) part.is_too_long = true;
    if (is_far) part.put(add_x_4096({n}, base, value.number >> 12 & 4095));
    if (!is_far || (value.number & 4095) != 0) part.put(add_x({n}, {is_far ? n : base.number}, value.number & 4095));
    return;
  }
  put_number(part, n, value.number);
}

template <class Part>
void inlined_thunk::put_number(Part& part, std::uint32_t n, std::uint64_t number) {
  bool is_first = true;
  for (word quarter = 0; quarter != 4; ++quarter) {
    const word bits = number >> (16 * quarter) & 0xFFFF;
    const bool is_needed = bits != 0 || (is_first && quarter == 3);
    if (is_needed) part.put(is_first ? movz_x({n}, bits, quarter) : movk_x({n}, bits, quarter));
    is_first = is_first && !is_needed;
  }
}

// One that the thunk can't have use for, as it has not set it, nor is it an argument's or to be kept.
std::uint32_t inlined_thunk::unused_register() const {
  const std::uint32_t unused = usable_ & temporaries & ~set_;
  return unused == 0 ? none : static_cast<std::uint32_t>(std::countr_zero(unused));
}

template <class Part>
void inlined_thunk::put_flags(Part& part) {
  const std::uint32_t n = unused_register();
  if (n == none) has_failed_ = true;
  part.put(movz_x({n}, flags_ >> 16, 1));
  part.put(msr(system_register::nzcv, {n}));
}

// The stack as the thunk would have it, and its pointer.
template <class Part>
void inlined_thunk::put_stack(Part& part) {
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

template <class Part>
void inlined_thunk::put_exit(Part& part, const unsigned char* target) {
  leaves_ = true;
  put_stack(part);
  for (std::uint32_t n = 0; n != none; ++n)
    if (missing_ & set_of(n)) put_known(part, n);
  if (flags_are_known_) put_flags(part);
  for (std::uint32_t p = 0; p != known_lanes::predicates; ++p)
    if (written_predicates_ >> p & 1) known_lanes::forget(p, [&](word w) { part.put(w); });
  const std::uint32_t n = unused_register();
  if (n == none) has_failed_ = true;
  if (word_is_stored_) {
    put_number(part, n, word_);
    part.put(str_x({n}, base, offsetof(cpu_state, instr_word)));
  }
  part.put(ldr_x_literal({n}, 4 * sizeof(word)));
  part.put(str_x({n}, base, offsetof(cpu_state, pc)));
  part.put(ldr_x_literal({n}, 4 * sizeof(word)));
  part.put(br({n}));
  for (const unsigned char* const address : {pc_, target}) {
    const auto number = reinterpret_cast<std::uint64_t>(address);
    part.put(static_cast<word>(number));
    part.put(static_cast<word>(number >> 32));
  }
}

const unsigned char* inlined_thunk::leave(const unsigned char* target) {
  put_exit(hot_, target);
  is_done_ = true;
  return nullptr;
}

// Takes note of a way from the next instructions of the hot code to the next of the cold.
bool inlined_thunk::add_exit() {
  if (exit_count_ == exits_.size()) return false;
  exits_[exit_count_++] = {static_cast<std::uint16_t>(hot_.count), static_cast<std::uint16_t>(cold_.count)};
  return true;
}

void inlined_thunk::put_instr_word() {
  const std::uint32_t n = unused_register();
  if (!word_is_stored_) return;
  if (n == none) has_failed_ = true;
  put_number(hot_, n, word_);
  hot_.put(str_x({n}, base, offsetof(cpu_state, instr_word)));
  word_is_stored_ = false;
}

// For an instruction that is copied. The state's address may come back from it without being known.
void inlined_thunk::need(std::uint32_t n) {
  if (n != none && known_[n].is == kind::state) put_instr_word();
  need_base(n);
}

// For an access by the register. A number that takes more than two moves is loaded.
void inlined_thunk::need_base(std::uint32_t n) {
  if (n != none && known_[n].is == kind::stack) write_stack();
  if (!(missing_ & set_of(n))) return;
  missing_ &= ~set_of(n);
  const known_value value = known_[n];
  if (value.is == kind::number && value.number >> 32 != 0 && add_exit()) {
    hot_.put(ldr_x_literal({n}, 0));
    cold_.put(static_cast<word>(value.number));
    cold_.put(static_cast<word>(value.number >> 32));
  } else {
    put_known(hot_, n);
  }
}

void inlined_thunk::need_flags() {
  if (flags_are_known_) put_flags(hot_);
  flags_are_known_ = false;
}

void inlined_thunk::set(std::uint32_t n, known_value value) {
  if (n == none) return;
  before_[n] = value_in_processor(n);
  known_[n] = value;
  missing_ |= set_of(n);
  set_ |= set_of(n);
}

// From memory, or by an instruction that is copied.
void inlined_thunk::load(std::uint32_t n) {
  if (n == none) return;
  known_[n] = {};
  missing_ &= ~set_of(n);
  set_ |= set_of(n);
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

// The distance of an address in the state from its start, if the base is known to be one.
std::optional<std::uint64_t> inlined_thunk::distance_in_state(std::uint32_t n) const {
  if (n == none || known_[n].is != kind::state) return {};
  return known_[n].number;
}

// What the register has in the processor, which may be less than is known to be in it.
known_value inlined_thunk::value_in_processor(std::uint32_t n) const {
  return missing_ & set_of(n) ? before_[n] : known_[n];
}

// A register by which the address of that distance from the state is in reach, units from the register's address; none
// if there is none.
std::optional<inlined_thunk::place_in_reach> inlined_thunk::reach(std::uint64_t distance, std::int64_t unit) const {
  const auto units_from = [=](std::uint64_t from) -> std::optional<std::int64_t> {
    const auto bytes = static_cast<std::int64_t>(distance - from);
    if (bytes % unit != 0 || bytes / unit < -max_pair_offset - 1 || bytes / unit > max_pair_offset) return {};
    return bytes / unit;
  };
  if (const auto units = units_from(0)) return place_in_reach{base.number, *units};
  for (std::uint32_t n = 0; n != none; ++n) {
    const known_value value = value_in_processor(n);
    if (value.is != kind::state) continue;
    if (const auto units = units_from(value.number)) return place_in_reach{n, *units};
  }
  return {};
}

// In the state, by any register that has an address near by. A base that the access moves is known behind it as well.
bool inlined_thunk::pair_access(word w) {
  constexpr word offset_field = 0x7F << 15, mode_field = 3 << 23, plain = 2 << 23, moved_behind = 1 << 23;
  const bool is_vector = is_set(w, 26), is_load = is_set(w, 22), moves_base = is_set(w, 23);
  const std::uint32_t t = field(w, 4, 0), t2 = field(w, 14, 10), n = field(w, 9, 5), size = field(w, 31, 30);
  const bool writes_kept = (is_load && !is_vector && (is_kept(t) || is_kept(t2))) || (moves_base && is_kept(n));
  if (writes_kept || (size == 1 && !is_vector)) return false;
  if (!is_vector && !is_load) need(t), need(t2);
  const std::int64_t unit = is_vector ? 4 << size : size == 2 ? 8 : 4;
  const auto by = static_cast<std::uint64_t>(signed_field(w, 21, 15) * unit);
  const auto known = (w & mode_field) != 0 ? distance_in_state(n) : std::nullopt;
  if (known) {
    const std::uint64_t distance = (w & mode_field) == moved_behind ? *known : *known + by;
    if (!reach(distance, unit)) need_base(n);
    const place_in_reach place = *reach(distance, unit);
    const word others = with_base(w & ~(offset_field | mode_field), {place.from});
    hot_.put(others | plain | scaled(place.units, 1, 7) << 15);
  } else {
    need_base(n);
    hot_.put(w);
  }
  if (is_load && !is_vector) load(t), load(t2);
  if (moves_base && known) set(n, {kind::state, *known + by});
  if (moves_base && !known) load(n);
  return true;
}

// What the index register of an access adds to its address.
std::optional<std::uint64_t> inlined_thunk::known_index(word w, unsigned scale) const {
  const std::uint32_t m = field(w, 20, 16), option = field(w, 15, 13);
  const known_value by = m == none ? known_value{kind::number, 0} : known_[m];
  const bool is_doubleword = is_set(option, 0), is_unsigned_word = option == 2;
  if (by.is != kind::number || !(is_doubleword || is_unsigned_word)) return {};
  return (is_doubleword ? by.number : by.number & 0xFFFFFFFF) << (is_set(w, 12) ? scale : 0);
}

// The word is stored by each thunk, and read by few.
bool inlined_thunk::access_instr_word(word w, std::uint64_t offset, bool is_load) {
  const std::uint32_t t = field(w, 4, 0), size = field(w, 31, 30), operation = field(w, 23, 22);
  if (offset != offsetof(cpu_state, instr_word) || t == none) return false;
  const known_value stored{kind::number, word_};
  if (!is_load && size == 3 && known_[t] == stored) return word_is_stored_ = true;
  if (!is_load || operation != 1 || size < 2 || !word_is_stored_) return false;
  set(t, stored);
  return true;
}

// LDR of a doubleword that never changes.
bool inlined_thunk::load_constant(word w) {
  const std::uint32_t t = field(w, 4, 0), n = field(w, 9, 5);
  const bool is_unsigned = (w & 0x3FC00000) == 0x39400000;
  if (!is_unsigned || is_kept(t) || n == none || known_[n].is != kind::number) return false;
  const std::size_t bytes = std::size_t{1} << field(w, 31, 30);
  const std::uint64_t address = known_[n].number + field(w, 21, 10) * bytes;
  if (!is_constant_memory(address, bytes)) return false;
  std::uint64_t value = 0;
  std::memcpy(&value, reinterpret_cast<const void*>(address), bytes);
  set(t, {kind::number, value});
  return true;
}

bool inlined_thunk::single_access(word w) {
  if (load_constant(w)) return true;
  const bool is_vector = is_set(w, 26);
  const std::uint32_t t = field(w, 4, 0), n = field(w, 9, 5), m = field(w, 20, 16), size = field(w, 31, 30);
  const std::uint32_t operation = field(w, 23, 22), mode = field(w, 11, 10);
  const unsigned scale = is_vector ? (operation >> 1) << 2 | size : size;
  const bool is_load = is_vector ? is_set(operation, 0) : operation != 0;
  const bool is_prefetch = !is_vector && size == 3 && operation == 2;
  const bool has_unsigned = is_set(w, 24), has_register = !has_unsigned && is_set(w, 21);
  const bool moves_base = !has_unsigned && !has_register && is_set(mode, 0);
  const bool is_other = !has_unsigned && (has_register ? mode != 2 : mode == 2);
  const bool writes_kept = (is_load && !is_vector && is_kept(t)) || (moves_base && is_kept(n));
  if (is_prefetch || is_other || writes_kept) return false;
  const bool is_moved_behind = moves_base && mode == 1;
  const auto by = static_cast<std::uint64_t>(signed_field(w, 20, 12));
  const auto in_state = distance_in_state(n);
  auto offset = in_state;  // from the state, or from the base's own address
  if (has_unsigned) {
    if (offset) *offset += std::uint64_t{field(w, 21, 10)} << scale;
  } else if (has_register) {
    offset = known_index(w, scale);
    if (offset) *offset += in_state.value_or(0);
  } else if (offset && !is_moved_behind) {
    *offset += by;
  }
  if (in_state && offset && !is_vector && !moves_base && access_instr_word(w, *offset, is_load)) return true;
  if (in_state && offset == offsetof(cpu_state, pc)) return false;  // the thunk itself is told it
  if (!is_vector && !is_load) need(t);
  const bool is_in_reach = offset && fits(*offset, scale, max_unsigned_offset);
  if (is_in_reach) {
    if (!in_state) need_base(n);
    const word rebased = in_state ? with_base(w, base) : w;
    hot_.put((rebased & ~word{0x3FFC00}) | word{1} << 24 | static_cast<word>(*offset >> scale) << 10);
  } else {
    need_base(n);
    if (has_register) need(m);
    hot_.put(w);
  }
  if (is_load && !is_vector) load(t);
  if (moves_base && is_in_reach) set(n, {kind::state, *in_state + by});
  if (moves_base && !is_in_reach) load(n);
  return true;
}

bool inlined_thunk::access(word w) {
  if (is::pair_access(w)) return pair_access(w);
  if (is::single_access(w)) return single_access(w);
  const bool moves_base = is_set(w, 23);
  const std::uint32_t n = field(w, 9, 5);
  if (!is::structure_access(w) || (moves_base && is_kept(n))) return false;
  need_base(n);
  if (moves_base) need(field(w, 20, 16));
  hot_.put(w);
  if (moves_base) load(n);
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

// The predicate whose bytes begin where the register points to.
std::optional<std::uint32_t> inlined_thunk::predicate_at(std::uint32_t n) const {
  const auto distance = distance_in_state(n);
  if (!distance || *distance < offsetof(cpu_state, p)) return {};
  const std::uint64_t from_first = *distance - offsetof(cpu_state, p), number = from_first / VL_BYTES;
  if (from_first % VL_BYTES != 0 || number >= known_lanes::predicates) return {};
  return static_cast<std::uint32_t>(number);
}

// Instructions that needn't be carried out where enough is known of a predicate: the hot code asks for that, the cold
// code has them. Where that can't be, they are like any others, as marks do nothing.
const unsigned char* inlined_thunk::marked_code(const unsigned char* mark) {
  const unsigned char *const begin = mark + sizeof(word), *end = begin;
  const std::uint32_t what = lane_mark_of(word_at(mark));
  if (what == static_cast<std::uint32_t>(lane_mark::end)) return begin;
  while (!is_lane_mark(word_at(end))) end += sizeof(word);
  const bool is_fill = what >= static_cast<std::uint32_t>(lane_mark::fill);
  const marked_instructions code{field(word_at(mark), 9, 5), field(word_at(mark), 20, 16), what % 4, {begin, end}};
  const bool is_done = is_fill ? fill_predicate(code) : find_inactive(code);
  return is_done ? end + sizeof(word) : begin;
}

// To the cold code, where the bit says that not enough is known.
bool inlined_thunk::go_to_cold(word bit) {
  constexpr std::size_t room_needed = 96;
  if (cold_.count + room_needed > max_cold_words || !add_exit()) return false;
  hot_.put(tbz_x(known_lanes::keeper, bit, 0));
  return true;
}

void inlined_thunk::put_marked(const marked_instructions& code) {
  if (missing_ & set_of(code.at)) put_known(cold_, code.at);
  for (const unsigned char* pc = code.place.data(); pc != code.place.data() + code.place.size(); pc += sizeof(word))
    cold_.put(word_at(pc));
  load(code.at);
}

void inlined_thunk::put_way_on() {
  ways_on_[way_on_count_++] = {static_cast<std::uint16_t>(cold_.count), static_cast<std::uint16_t>(hot_.count)};
  cold_.put(b(0));
}

// The hot code goes on with the answer that all lanes are active. With the other one the thunk does, at once where that
// is known: as a lane of any size is inactive, or none but those of the next wider size is active.
bool inlined_thunk::find_inactive(const marked_instructions& code) {
  const auto predicate = predicate_at(code.at);
  if (!predicate || !go_to_cold(known_lanes::active_bit(*predicate, code.size))) return false;
  const auto to_here = [this](std::size_t from) {
    return static_cast<std::int64_t>((cold_.count - from) * sizeof(word));
  };
  const bool may_know_other = *predicate < known_lanes::filled_predicates,
             has_wider = code.size + 1 < known_lanes::sizes;
  const std::size_t begin = cold_.count;
  if (may_know_other) cold_.put(udf());
  if (may_know_other && has_wider) cold_.put(udf());
  put_marked(code);
  load(code.result);
  const std::size_t branch = cold_.count;
  cold_.put(udf());
  if (may_know_other) {
    const auto put_test = [&](std::size_t at, word bit) {
      cold_.words[at] = tbnz_x(known_lanes::keeper, bit, to_here(at));
    };
    cold_.put(known_lanes::learn_partial(*predicate, {code.result}));
    put_test(begin, known_lanes::partial_bit(*predicate));
    if (has_wider) put_test(begin + 1, known_lanes::filled_bit(*predicate, code.size + 1));
    cold_.put(movz_x({code.result}, 1));
  }
  put_exit(cold_, code.place.data() + code.place.size());
  cold_.words[branch] = cbz_x({code.result}, to_here(branch));
  cold_.put(known_lanes::learn_active(*predicate, code.size));
  put_way_on();
  set(code.result, {kind::number, 0});
  return true;
}

bool inlined_thunk::fill_predicate(const marked_instructions& code) {
  const auto predicate = predicate_at(code.at);
  if (!predicate || *predicate >= known_lanes::filled_predicates) return false;
  if (!go_to_cold(known_lanes::filled_bit(*predicate, code.size))) return false;
  put_marked(code);
  known_lanes::forget(*predicate, [this](word w) { cold_.put(w); });
  cold_.put(known_lanes::learn_active(*predicate, code.size));
  cold_.put(known_lanes::learn_filled(*predicate, code.size));
  put_way_on();
  knows_written_ = true;
  return true;
}

// Functions that keep registers are not copied: some must be where they are, as the probe of memory, whose load is
// known by its place.
const unsigned char* inlined_thunk::step(const unsigned char* pc) {
  constexpr std::size_t room_to_leave = 32;
  const word w = word_at(pc);
  if (hot_.count + room_to_leave > max_hot_words || cold_.count + room_to_leave > max_cold_words) return leave(pc);
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
