// A walk along all ways through a function's code.
#include "sve/trap/patch/written_registers.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "sve/decoder/decode_row.h"
#include "sve/trap/patch/instruction_effect.h"

namespace quern {
namespace {

std::uint64_t hash_of(const unsigned char* place) {
  return reinterpret_cast<std::uintptr_t>(place) * 0x9E3779B97F4A7C15 >> 32;
}

// Places of code, without the heap.
class place_set {
 public:
  void clear() {
    places_.fill(nullptr);
    count_ = 0;
  }
  bool is_full() const { return count_ == most; }
  // False, if it is in the set already.
  bool add(const unsigned char* place) {
    for (std::uint64_t at = hash_of(place);; ++at) {
      const unsigned char*& slot = places_[at % places_.size()];
      if (slot == place) return false;
      if (slot != nullptr) continue;
      slot = place;
      ++count_;
      return true;
    }
  }

 private:
  static constexpr std::size_t most = 6000;
  std::array<const unsigned char*, 8192> places_{};
  std::size_t count_ = 0;
};

class code_walk {
 public:
  void begin() {
    seen_.clear();
    written_ = {};
    waiting_count_ = 0;
  }
  // What the function writes, and all that has been looked at since the beginning. Calls through a register may be left
  // out, for who knows where they lead.
  written_registers go(const unsigned char* function, bool leaves_out_calls) {
    leaves_out_calls_ = leaves_out_calls;
    later(function);
    while (waiting_count_ != 0 && written_ != all_registers) follow(waiting_[--waiting_count_]);
    return written_;
  }

 private:
  void give_up() { written_ = all_registers; }

  void later(const unsigned char* place) {
    if (waiting_count_ == waiting_.size()) return give_up();
    waiting_[waiting_count_++] = place;
  }

  // To the way's end, or to where another way has been.
  void follow(const unsigned char* place) {
    while (place && seen_.add(place)) {
      if (seen_.is_full()) return give_up();
      place = step(place);
    }
  }

  // The next place on this way; null at its end.
  const unsigned char* step(const unsigned char* place) {
    std::uint32_t word;
    std::memcpy(&word, place, sizeof word);
    if (word == keeps_registers_word) return add({0x40030001, 0}), nullptr;
    const way_on way = way_on_of(word);
    if (way.is_call) add({set_of_link, 0});
    switch (way.to) {
      case way_on::kind::next: return carry_out(word) ? place + sizeof word : nullptr;
      case way_on::kind::jump: return place + way.distance;
      case way_on::kind::jump_and_next: later(place + way.distance); return place + sizeof word;
      case way_on::kind::elsewhere: return leaves_out(word) ? place + sizeof word : target_of_stub(place);
      default: return nullptr;
    }
  }

  bool leaves_out(std::uint32_t word) {
    const bool is_call = (word & 0xFFFFFC1F) == 0xD63F0000;
    if (is_call) add({set_of_link, 0});
    return is_call && leaves_out_calls_;
  }

  bool carry_out(std::uint32_t word) {
    const std::optional<written_registers> effect = effect_of(word);
    if (!effect) return give_up(), false;
    add(*effect);
    return true;
  }

  const unsigned char* target_of_stub(const unsigned char* jump) {
    const unsigned char* const* const slot = slot_of_stub(jump);
    if (!slot) return give_up(), nullptr;
    return *slot;
  }

  void add(const written_registers& more) {
    written_.x |= more.x;
    written_.v |= more.v;
  }

  static constexpr std::uint32_t set_of_link = std::uint32_t{1} << 30;

  place_set seen_;
  written_registers written_;
  std::array<const unsigned char*, 512> waiting_{};
  std::size_t waiting_count_ = 0;
  bool leaves_out_calls_ = false;
};

constinit code_walk walk{};

const unsigned char* code_at(const void* function) { return static_cast<const unsigned char*>(function); }

written_registers look_at(const decode_row& row) {
  walk.begin();
  const written_registers by_thunk = walk.go(reinterpret_cast<const unsigned char*>(row.thunk), row.library_function);
  return row.library_function ? walk.go(code_at(row.library_function()), false) : by_thunk;
}

}  // namespace

written_registers written_by(const unsigned char* function) {
  walk.begin();
  return walk.go(function, false);
}

written_registers written_by(const decode_row& row) {
  struct known_thunk {
    sve_handler thunk;
    written_registers written;
  };
  constinit static std::array<known_thunk, 2048> known{};
  known_thunk& slot = known[hash_of(reinterpret_cast<const unsigned char*>(row.thunk)) % known.size()];
  if (slot.thunk != row.thunk) slot = {row.thunk, look_at(row)};
  return slot.written;
}

}  // namespace quern
