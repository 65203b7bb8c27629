// Tables of element moves: DUP and CPY of immediates, registers and elements, INSR, SEL, REV, unpacking, unpredicated
// MOVPRFX; the floating-point estimates and FEXPA, which share their place.
#include "sve/handlers/permute/element_move.h"
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/permute/move_prefix.h"
#include "sve/handlers/permute/permute.h"

namespace quern {

QUERN_DECODE_TABLE(31_24__21_21__16_10, 1,
                   row<U8>("ExtDupVI", "00000101 ii 1 iiii1 001000 nnnnn ddddd",
                           direct<sve_dup_zzi, Zd, Zn, dup_index_b>))
QUERN_DECODE_TABLE(31_24__21_21__17_10, 1,
                   row<U16>("ExtDupVI", "00000101 ii 1 iii10 001000 nnnnn ddddd",
                            direct<sve_dup_zzi, Zd, Zn, dup_index_h>))
QUERN_DECODE_TABLE(31_24__21_21__18_10, 1,
                   row<U32>("ExtDupVI", "00000101 ii 1 ii100 001000 nnnnn ddddd",
                            direct<sve_dup_zzi, Zd, Zn, dup_index_s>))
QUERN_DECODE_TABLE(31_24__21_21__19_10, 1,
                   row<U64>("ExtDupVI", "00000101 ii 1 i1000 001000 nnnnn ddddd",
                            direct<sve_dup_zzi, Zd, Zn, dup_index_d>))
QUERN_DECODE_TABLE(31_24__21_10, 1,
                   row<U128>("ExtDupVI", "00000101 ii 1 10000 001000 nnnnn ddddd",
                             direct<sve_dup_zzi, Zd, Zn, dup_index_q>))

QUERN_DECODE_TABLE(31_21__15_14, 4,
                   row<U8, U16, U32, U64>("SelVV", "00000101 zz 1 mmmmm 11 gggg nnnnn ddddd",
                                          direct<sve_sel_zpzz, Zd, Pg4, Zn, Zm>))

QUERN_DECODE_TABLE(31_20__15_14, 8,
                   row<S8, S16, S32, S64>("DupIZ", "00000101 zz 01 gggg 00 iiiiiiiii ddddd",
                                          direct<sve_cpy_zpi, Zd, Pg16_z, imm9_shifted_s>),
                   row<S8, S16, S32, S64>("DupIM", "00000101 zz 01 gggg 01 iiiiiiiii ddddd",
                                          direct<sve_cpy_zpi, Zd, Pg16_m, imm9_shifted_s>))

namespace {

constexpr operand whole_Zd = Zd.as(operand_kind::z_whole), whole_Zn = Zn.as(operand_kind::z_whole);

// A result of twice the source's element width.
template <auto Handler, std::uint32_t SourceSize>
constexpr auto unpack = direct<Handler, Zd, Zn.of(SourceSize)>;
template <std::uint32_t SourceSize>
constexpr auto library_unpack = library<Zd, Zn.of(SourceSize)>;

}  // namespace

QUERN_DECODE_TABLE(
    31_10, 38,  //
    row<U8, U16, U32, U64>("DupS", "00000101 zz 100000 001110 nnnnn ddddd", direct<sve_dup_zr, Zd, Rn_sp>),
    row<U8, U16, U32, U64>("InsertS", "00000101 zz 100100 001110 mmmmm ddddd", library<Zdn, Rm5>),
    row<B8, H16, F32, D64>("InsertS", "00000101 zz 110100 001110 mmmmm ddddd", library<Zdn, Vm5>),
    row<U8, U16, U32, U64>("ReverseV", "00000101 zz 111000 001110 nnnnn ddddd", direct<sve_rev_zz, Zd, Zn>),
    row<S16>("UnpackLoV", "00000101 zz 110000 001110 nnnnn ddddd", library_unpack<size_b>),
    row<S32>("UnpackLoV", "00000101 zz 110000 001110 nnnnn ddddd", library_unpack<size_h>),
    row<S64>("UnpackLoV", "00000101 zz 110000 001110 nnnnn ddddd", unpack<sve_sunpklo_s2d_zz, size_s>),
    row<S16>("UnpackHiV", "00000101 zz 110001 001110 nnnnn ddddd", library_unpack<size_b>),
    row<S32>("UnpackHiV", "00000101 zz 110001 001110 nnnnn ddddd", library_unpack<size_h>),
    row<S64>("UnpackHiV", "00000101 zz 110001 001110 nnnnn ddddd", unpack<sve_sunpkhi_s2d_zz, size_s>),
    row<U16>("UnpackLoV", "00000101 zz 110010 001110 nnnnn ddddd", unpack<sve_uunpklo_b2h_zz, size_b>),
    row<U32>("UnpackLoV", "00000101 zz 110010 001110 nnnnn ddddd", unpack<sve_uunpklo_h2s_zz, size_h>),
    row<U64>("UnpackLoV", "00000101 zz 110010 001110 nnnnn ddddd", unpack<sve_uunpklo_s2d_zz, size_s>),
    row<U16>("UnpackHiV", "00000101 zz 110011 001110 nnnnn ddddd", unpack<sve_uunpkhi_b2h_zz, size_b>),
    row<U32>("UnpackHiV", "00000101 zz 110011 001110 nnnnn ddddd", unpack<sve_uunpkhi_h2s_zz, size_h>),
    row<U64>("UnpackHiV", "00000101 zz 110011 001110 nnnnn ddddd", unpack<sve_uunpkhi_s2d_zz, size_s>),
    row<U32>("SpecialMoveV", "00000100 00 100000 101111 nnnnn ddddd", direct<sve_movprfx_zz, whole_Zd, whole_Zn>),
    row<F16, F32, D64>("EXPAV", "00000100 zz 100000 101110 nnnnn ddddd", library<Zd, Zn>),
    row<F32, D64>("RecpEV", "01100101 zz 001110 001100 nnnnn ddddd", direct_fp<sve_frecpe_zz, Zd, Zn>),
    row<F16>("RecpEV", "01100101 zz 001110 001100 nnnnn ddddd", library<Zd, Zn>),
    row<F16, F32, D64>("RSqrtEV", "01100101 zz 001111 001100 nnnnn ddddd", library<Zd, Zn>))

}  // namespace quern
