// The store of saved vectors: untouched places cost address space only.
#include "sve/state/saved_vectors.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <cstring>

namespace quern {
namespace {

constexpr std::size_t bits_per_word = 64;

constinit std::array<saved_vectors, saved_vectors_capacity> places{};
constinit std::array<std::atomic<std::uint64_t>, saved_vectors_capacity / bits_per_word> in_use{};

// Claims one clear bit of a word of the map; answers its number, or 64 when all are set.
int claim(std::atomic<std::uint64_t>& word) {
  std::uint64_t seen = word.load(std::memory_order_relaxed);
  int bit;
  do {
    bit = std::countr_one(seen);
    if (bit == 64) return bit;
  } while (!word.compare_exchange_weak(seen, seen | std::uint64_t{1} << bit, std::memory_order_acquire));
  return bit;
}

saved_vectors* free_place() {
  for (std::size_t word = 0; word != in_use.size(); ++word) {
    if (const int bit = claim(in_use[word]); bit != 64) return &places[word * bits_per_word + std::size_t(bit)];
  }
  return nullptr;
}

}  // namespace

saved_vectors* save_vectors(const cpu_state& state) {
  saved_vectors* const place = free_place();
  if (place) {
    std::memcpy(place->z, state.z, sizeof state.z);
    std::memcpy(place->p, state.p, sizeof state.p);
    std::memcpy(place->ffr, state.ffr, sizeof state.ffr);
  }
  return place;
}

void restore_vectors(const saved_vectors& saved, cpu_state& state) {
  std::memcpy(state.z, saved.z, sizeof state.z);
  std::memcpy(state.p, saved.p, sizeof state.p);
  std::memcpy(state.ffr, saved.ffr, sizeof state.ffr);
}

void release_vectors(saved_vectors* saved) {
  if (!saved) return;
  const auto index = static_cast<std::size_t>(saved - places.data());
  in_use[index / bits_per_word].fetch_and(~(std::uint64_t{1} << index % bits_per_word), std::memory_order_release);
}

}  // namespace quern
