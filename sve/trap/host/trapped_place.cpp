// The places of traps, counted for `quern run`.
#include "sve/trap/host/trapped_place.h"

#include <dlfcn.h>
#include <link.h>

#include <cstring>

#include "sve/decoder/vector_space.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/signal_frame.h"

namespace quern {
namespace {

// The linker is asked in the way that takes no lock: the signal may be of its own code.
code_origin origin_of(std::uint64_t address) {
  dl_find_object found;
  if (_dl_find_object(reinterpret_cast<void*>(address), &found) != 0) return {};
  const auto base = reinterpret_cast<std::uint64_t>(found.dlfo_map_start);
  return {module_number(base, found.dlfo_link_map->l_name), base};
}

}  // namespace

void open_trap_report() { open_place_report(origin_of); }

placed_word place_of(const ucontext_t& frame) {
  const unsigned char* const pc = frame_pc(frame);
  placed_word place{reinterpret_cast<std::uint64_t>(pc), 0};
  std::memcpy(&place.word, pc, sizeof place.word);
  return place;
}

void refuse(const placed_word& place) {
  if (is_vector_word(place.word) && count_refused(place)) kernel::leave_by_own_failure();
}

}  // namespace quern
