// What an inlined thunk knows of registers, brought to the processor when something needs it there.
#include "sve/trap/patch/inlined_thunk.h"

#include <bit>

namespace quern {
namespace {

using namespace aarch64;
using kind = known_value::kind;

}  // namespace

void inlined_thunk::put_known(code_part& part, std::uint32_t n) { put_value(part, n, known_[n]); }

void inlined_thunk::put_value(code_part& part, std::uint32_t n, known_value value) {
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

void inlined_thunk::put_number(code_part& part, std::uint32_t n, std::uint64_t number) {
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

void inlined_thunk::put_flags(code_part& part) {
  const std::uint32_t n = unused_register();
  if (n == none) has_failed_ = true;
  part.put(movz_x({n}, flags_ >> 16, 1));
  part.put(msr(system_register::nzcv, {n}));
}

void inlined_thunk::put_exit(code_part& part, const unsigned char* target) {
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

}  // namespace quern
