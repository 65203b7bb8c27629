// The records of all rewritten instructions.
#include "sve/client/emulated_place.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <new>

namespace quern {
namespace {

// Lists that only grow.
constinit std::array<std::atomic<const emulated_place*>, 4096> lists{};

auto& list_of(const unsigned char* pc) {
  const auto instruction = reinterpret_cast<std::uintptr_t>(pc) / sizeof(std::uint32_t);
  return lists[instruction % lists.size()];
}

}  // namespace

// Two threads at one place may each add a record; only a block that is built again looks for an earlier one, and finds
// the later of the two.
const emulated_place* record_of(const emulated_place& wanted) {
  auto& list = list_of(wanted.pc);
  const emulated_place* const first = list.load(std::memory_order_acquire);
  for (const emulated_place* place = first; place != nullptr; place = place->next)
    if (place->is_same(wanted)) return place;
  void* const memory = dr_global_alloc(sizeof wanted);
  auto* const added = new (memory) emulated_place{wanted};
  added->next = first;
  while (!list.compare_exchange_weak(added->next, added, std::memory_order_release)) continue;
  return added;
}

void free_places() {
  for (auto& list : lists) {
    const emulated_place* next = nullptr;
    for (const emulated_place* place = list.exchange(nullptr); place != nullptr; place = next) {
      next = place->next;
      dr_global_free(const_cast<emulated_place*>(place), sizeof *place);
    }
  }
}

}  // namespace quern
