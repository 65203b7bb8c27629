// Non-fault and first-fault loads.
#include "sve/handlers/memory/fault_tolerant.h"

#include <algorithm>

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

template <class T, class U>
aarch64_decode_rc load_non_fault(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  unsigned char* z = state->z[zt.num];
  probed_page page(address);
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    const std::uint64_t element = address + i * sizeof(T);
    if (!is_active<U>(state->p[pg.num], i)) {
      set_lane<U>(z, i, U{0});
    } else if (page.holds(element)) {
      note_access(element, sizeof(T), MEM_LOAD);
      load_lane<T, U>(z, i, element);
    } else {
      set_lane<U>(state->ffr, i, U{0});
    }
  }
  trace_contiguous<T, U>(state, state->p[pg.num], address, MEM_LOAD);
  return DECODE_OK;
}

// The number of lanes of U to load. The next page is probed at the same offset, though not all of it is needed.
template <class U>
std::size_t lanes_before_fault(std::uint64_t address) {
  const bool ends_in_page = offset_in_page(address) <= offset_in_page(address + VL_BYTES);
  if (ends_in_page || readable(address + page_size)) return lane_count<U>;
  const int bytes_left = static_cast<int>(page_size) - offset_in_page(address);
  return static_cast<std::size_t>(std::min(bytes_left, VL_BYTES)) / sizeof(U);
}

template <class T, class U>
aarch64_decode_rc load_first_fault(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  const std::size_t lanes = lanes_before_fault<U>(address);
  if (lanes == lane_count<U>) {
    const auto load = [](auto vectors, unsigned char* z, const unsigned char* p, std::uint64_t from) {
      is_block<T, U>(vectors, p, from) ? load_block<T, U>(vectors, z, from) : load_elements<T, U>(z, p, from);
    };
    by_widest_vectors(load, state->z[zt.num], state->p[pg.num], address);
  } else {
    load_lanes<T, U>(state->z[zt.num], state->p[pg.num], address, lanes);
    std::memset(state->ffr + lanes * sizeof(U), 0, VL_BYTES - lanes * sizeof(U));
  }
  trace_contiguous<T, U>(state, state->p[pg.num], address, MEM_LOAD);
  return DECODE_OK;
}

}  // namespace

#define NON_FAULT(name, T, U)                                                                                   \
  aarch64_decode_rc sve_ldnf1##name##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,                \
                                           aarch64_i_rsp_reg base, int imm) {                                   \
    return load_non_fault<T, U>(state, zt, pg, value_of(state, base) + scaled(imm, lane_count<U> * sizeof(T))); \
  }

NON_FAULT(b, std::uint8_t, std::uint8_t)
NON_FAULT(b_h, std::uint8_t, std::uint16_t)
NON_FAULT(b_s, std::uint8_t, std::uint32_t)
NON_FAULT(b_d, std::uint8_t, std::uint64_t)
NON_FAULT(h, std::uint16_t, std::uint16_t)
NON_FAULT(h_s, std::uint16_t, std::uint32_t)
NON_FAULT(h_d, std::uint16_t, std::uint64_t)
NON_FAULT(w, std::uint32_t, std::uint32_t)
NON_FAULT(w_d, std::uint32_t, std::uint64_t)
NON_FAULT(d, std::uint64_t, std::uint64_t)
NON_FAULT(sb_h, std::int8_t, std::uint16_t)
NON_FAULT(sb_s, std::int8_t, std::uint32_t)
NON_FAULT(sb_d, std::int8_t, std::uint64_t)
NON_FAULT(sh_s, std::int16_t, std::uint32_t)
NON_FAULT(sh_d, std::int16_t, std::uint64_t)
NON_FAULT(sw_d, std::int32_t, std::uint64_t)

#undef NON_FAULT

#define FIRST_FAULT(name, T, U)                                                                               \
  aarch64_decode_rc sve_ldff1##name##_scaled_zprr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,       \
                                                  aarch64_i_rsp_reg base, aarch64_i_reg index) {              \
    return load_first_fault<T, U>(state, zt, pg, value_of(state, base) + value_of(state, index) * sizeof(T)); \
  }

FIRST_FAULT(b, std::uint8_t, std::uint8_t)
FIRST_FAULT(b_h, std::uint8_t, std::uint16_t)
FIRST_FAULT(b_s, std::uint8_t, std::uint32_t)
FIRST_FAULT(b_d, std::uint8_t, std::uint64_t)
FIRST_FAULT(w, std::uint32_t, std::uint32_t)
FIRST_FAULT(w_d, std::uint32_t, std::uint64_t)
FIRST_FAULT(d, std::uint64_t, std::uint64_t)

#undef FIRST_FAULT
