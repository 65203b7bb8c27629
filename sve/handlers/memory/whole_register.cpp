// Spill and fill of whole vectors and predicates.
#include "sve/handlers/memory/whole_register.h"

#include <cstring>

#include "sve/handlers/memory/memory_access.h"
#include "sve/state/predicate_bits.h"

using namespace quern;

namespace {

// Where the register of `bytes` bytes goes or comes from, in the access that follows.
unsigned char* place(const cpu_state* state, aarch64_i_rsp_reg base, int imm, std::size_t bytes,
                     memaccess_type_t kind) {
  const std::uint64_t address = read_x(state, base) + scaled(imm, bytes);
  note_access(address, bytes, kind);
  return reinterpret_cast<unsigned char*>(address);
}

// Of two pages the second may be the one that faults.
[[gnu::noinline]] void load_from_two_pages(unsigned char* z, const unsigned char* from) {
  const destination_kept<MEM_LOAD, 1> kept({z});
  copy_vector(z, from);
}

}  // namespace

aarch64_decode_rc sve_ldr_zri(cpu_state* state, aarch64_z_reg zt, aarch64_i_rsp_reg base, int imm) {
  unsigned char* const z = bytes_of(state, zt);
  const unsigned char* const from = place(state, base, imm, VL_BYTES, MEM_LOAD);
  if (!is_in_page(reinterpret_cast<std::uint64_t>(from), VL_BYTES)) [[unlikely]] {
    load_from_two_pages(z, from);
  } else {
    copy_vector(z, from);
  }
  return DECODE_OK;
}

aarch64_decode_rc sve_str_zri(cpu_state* state, aarch64_z_reg zt, aarch64_i_rsp_reg base, int imm) {
  copy_vector(place(state, base, imm, VL_BYTES, MEM_STORE), bytes_of(state, zt));
  return DECODE_OK;
}

aarch64_decode_rc sve_ldr_pri(cpu_state* state, aarch64_p_reg pt, aarch64_i_rsp_reg base, int imm) {
  unsigned char image[predicate_image_bytes];
  std::memcpy(image, place(state, base, imm, sizeof image, MEM_LOAD), sizeof image);
  unpack_predicate(image, bytes_of(state, pt));
  return DECODE_OK;
}

aarch64_decode_rc sve_str_pri(cpu_state* state, aarch64_p_reg pt, aarch64_i_rsp_reg base, int imm) {
  unsigned char image[predicate_image_bytes];
  pack_predicate(bytes_of(state, pt), image);
  std::memcpy(place(state, base, imm, sizeof image, MEM_STORE), image, sizeof image);
  return DECODE_OK;
}
