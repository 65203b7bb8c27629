// Contiguous loads and stores of one register.
#include "sve/handlers/memory/contiguous.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

#define CONTIGUOUS(kind, name, T, U)                                                                                \
  aarch64_decode_rc sve_##name##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base, \
                                      int imm) {                                                                    \
    return move_contiguous<kind, T, U>(state, bytes_of(state, zt), bytes_of(state, pg),                             \
                                       read_x(state, base) + scaled(imm, lane_count<U> * sizeof(T)));               \
  }                                                                                                                 \
  aarch64_decode_rc sve_##name##_scaled_zprr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,                  \
                                             aarch64_i_rsp_reg base, aarch64_i_reg index) {                         \
    return move_contiguous<kind, T, U>(state, bytes_of(state, zt), bytes_of(state, pg),                             \
                                       read_x(state, base) + read_x(state, index) * sizeof(T));                     \
  }

#define SIGNED(letters, M, T, U) CONTIGUOUS(MEM_LOAD, ld1##letters, T, U)
#define ELEMENT(letters, M, T, U) SIGNED(letters, M, T, U) CONTIGUOUS(MEM_STORE, st1##letters, T, U)
#include "sve/handlers/memory/elements.def"

CONTIGUOUS(MEM_LOAD, ldnt1b, std::uint8_t, std::uint8_t)
CONTIGUOUS(MEM_LOAD, ldnt1h, std::uint16_t, std::uint16_t)
CONTIGUOUS(MEM_LOAD, ldnt1w, std::uint32_t, std::uint32_t)
CONTIGUOUS(MEM_LOAD, ldnt1d, std::uint64_t, std::uint64_t)
CONTIGUOUS(MEM_STORE, stnt1b, std::uint8_t, std::uint8_t)
CONTIGUOUS(MEM_STORE, stnt1h, std::uint16_t, std::uint16_t)
CONTIGUOUS(MEM_STORE, stnt1w, std::uint32_t, std::uint32_t)
CONTIGUOUS(MEM_STORE, stnt1d, std::uint64_t, std::uint64_t)

#undef CONTIGUOUS
