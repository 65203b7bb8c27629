// Tables of floating-point forms with operands of their own: constants, comparison with zero, complex arithmetic, and
// multiplication by one half-precision element.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/integer/shift.h"

namespace quern {
namespace {

template <auto Handler, operand Constant>
constexpr auto with_constant = direct_fp<Handler, Zdn, Pg_m, Constant>;
template <operand Constant>
constexpr auto library_with_constant = library<Zdn, Pg_m, Constant>;

}  // namespace

QUERN_DECODE_TABLE(
    31_13__9_6, 24,
    row<F32, D64>("AddVIM", "01100101 zz 011000 100 ggg 0000 i ddddd", with_constant<sve_fadd_zpi, i1_half_one>),
    row<F16>("AddVIM", "01100101 zz 011000 100 ggg 0000 i ddddd", library_with_constant<i1_half_one>),
    row<F32, D64>("SubVIM", "01100101 zz 011001 100 ggg 0000 i ddddd", with_constant<sve_fsub_zpi, i1_half_one>),
    row<F16>("SubVIM", "01100101 zz 011001 100 ggg 0000 i ddddd", library_with_constant<i1_half_one>),
    row<F32, D64>("MulVIM", "01100101 zz 011010 100 ggg 0000 i ddddd", with_constant<sve_fmul_zpi, i1_half_two>),
    row<F16>("MulVIM", "01100101 zz 011010 100 ggg 0000 i ddddd", library_with_constant<i1_half_two>),
    row<F32, D64>("SubRVIM", "01100101 zz 011011 100 ggg 0000 i ddddd", with_constant<sve_fsubr_zpi, i1_half_one>),
    row<F16>("SubRVIM", "01100101 zz 011011 100 ggg 0000 i ddddd", library_with_constant<i1_half_one>),
    row<F16, F32, D64>("MaxNumVIM", "01100101 zz 011100 100 ggg 0000 i ddddd", library_with_constant<i1_zero_one>),
    row<F16, F32, D64>("MinNumVIM", "01100101 zz 011101 100 ggg 0000 i ddddd", library_with_constant<i1_zero_one>),
    row<F16, F32, D64>("MaxVIM", "01100101 zz 011110 100 ggg 0000 i ddddd", library_with_constant<i1_zero_one>),
    row<F16, F32, D64>("MinVIM", "01100101 zz 011111 100 ggg 0000 i ddddd", library_with_constant<i1_zero_one>))

QUERN_DECODE_TABLE(
    31_13__4_4, 18,
    row<F32, D64>("CmpGEV0Z", "01100101 zz 010000 001 ggg nnnnn 0 dddd", direct_fp<sve_fcmge_ppz, Pd, Pg_z, Zn>),
    row<F16>("CmpGEV0Z", "01100101 zz 010000 001 ggg nnnnn 0 dddd", library<Pd, Pg_z, Zn>),
    row<F32, D64>("CmpGTV0Z", "01100101 zz 010000 001 ggg nnnnn 1 dddd", direct_fp<sve_fcmgt_ppz, Pd, Pg_z, Zn>),
    row<F16>("CmpGTV0Z", "01100101 zz 010000 001 ggg nnnnn 1 dddd", library<Pd, Pg_z, Zn>),
    row<F32, D64>("CmpLTV0Z", "01100101 zz 010001 001 ggg nnnnn 0 dddd", direct_fp<sve_fcmlt_ppz, Pd, Pg_z, Zn>),
    row<F16>("CmpLTV0Z", "01100101 zz 010001 001 ggg nnnnn 0 dddd", library<Pd, Pg_z, Zn>),
    row<F32, D64>("CmpLEV0Z", "01100101 zz 010001 001 ggg nnnnn 1 dddd", direct_fp<sve_fcmle_ppz, Pd, Pg_z, Zn>),
    row<F16>("CmpLEV0Z", "01100101 zz 010001 001 ggg nnnnn 1 dddd", library<Pd, Pg_z, Zn>),
    row<F32, D64>("CmpEQV0Z", "01100101 zz 010010 001 ggg nnnnn 0 dddd", direct_fp<sve_fcmeq_ppz, Pd, Pg_z, Zn>),
    row<F16>("CmpEQV0Z", "01100101 zz 010010 001 ggg nnnnn 0 dddd", library<Pd, Pg_z, Zn>),
    row<F16, F32, D64>("CmpNEV0Z", "01100101 zz 010011 001 ggg nnnnn 0 dddd", library<Pd, Pg_z, Zn>))

QUERN_DECODE_TABLE(31_17__15_13, 3,
                   row<F16, F32, D64>("FCADDVVM", "01100100 zz 00000 r 100 ggg mmmmm ddddd",
                                      library<Zdn, Pg_m, Zm5, rot16>))

QUERN_DECODE_TABLE(31_21__15_15, 3,
                   row<F32, D64>("FCMLAVVVM", "01100100 zz 0 mmmmm 0 rr ggg nnnnn ddddd",
                                 direct_fp<sve_fcmla_zpzzr, Zda, Pg_m, Zn, Zm, rot13>),
                   row<F16>("FCMLAVVVM", "01100100 zz 0 mmmmm 0 rr ggg nnnnn ddddd", library<Zda, Pg_m, Zn, Zm, rot13>))

QUERN_DECODE_TABLE(31_21__15_12, 2,
                   row<F16>("FCMLAVVVIX", "01100100 101 ii mmm 0001 rr nnnnn ddddd",
                            library<Zda, Zn, Zm_low8, index2, rot10>),
                   row<F32>("FCMLAVVVIX", "01100100 111 i mmmm 0001 rr nnnnn ddddd",
                            library<Zda, Zn, Zm_low16, index1, rot10>))

// The index of a halfword and the amount of a doubleword's shift both take over bit 22.
QUERN_DECODE_TABLE(31_23__21_21__15_10, 6,
                   row<F16>("FMAVVVIX", "01100100 0i1 ii mmm 000000 nnnnn ddddd", library<Zda, Zn, Zm_low8, index3>),
                   row<F16>("FMSVVVIX", "01100100 0i1 ii mmm 000001 nnnnn ddddd", library<Zda, Zn, Zm_low8, index3>),
                   row<F16>("MulVVIX", "01100100 0i1 ii mmm 001000 nnnnn ddddd", library<Zd, Zn, Zm_low8, index3>),
                   row<S64>("ShrVIX", "00000100 1i1 iiiii 100100 nnnnn ddddd", direct<sve_asr_zzi, Zd, Zn, right16_d>),
                   row<U64>("ShrVIX", "00000100 1i1 iiiii 100101 nnnnn ddddd", library<Zd, Zn, right16_d>),
                   row<U64>("ShlVIX", "00000100 1i1 iiiii 100111 nnnnn ddddd", direct<sve_lsl_zzi, Zd, Zn, left16_d>))

}  // namespace quern
