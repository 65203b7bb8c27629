// The table of unpredicated vector operations: arithmetic, logic, dot products, addresses, INDEX and permutes.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/integer/address.h"
#include "sve/handlers/integer/index.h"
#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/handlers/integer/integer_logic.h"
#include "sve/handlers/integer/shift.h"
#include "sve/handlers/permute/interleave.h"
#include "sve/handlers/permute/permute.h"

namespace quern {
namespace {

template <auto Handler>
constexpr auto vectors = direct<Handler, Zd, Zn, Zm>;
template <auto Handler>
constexpr auto vectors_fp = direct_fp<Handler, Zd, Zn, Zm>;
constexpr auto library_vectors = library<Zd, Zn, Zm>;

constexpr auto arithmetic =
    group(row<U8, U16, U32, U64>("AddVVX", "00000100 zz 1 mmmmm 000000 nnnnn ddddd", vectors<sve_add_zzz>),
          row<U8, U16, U32, U64>("SubVVX", "00000100 zz 1 mmmmm 000001 nnnnn ddddd", vectors<sve_sub_zzz>),
          row<S8, S16, S32, S64>("QAddVVX", "00000100 zz 1 mmmmm 000100 nnnnn ddddd", library_vectors),
          row<U8, U16, U32, U64>("QAddVVX", "00000100 zz 1 mmmmm 000101 nnnnn ddddd", library_vectors),
          row<S8, S16, S32, S64>("QSubVVX", "00000100 zz 1 mmmmm 000110 nnnnn ddddd", library_vectors),
          row<U8, U16, U32, U64>("QSubVVX", "00000100 zz 1 mmmmm 000111 nnnnn ddddd", library_vectors),
          row<U64>("AndVVX", "00000100 00 1 mmmmm 001100 nnnnn ddddd", vectors<sve_and_zzz>),
          row<U64>("OrVVX", "00000100 01 1 mmmmm 001100 nnnnn ddddd", vectors<sve_orr_zzz>),
          row<U64>("XorVVX", "00000100 10 1 mmmmm 001100 nnnnn ddddd", vectors<sve_eor_zzz>),
          row<U64>("BicVVX", "00000100 11 1 mmmmm 001100 nnnnn ddddd", vectors<sve_bic_zzz>),
          row<S8, S16, S32>("ShrVWX", "00000100 zz 1 mmmmm 100000 nnnnn ddddd", library<Zd, Zn, Zm.of(size_d)>),
          row<U8, U16, U32>("ShrVWX", "00000100 zz 1 mmmmm 100001 nnnnn ddddd", library<Zd, Zn, Zm.of(size_d)>),
          row<U8, U16, U32>("ShlVWX", "00000100 zz 1 mmmmm 100011 nnnnn ddddd", library<Zd, Zn, Zm.of(size_d)>),
          row<S32>("ShrVIX", "00000100 011 iiiii 100100 nnnnn ddddd", direct<sve_asr_zzi, Zd, Zn, right16_s>),
          row<U32>("ShrVIX", "00000100 011 iiiii 100101 nnnnn ddddd", library<Zd, Zn, right16_s>),
          row<U32>("ShlVIX", "00000100 011 iiiii 100111 nnnnn ddddd", direct<sve_lsl_zzi, Zd, Zn, left16_s>),
          row<S32>("DotVVVX", "01000100 zz 0 mmmmm 000000 nnnnn ddddd", library<Zda, Zn.of(size_b), Zm.of(size_b)>),
          row<S64>("DotVVVX", "01000100 zz 0 mmmmm 000000 nnnnn ddddd", library<Zda, Zn.of(size_h), Zm.of(size_h)>),
          row<S32>("DotVVVIX", "01000100 101 ii mmm 000000 nnnnn ddddd",
                   library<Zda, Zn.of(size_b), Zm_low8.of(size_b), index2>),
          row<S64>("DotVVVIX", "01000100 111 i mmmm 000000 nnnnn ddddd",
                   library<Zda, Zn.of(size_h), Zm_low16.of(size_h), index1>),
          row<U32>("DotVVVX", "01000100 zz 0 mmmmm 000001 nnnnn ddddd", library<Zda, Zn.of(size_b), Zm.of(size_b)>),
          row<U64>("DotVVVX", "01000100 zz 0 mmmmm 000001 nnnnn ddddd", library<Zda, Zn.of(size_h), Zm.of(size_h)>),
          row<U32>("DotVVVIX", "01000100 101 ii mmm 000001 nnnnn ddddd",
                   library<Zda, Zn.of(size_b), Zm_low8.of(size_b), index2>),
          row<U64>("DotVVVIX", "01000100 111 i mmmm 000001 nnnnn ddddd",
                   library<Zda, Zn.of(size_h), Zm_low16.of(size_h), index1>));

constexpr auto float_arithmetic =
    group(row<F32, D64>("AddVVX", "01100101 zz 0 mmmmm 000000 nnnnn ddddd", vectors_fp<sve_fadd_zzz>),
          row<F16>("AddVVX", "01100101 zz 0 mmmmm 000000 nnnnn ddddd", library_vectors),
          row<F32, D64>("SubVVX", "01100101 zz 0 mmmmm 000001 nnnnn ddddd", vectors_fp<sve_fsub_zzz>),
          row<F16>("SubVVX", "01100101 zz 0 mmmmm 000001 nnnnn ddddd", library_vectors),
          row<F32, D64>("MulVVX", "01100101 zz 0 mmmmm 000010 nnnnn ddddd", vectors_fp<sve_fmul_zzz>),
          row<F16>("MulVVX", "01100101 zz 0 mmmmm 000010 nnnnn ddddd", library_vectors),
          row<F16, F32, D64>("TRISMULVV", "01100101 zz 0 mmmmm 000011 nnnnn ddddd", library_vectors),
          row<F32, D64>("RecpSVV", "01100101 zz 0 mmmmm 000110 nnnnn ddddd", vectors_fp<sve_frecps_zzz>),
          row<F16>("RecpSVV", "01100101 zz 0 mmmmm 000110 nnnnn ddddd", library_vectors),
          row<F16, F32, D64>("RSqrtSVV", "01100101 zz 0 mmmmm 000111 nnnnn ddddd", library_vectors),
          row<F16, F32, D64>("TRISSELVV", "00000100 zz 1 mmmmm 101100 nnnnn ddddd", library_vectors),
          row<F32>("FMAVVVIX", "01100100 101 ii mmm 000000 nnnnn ddddd", library<Zda, Zn, Zm_low8, index2>),
          row<D64>("FMAVVVIX", "01100100 111 i mmmm 000000 nnnnn ddddd", library<Zda, Zn, Zm_low16, index1>),
          row<F32>("FMSVVVIX", "01100100 101 ii mmm 000001 nnnnn ddddd", library<Zda, Zn, Zm_low8, index2>),
          row<D64>("FMSVVVIX", "01100100 111 i mmmm 000001 nnnnn ddddd", library<Zda, Zn, Zm_low16, index1>),
          row<F32>("MulVVIX", "01100100 101 ii mmm 001000 nnnnn ddddd", library<Zd, Zn, Zm_low8, index2>),
          row<D64>("MulVVIX", "01100100 111 i mmmm 001000 nnnnn ddddd", library<Zd, Zn, Zm_low16, index1>));

// The packed forms take the offsets as they stand, in words or doublewords.
constexpr auto addresses =
    group(row<U64>("LEA1VV", "00000100 111 mmmmm 101000 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm>),
          row<U32>("LEA1VV", "00000100 101 mmmmm 101000 nnnnn ddddd", library<Zd, Zn, Zm>),
          row<U64>("LEA1XVV", "00000100 001 mmmmm 101000 nnnnn ddddd", library<Zd, Zn, Zm_sxtw>),
          row<U64>("LEA1YVV", "00000100 011 mmmmm 101000 nnnnn ddddd", library<Zd, Zn, Zm_uxtw>),
          row<U64>("LEA2VV", "00000100 111 mmmmm 101001 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm.times(2)>),
          row<U32>("LEA2VV", "00000100 101 mmmmm 101001 nnnnn ddddd", library<Zd, Zn, Zm.times(2)>),
          row<U64>("LEA2XVV", "00000100 001 mmmmm 101001 nnnnn ddddd", library<Zd, Zn, Zm_sxtw.times(2)>),
          row<U64>("LEA2YVV", "00000100 011 mmmmm 101001 nnnnn ddddd", library<Zd, Zn, Zm_uxtw.times(2)>),
          row<U64>("LEA4VV", "00000100 111 mmmmm 101010 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm.times(4)>),
          row<U32>("LEA4VV", "00000100 101 mmmmm 101010 nnnnn ddddd", library<Zd, Zn, Zm.times(4)>),
          row<U64>("LEA4XVV", "00000100 001 mmmmm 101010 nnnnn ddddd", library<Zd, Zn, Zm_sxtw.times(4)>),
          row<U64>("LEA4YVV", "00000100 011 mmmmm 101010 nnnnn ddddd", library<Zd, Zn, Zm_uxtw.times(4)>),
          row<U64>("LEA8VV", "00000100 111 mmmmm 101011 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm.times(8)>),
          row<U32>("LEA8VV", "00000100 101 mmmmm 101011 nnnnn ddddd", library<Zd, Zn, Zm.times(8)>),
          row<U64>("LEA8XVV", "00000100 001 mmmmm 101011 nnnnn ddddd", library<Zd, Zn, Zm_sxtw.times(8)>),
          row<U64>("LEA8YVV", "00000100 011 mmmmm 101011 nnnnn ddddd", library<Zd, Zn, Zm_uxtw.times(8)>));

constexpr auto permutes = group(
    row<S8, S16, S32, S64>("IndexII", "00000100 zz 1 iiiii 010000 jjjjj ddddd",
                           direct<sve_index_zii, Zd, imm5_low_s, imm5b_s>),
    row<S8, S16, S32, S64>("IndexSI", "00000100 zz 1 iiiii 010001 nnnnn ddddd", direct<sve_index_zri, Zd, Rn, imm5_s>),
    row<S8, S16, S32, S64>("IndexIS", "00000100 zz 1 mmmmm 010010 jjjjj ddddd",
                           direct<sve_index_zir, Zd, imm5_low_s, Rm>),
    row<S8, S16, S32, S64>("IndexSS", "00000100 zz 1 mmmmm 010011 nnnnn ddddd", direct<sve_index_zrr, Zd, Rn, Rm>),
    row<U8, U16, U32, U64>("TblVV", "00000101 zz 1 mmmmm 001100 nnnnn ddddd",
                           direct<sve_tbl_zzz, Zd, Zn.as(operand_kind::z_list), Zm>),
    row<U8, U16, U32, U64>("Zip1VV", "00000101 zz 1 mmmmm 011000 nnnnn ddddd", vectors<sve_zip1_zzz>),
    row<U8, U16, U32, U64>("Zip2VV", "00000101 zz 1 mmmmm 011001 nnnnn ddddd", vectors<sve_zip2_zzz>),
    row<U8, U16, U32, U64>("Uzp1VV", "00000101 zz 1 mmmmm 011010 nnnnn ddddd", vectors<sve_uzp1_zzz>),
    row<U8, U16, U32, U64>("Uzp2VV", "00000101 zz 1 mmmmm 011011 nnnnn ddddd", vectors<sve_uzp2_zzz>),
    row<U8, U16, U32, U64>("Trn1VV", "00000101 zz 1 mmmmm 011100 nnnnn ddddd", vectors<sve_trn1_zzz>),
    row<U8, U16, U32, U64>("Trn2VV", "00000101 zz 1 mmmmm 011101 nnnnn ddddd", vectors<sve_trn2_zzz>));
}  // namespace

QUERN_DECODE_TABLE(31_21__15_10, 135, arithmetic, float_arithmetic, addresses, permutes)

}  // namespace quern
