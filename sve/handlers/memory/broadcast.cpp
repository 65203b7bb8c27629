// Loads of one memory element into every active lane.
#include "sve/handlers/memory/broadcast.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// The element is read once, if any lane is active: nothing tells that from a read for each.
template <class T, class U>
aarch64_decode_rc broadcast(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  note_access(address, sizeof(T), MEM_LOAD);
  unsigned char *const z = bytes_of(state, zt), *const p = bytes_of(state, pg);
  const std::size_t first = first_element<U>(set_in{p});
  if (first == no_element) {
    std::memset(z, 0, VL_BYTES);
    return DECODE_OK;
  }
  const U element = read_first<T, U>(z, first, reinterpret_cast<const unsigned char*>(address));
  if (all_active<U>(p)) {
    fill_lanes(z, element);
  } else {
    zero_lanes<group_of<U>>([group = in_each_lane<group_of<U>>(element)] { return group; }, z, p);
  }
  return DECODE_OK;
}

}  // namespace

#define ELEMENT(letters, M, T, U)                                                                  \
  aarch64_decode_rc sve_ld1r##letters##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                             aarch64_i_rsp_reg base, unsigned int imm) {           \
    return broadcast<T, U>(state, zt, pg, read_x(state, base) + scaled(imm, M));                   \
  }
#include "sve/handlers/memory/elements.def"
