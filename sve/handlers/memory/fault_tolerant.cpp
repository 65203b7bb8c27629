// Non-fault and first-fault loads.
#include "sve/handlers/memory/fault_tolerant.h"

#include <cstring>

#include "sve/handlers/memory/memory_access.h"
#include "sve/memory/guest_memory.h"

using namespace quern;

namespace {

int offset_in_page(std::uint64_t address) {
  return static_cast<int>(static_cast<std::uint32_t>(address) & (page_size - 1));
}

bool readable(std::uint64_t address) { return addr_is_readable<char>(reinterpret_cast<volatile char*>(address)); }

// The page that a walk of ascending addresses is in: probed by the first byte asked for in it.
class probed_page {
 public:
  explicit probed_page(std::uint64_t address) : readable_(readable(address)), last_(offset_in_page(address)) {}

  bool is_readable() const { return readable_; }

  // Asked again for the very byte that was probed, it probes again.
  bool holds(std::uint64_t address) {
    const int offset = offset_in_page(address);
    if (offset <= last_) {
      readable_ = readable(address);
      last_ = offset;
    }
    return readable_;
  }

 private:
  bool readable_;
  int last_;  // offset of the probed byte
};

// Lane by lane, from `page`, where the first one is.
template <class T, class U>
[[gnu::noinline]] aarch64_decode_rc load_in_steps(cpu_state* state, unsigned char* z, unsigned char* p,
                                                  std::uint64_t address, probed_page page) {
  const destination_kept<MEM_LOAD, 2> kept({z, state->ffr});  // an element's second page is not probed
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    const std::uint64_t element = address + i * sizeof(T);
    if (!is_active<U>(p, i)) {
      skip_lane<MEM_LOAD, U>(z, i);
    } else if (page.holds(element)) {
      note_access(element, sizeof(T), MEM_LOAD);
      move_lane<MEM_LOAD, T, U>(z, i, element);
    } else {
      set_lane<U>(state->ffr, i, U{0});
    }
  }
  trace_contiguous<MEM_LOAD, T, U>(state, p, address);
  return DECODE_OK;
}

// In one page that can be read no lane faults.
template <class T, class U>
aarch64_decode_rc load_non_fault(cpu_state* state, unsigned char* z, unsigned char* p, std::uint64_t address) {
  probed_page page(address);
  const bool in_one_page = left_in_page(address) >= lane_count<U> * sizeof(T);
  if (in_one_page && page.is_readable() && (!is_active<U>(p, 0) || page.holds(address))) [[likely]]
    return move_contiguous<MEM_LOAD, T, U>(state, z, p, address);
  return load_in_steps<T, U>(state, z, p, address, page);
}

// A first-fault load whose vector would reach the end of the page. The next page is probed at the same offset, though
// not all of it is needed; if it can't be read, only the lanes are loaded that fit in this one, as if each took U's
// bytes. In a function of its own, so that the others save no registers.
template <class T, class U>
[[gnu::noinline]] aarch64_decode_rc load_at_page_end(cpu_state* state, unsigned char* z, unsigned char* p,
                                                     std::uint64_t address) {
  const int bytes_left = static_cast<int>(page_size) - offset_in_page(address);
  if (readable(address + page_size) || bytes_left >= VL_BYTES)
    return move_contiguous<MEM_LOAD, T, U>(state, z, p, address);
  const std::size_t lanes = static_cast<std::size_t>(bytes_left) / sizeof(U);
  move_lanes<MEM_LOAD, T, U>(z, p, address, lanes);
  std::memset(state->ffr + lanes * sizeof(U), 0, VL_BYTES - lanes * sizeof(U));
  trace_contiguous<MEM_LOAD, T, U>(state, p, address);
  return DECODE_OK;
}

template <class T, class U>
aarch64_decode_rc load_first_fault(cpu_state* state, unsigned char* z, unsigned char* p, std::uint64_t address) {
  const bool ends_in_page = offset_in_page(address) <= offset_in_page(address + VL_BYTES);
  if (!ends_in_page) [[unlikely]]
    return load_at_page_end<T, U>(state, z, p, address);
  return move_contiguous<MEM_LOAD, T, U>(state, z, p, address);
}

}  // namespace

#define ELEMENT(letters, M, T, U)                                                                   \
  aarch64_decode_rc sve_ldnf1##letters##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                              aarch64_i_rsp_reg base, int imm) {                    \
    return load_non_fault<T, U>(state, state->z[zt.num], state->p[pg.num],                          \
                                read_x(state, base) + scaled(imm, lane_count<U> * sizeof(T)));      \
  }
#include "sve/handlers/memory/elements.def"

#define ELEMENT(letters, M, T, U)                                                                          \
  aarch64_decode_rc sve_ldff1##letters##_scaled_zprr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                                     aarch64_i_rsp_reg base, aarch64_i_reg index) {        \
    return load_first_fault<T, U>(state, state->z[zt.num], state->p[pg.num],                               \
                                  read_x(state, base) + read_x(state, index) * M);                         \
  }
#define HALFWORD(letters, M, T, U)
#define SIGNED(letters, M, T, U)
#include "sve/handlers/memory/elements.def"
