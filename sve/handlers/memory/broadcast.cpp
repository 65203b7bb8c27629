// Loads of one memory element into every active lane.
#include "sve/handlers/memory/broadcast.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// What most loads don't need, in a function of its own, so that the others save no registers.
template <class T, class U>
[[gnu::noinline]] aarch64_decode_rc broadcast_some(unsigned char* z, const unsigned char* p,
                                                   const unsigned char* source) {
  const std::size_t first = first_element<U>(set_in{p});
  if (first == no_element) {
    std::memset(z, 0, VL_BYTES);
    return DECODE_OK;
  }
  const auto group = in_each_lane<group_of<U>>(read_first<T, U>(z, first, source));
  zero_lanes<group_of<U>>([=] { return group; }, z, p);
  return DECODE_OK;
}

// The element is read once, if any lane is active: nothing tells that from a read for each.
template <class T, class U>
aarch64_decode_rc broadcast(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  note_access(address, sizeof(T), MEM_LOAD);
  unsigned char *const z = bytes_of(state, zt), *const p = bytes_of(state, pg);
  const auto* const source = reinterpret_cast<const unsigned char*>(address);
  if (!all_active<U>(p)) [[unlikely]]
    return broadcast_some<T, U>(z, p, source);
  settle();
  fill_lanes(z, static_cast<U>(lane<T>(source, 0)));
  return DECODE_OK;
}

}  // namespace

#define ELEMENT(letters, M, T, U)                                                                  \
  aarch64_decode_rc sve_ld1r##letters##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                             aarch64_i_rsp_reg base, unsigned int imm) {           \
    return broadcast<T, U>(state, zt, pg, read_x(state, base) + scaled(imm, M));                   \
  }
#include "sve/handlers/memory/elements.def"
