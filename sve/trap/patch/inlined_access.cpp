// Loads and stores of an inlined thunk: those in the state go by its own address, or by one near by.
#include "sve/trap/patch/inlined_thunk.h"

#include <cstring>

#include "sve/trap/patch/constant_memory.h"
#include "sve/trap/patch/instruction_classes.h"

namespace quern {
namespace {

using namespace aarch64;
using kind = known_value::kind;

// Whether a whole number of units from 0 to `most` makes the offset.
bool fits(std::uint64_t offset, unsigned scale, std::uint64_t most) {
  return (offset & ((std::uint64_t{1} << scale) - 1)) == 0 && offset >> scale <= most;
}

constexpr std::uint64_t max_unsigned_offset = 4095;
constexpr std::int64_t max_pair_offset = 63;

}  // namespace

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

}  // namespace quern
