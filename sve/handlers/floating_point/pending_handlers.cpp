// Handlers that are declared but not there yet: each answers as an instruction without a routine does. Whoever writes
// one deletes its line here.
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/unimplemented.h"

using z = aarch64_z_reg;
using p = aarch64_p_reg;

#define PENDING(name, ...)                                                                           \
  aarch64_decode_rc name(cpu_state* state, __VA_ARGS__) {                                            \
    return quern::report_unimplemented(state, static_cast<std::uint32_t>(state->instr_word), #name); \
  }

PENDING(sve_fadd_zpz, z, p, z)
PENDING(sve_fsub_zpz, z, p, z)
PENDING(sve_fsubr_zpz, z, p, z)
PENDING(sve_fmul_zpz, z, p, z)
PENDING(sve_fdiv_zpz, z, p, z)
PENDING(sve_fdivr_zpz, z, p, z)
PENDING(sve_fmax_zpz, z, p, z)
PENDING(sve_fmaxnm_zpz, z, p, z)
PENDING(sve_fminnm_zpz, z, p, z)
PENDING(sve_fadd_zzz, z, z, z)
PENDING(sve_fsub_zzz, z, z, z)
PENDING(sve_fmul_zzz, z, z, z)
PENDING(sve_frecps_zzz, z, z, z)
PENDING(sve_fadd_zpi, z, p, aarch64_sve_fp_arith_imm)
PENDING(sve_fsub_zpi, z, p, aarch64_sve_fp_arith_imm)
PENDING(sve_fsubr_zpi, z, p, aarch64_sve_fp_arith_imm)
PENDING(sve_fmul_zpi, z, p, aarch64_sve_fp_arith_imm)
PENDING(sve_fsqrt_zpz, z, p, z)
PENDING(sve_frinta_zpz, z, p, z)
PENDING(sve_frecpe_zz, z, z)
PENDING(sve_fmla_zpzz, z, p, z, z)
PENDING(sve_fmls_zpzz, z, p, z, z)
PENDING(sve_fnmla_zpzz, z, p, z, z)
PENDING(sve_fnmls_zpzz, z, p, z, z)
PENDING(sve_fmad_zpzz, z, p, z, z)
PENDING(sve_fmsb_zpzz, z, p, z, z)
PENDING(sve_fnmad_zpzz, z, p, z, z)
PENDING(sve_fnmsb_zpzz, z, p, z, z)
PENDING(sve_fcmla_zpzzr, z, p, z, z, unsigned int)
PENDING(sve_fcmeq_ppzz, p, p, z, z)
PENDING(sve_fcmne_ppzz, p, p, z, z)
PENDING(sve_fcmge_ppzz, p, p, z, z)
PENDING(sve_fcmgt_ppzz, p, p, z, z)
PENDING(sve_fcmuo_ppzz, p, p, z, z)
PENDING(sve_fcmeq_ppz, p, p, z)
PENDING(sve_fcmge_ppz, p, p, z)
PENDING(sve_fcmgt_ppz, p, p, z)
PENDING(sve_fcmle_ppz, p, p, z)
PENDING(sve_fcmlt_ppz, p, p, z)
PENDING(sve_fcvt_s2d_zpz, z, p, z)
PENDING(sve_fcvt_d2s_zpz, z, p, z)
PENDING(sve_fcvtzs_s2s_zpz, z, p, z)
PENDING(sve_fcvtzs_s2d_zpz, z, p, z)
PENDING(sve_fcvtzs_d2s_zpz, z, p, z)
PENDING(sve_fcvtzs_d2d_zpz, z, p, z)
PENDING(sve_fcvtzu_d2s_zpz, z, p, z)
PENDING(sve_fcvtzu_d2d_zpz, z, p, z)
PENDING(sve_scvtf_s2s_zpz, z, p, z)
PENDING(sve_scvtf_s2d_zpz, z, p, z)
PENDING(sve_scvtf_d2s_zpz, z, p, z)
PENDING(sve_scvtf_d2d_zpz, z, p, z)
PENDING(sve_ucvtf_s2s_zpz, z, p, z)
PENDING(sve_ucvtf_s2d_zpz, z, p, z)
PENDING(sve_ucvtf_d2d_zpz, z, p, z)
PENDING(sve_fmaxnmv_vpz, unsigned int, p, z)
PENDING(sve_fminnmv_vpz, unsigned int, p, z)

#undef PENDING
