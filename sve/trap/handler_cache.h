// A small cache in front of the decoder, whose lookup walks 44 maps.
#pragma once

#include <array>
#include <cstdint>

#include "sve/state/cpu_state.h"

namespace quern {

// Direct-mapped, by instruction word: loops run few distinct words, and code that is rewritten needs no invalidation.
// One a thread. Zero-initialised it is valid, as word 0 is no emulated instruction.
class handler_cache {
 public:
  // What lookup(word) answers; lookup has no side effects and always answers the same.
  template <typename Lookup>
  sve_handler find(std::uint32_t word, Lookup lookup) {
    entry& slot = entries_[word * hash_factor >> (32 - index_bits)];
    if (slot.word != word) slot = {word, lookup(word)};
    return slot.handler;
  }

 private:
  struct entry {
    std::uint32_t word;
    sve_handler handler;
  };
  static constexpr int index_bits = 8;
  static constexpr std::uint32_t hash_factor = 0x9E3779B1;  // spreads register fields and opcodes alike to the top bits
  std::array<entry, 1 << index_bits> entries_;
};

}  // namespace quern
