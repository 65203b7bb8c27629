// Marked instructions of an inlined thunk, which what is known of predicates makes needless.
#include "sve/trap/patch/inlined_thunk.h"

#include "sve/state/lane_marks.h"
#include "sve/trap/patch/instruction_classes.h"

namespace quern {
namespace {

using namespace aarch64;
using kind = known_value::kind;

}  // namespace

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
  if (cold_.count + room_needed > code_part::most || !add_exit()) return false;
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

}  // namespace quern
