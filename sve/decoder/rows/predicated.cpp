// The table of predicated vector operations with the element size in the key: integer and floating-point arithmetic,
// shifts, reductions, conversions, and moves between elements and scalars.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/floating_point/float_bits.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/integer/divide.h"
#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/handlers/integer/integer_logic.h"
#include "sve/handlers/integer/integer_unary.h"
#include "sve/handlers/integer/multiply.h"
#include "sve/handlers/integer/reduce.h"
#include "sve/handlers/integer/shift.h"
#include "sve/handlers/permute/element_move.h"
#include "sve/handlers/permute/last_element.h"
#include "sve/handlers/permute/move_prefix.h"

namespace quern {
namespace {

// Zdn = Zdn op Zm, merging.
template <auto Handler>
constexpr auto binary = direct<Handler, Zdn, Pg_m, Zm5>;
template <auto Handler>
constexpr auto binary_fp = direct_fp<Handler, Zdn, Pg_m, Zm5>;
constexpr auto library_binary = library<Zdn, Pg_m, Zm5>;

// Zd = op(Zn), merging.
template <auto Handler>
constexpr auto unary = direct<Handler, Zd, Pg_m, Zn>;
template <auto Handler>
constexpr auto unary_fp = direct_fp<Handler, Zd, Pg_m, Zn>;
constexpr auto library_unary = library<Zd, Pg_m, Zn>;

template <auto Handler, std::uint32_t To, std::uint32_t From>
constexpr auto convert = direct_fp<Handler, Zd.of(To), Pg_m, Zn.of(From)>;
template <std::uint32_t To, std::uint32_t From>
constexpr auto library_convert = library<Zd.of(To), Pg_m, Zn.of(From)>;

// A scalar in a vector, from the active lanes of Zn.
template <auto Handler>
constexpr auto reduction = direct<Handler, Vd, Pg, Zn>;
constexpr auto library_reduction = library<Vd, Pg, Zn>;

constexpr auto integer_arithmetic =
    group(row<U8, U16, U32, U64>("AddVVM", "00000100 zz 000000 000 ggg mmmmm ddddd", binary<sve_add_zpz>),
          row<U8, U16, U32, U64>("SubVVM", "00000100 zz 000001 000 ggg mmmmm ddddd", binary<sve_sub_zpz>),
          row<U8, U16, U32, U64>("SubRVVM", "00000100 zz 000011 000 ggg mmmmm ddddd", library_binary),
          row<S8, S16, S32, S64>("MaxVVM", "00000100 zz 001000 000 ggg mmmmm ddddd", binary<sve_smax_zpz>),
          row<U8, U16, U32, U64>("MaxVVM", "00000100 zz 001001 000 ggg mmmmm ddddd", binary<sve_umax_zpz>),
          row<S8, S16, S32, S64>("MinVVM", "00000100 zz 001010 000 ggg mmmmm ddddd", binary<sve_smin_zpz>),
          row<U8, U16, U32, U64>("MinVVM", "00000100 zz 001011 000 ggg mmmmm ddddd", binary<sve_umin_zpz>),
          row<S8, S16, S32, S64>("AbdVVM", "00000100 zz 001100 000 ggg mmmmm ddddd", library_binary),
          row<U8, U16, U32, U64>("AbdVVM", "00000100 zz 001101 000 ggg mmmmm ddddd", library_binary),
          row<S8, S16, S32, S64>("MulVVM", "00000100 zz 010000 000 ggg mmmmm ddddd", binary<sve_mul_zpz>),
          row<S8, S16, S32, S64>("MulHVVM", "00000100 zz 010010 000 ggg mmmmm ddddd", library_binary),
          row<U8, U16, U32, U64>("MulHVVM", "00000100 zz 010011 000 ggg mmmmm ddddd", library_binary),
          row<S32, S64>("DivVVM", "00000100 zz 010100 000 ggg mmmmm ddddd", binary<sve_sdiv_zpz>),
          row<U32, U64>("DivVVM", "00000100 zz 010101 000 ggg mmmmm ddddd", binary<sve_udiv_zpz>),
          row<S32, S64>("DivRVVM", "00000100 zz 010110 000 ggg mmmmm ddddd", binary<sve_sdivr_zpz>),
          row<U32, U64>("DivRVVM", "00000100 zz 010111 000 ggg mmmmm ddddd", binary<sve_udivr_zpz>),
          row<U8, U16, U32, U64>("OrVVM", "00000100 zz 011000 000 ggg mmmmm ddddd", binary<sve_orr_zpz>),
          row<U8, U16, U32, U64>("XorVVM", "00000100 zz 011001 000 ggg mmmmm ddddd", binary<sve_eor_zpz>),
          row<U8, U16, U32, U64>("AndVVM", "00000100 zz 011010 000 ggg mmmmm ddddd", binary<sve_and_zpz>),
          row<U8, U16, U32, U64>("BicVVM", "00000100 zz 011011 000 ggg mmmmm ddddd", binary<sve_bic_zpz>));

constexpr auto shifts =
    group(row<S8, S16, S32, S64>("ShrVVM", "00000100 zz 010000 100 ggg mmmmm ddddd", binary<sve_asr_zpz>),
          row<U8, U16, U32, U64>("ShrVVM", "00000100 zz 010001 100 ggg mmmmm ddddd", binary<sve_lsr_zpz>),
          row<U8, U16, U32, U64>("ShlVVM", "00000100 zz 010011 100 ggg mmmmm ddddd", binary<sve_lsl_zpz>),
          row<S8, S16, S32, S64>("ShrRVVM", "00000100 zz 010100 100 ggg mmmmm ddddd", library_binary),
          row<U8, U16, U32, U64>("ShrRVVM", "00000100 zz 010101 100 ggg mmmmm ddddd", library_binary),
          row<U8, U16, U32, U64>("ShlRVVM", "00000100 zz 010111 100 ggg mmmmm ddddd", library_binary),
          row<S8, S16, S32>("ShrVWM", "00000100 zz 011000 100 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5.of(size_d)>),
          row<U8, U16, U32>("ShrVWM", "00000100 zz 011001 100 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5.of(size_d)>),
          row<U8, U16, U32>("ShlVWM", "00000100 zz 011011 100 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5.of(size_d)>),
          row<S32>("ShrVIM", "00000100 01 000000 100 ggg iiiii ddddd", direct<sve_asr_zpi, Zdn, Pg_m, right_s>),
          row<U32>("ShrVIM", "00000100 01 000001 100 ggg iiiii ddddd", library<Zdn, Pg_m, right_s>),
          row<U32>("ShlVIM", "00000100 01 000011 100 ggg iiiii ddddd", direct<sve_lsl_zpi, Zdn, Pg_m, left_s>),
          row<S32>("ShrDVIM", "00000100 01 000100 100 ggg iiiii ddddd", library<Zdn, Pg_m, right_s>));

constexpr auto integer_unary =
    group(row<S16>("Extnd12VM", "00000100 zz 010000 101 ggg nnnnn ddddd", unary<sve_sxtb_zpz>),
          row<S32>("Extnd14VM", "00000100 zz 010000 101 ggg nnnnn ddddd", unary<sve_sxtb_zpz>),
          row<S64>("Extnd18VM", "00000100 zz 010000 101 ggg nnnnn ddddd", unary<sve_sxtb_zpz>),
          row<U16>("Extnd12VM", "00000100 zz 010001 101 ggg nnnnn ddddd", library_unary),
          row<U32>("Extnd14VM", "00000100 zz 010001 101 ggg nnnnn ddddd", library_unary),
          row<U64>("Extnd18VM", "00000100 zz 010001 101 ggg nnnnn ddddd", library_unary),
          row<S32>("Extnd24VM", "00000100 zz 010010 101 ggg nnnnn ddddd", unary<sve_sxth_zpz>),
          row<S64>("Extnd28VM", "00000100 zz 010010 101 ggg nnnnn ddddd", unary<sve_sxth_zpz>),
          row<U32>("Extnd24VM", "00000100 zz 010011 101 ggg nnnnn ddddd", unary<sve_uxth_zpz>),
          row<U64>("Extnd28VM", "00000100 zz 010011 101 ggg nnnnn ddddd", unary<sve_uxth_zpz>),
          row<S64>("Extnd48VM", "00000100 zz 010100 101 ggg nnnnn ddddd", unary<sve_sxtw_zpz>),
          row<U64>("Extnd48VM", "00000100 zz 010101 101 ggg nnnnn ddddd", unary<sve_uxtw_zpz>),
          row<S8, S16, S32, S64>("AbsVM", "00000100 zz 010110 101 ggg nnnnn ddddd", library_unary),
          row<S8, S16, S32, S64>("NegVM", "00000100 zz 010111 101 ggg nnnnn ddddd", unary<sve_neg_zpz>),
          row<U8, U16, U32, U64>("ClsVM", "00000100 zz 011000 101 ggg nnnnn ddddd", library_unary),
          row<U8, U16, U32, U64>("ClzVM", "00000100 zz 011001 101 ggg nnnnn ddddd", library_unary),
          row<U8, U16, U32, U64>("CntVM", "00000100 zz 011010 101 ggg nnnnn ddddd", library_unary),
          row<U8, U16, U32, U64>("NotVM", "00000100 zz 011011 101 ggg nnnnn ddddd", library_unary),
          row<U8, U16, U32, U64>("InvVM", "00000100 zz 011110 101 ggg nnnnn ddddd", library_unary),
          row<F32, D64>("AbsVM", "00000100 zz 011100 101 ggg nnnnn ddddd", unary<sve_fabs_zpz>),
          row<F16>("AbsVM", "00000100 zz 011100 101 ggg nnnnn ddddd", library_unary),
          row<F32, D64>("NegVM", "00000100 zz 011101 101 ggg nnnnn ddddd", unary<sve_fneg_zpz>),
          row<F16>("NegVM", "00000100 zz 011101 101 ggg nnnnn ddddd", library_unary),
          row<U16, U32, U64>("Rev1V", "00000101 zz 100100 100 ggg nnnnn ddddd", library_unary),
          row<U32, U64>("Rev2V", "00000101 zz 100101 100 ggg nnnnn ddddd", library_unary),
          row<U64>("Rev4V", "00000101 zz 100110 100 ggg nnnnn ddddd", unary<sve_revw_zpz>),
          row<U8, U16, U32, U64>("RBitVM", "00000101 zz 100111 100 ggg nnnnn ddddd", unary<sve_rbit_zpz>),
          row<U8, U16, U32, U64>("MovePrefix1VZ", "00000100 zz 010000 001 ggg nnnnn ddddd",
                                 direct<sve_movprfx_zpz, Zd, Pg_z, Zn>),
          row<U8, U16, U32, U64>("MovePrefix1VM", "00000100 zz 010001 001 ggg nnnnn ddddd",
                                 direct<sve_movprfx_zpz, Zd, Pg_m, Zn>));

constexpr auto reductions = group(
    row<S8, S16, S32>("AddReduceV", "00000100 zz 000000 001 ggg nnnnn ddddd", library<Vd.of(size_d), Pg, Zn>),
    row<U8, U16, U32, U64>("AddReduceV", "00000100 zz 000001 001 ggg nnnnn ddddd",
                           direct<sve_uaddv_vpz, Vd.of(size_d), Pg, Zn>),
    row<S8, S16, S32, S64>("MaxReduceV", "00000100 zz 001000 001 ggg nnnnn ddddd", reduction<sve_smaxv_vpz>),
    row<U8, U16, U32, U64>("MaxReduceV", "00000100 zz 001001 001 ggg nnnnn ddddd", reduction<sve_umaxv_vpz>),
    row<S8, S16, S32, S64>("MinReduceV", "00000100 zz 001010 001 ggg nnnnn ddddd", reduction<sve_sminv_vpz>),
    row<U8, U16, U32, U64>("MinReduceV", "00000100 zz 001011 001 ggg nnnnn ddddd", reduction<sve_uminv_vpz>),
    row<U8, U16, U32, U64>("OrReduceV", "00000100 zz 011000 001 ggg nnnnn ddddd", reduction<sve_orv_vpz>),
    row<U8, U16, U32, U64>("XorReduceV", "00000100 zz 011001 001 ggg nnnnn ddddd", reduction<sve_eorv_vpz>),
    row<U8, U16, U32, U64>("AndReduceV", "00000100 zz 011010 001 ggg nnnnn ddddd", reduction<sve_andv_vpz>),
    row<F16, F32, D64>("AddReduceFV", "01100101 zz 000000 001 ggg nnnnn ddddd", library_reduction),
    row<F32, D64>("MaxNumReduceFV", "01100101 zz 000100 001 ggg nnnnn ddddd", direct_fp<sve_fmaxnmv_vpz, Vd, Pg, Zn>),
    row<F16>("MaxNumReduceFV", "01100101 zz 000100 001 ggg nnnnn ddddd", library_reduction),
    row<F32, D64>("MinNumReduceFV", "01100101 zz 000101 001 ggg nnnnn ddddd", direct_fp<sve_fminnmv_vpz, Vd, Pg, Zn>),
    row<F16>("MinNumReduceFV", "01100101 zz 000101 001 ggg nnnnn ddddd", library_reduction),
    row<F16, F32, D64>("MaxReduceFV", "01100101 zz 000110 001 ggg nnnnn ddddd", library_reduction),
    row<F16, F32, D64>("MinReduceFV", "01100101 zz 000111 001 ggg nnnnn ddddd", library_reduction),
    row<F16, F32, D64>("AddReduceAV", "01100101 zz 011000 001 ggg mmmmm ddddd", library<Vdn, Pg, Zm5>));

constexpr auto element_moves = group(
    row<U8, U16, U32, U64>("LastAV", "00000101 zz 100000 101 ggg nnnnn ddddd", library<Rd, Pg, Zn>),
    row<U8, U16, U32, U64>("LastBV", "00000101 zz 100001 101 ggg nnnnn ddddd", direct<sve_lastb_rpz, Rd, Pg, Zn>),
    row<B8, H16, F32, D64>("LastAV", "00000101 zz 100010 100 ggg nnnnn ddddd", library_reduction),
    row<B8, H16, F32, D64>("LastBV", "00000101 zz 100011 100 ggg nnnnn ddddd", reduction<sve_lastb_vpz>),
    row<U8, U16, U32, U64>("VCondXAVV", "00000101 zz 101000 100 ggg mmmmm ddddd", library<Zdn, Pg, Zm5>),
    row<U8, U16, U32, U64>("VCondXBVV", "00000101 zz 101001 100 ggg mmmmm ddddd", library<Zdn, Pg, Zm5>),
    row<B8, H16, F32, D64>("CondXASV", "00000101 zz 101010 100 ggg mmmmm ddddd", library<Vdn, Pg, Zm5>),
    row<B8, H16, F32, D64>("CondXBSV", "00000101 zz 101011 100 ggg mmmmm ddddd", library<Vdn, Pg, Zm5>),
    row<U8, U16, U32, U64>("CondXASV", "00000101 zz 110000 101 ggg mmmmm ddddd", library<Rdn, Pg, Zm5>),
    row<U8, U16, U32, U64>("CondXBSV", "00000101 zz 110001 101 ggg mmmmm ddddd", direct<sve_clastb_rpz, Rdn, Pg, Zm5>),
    row<B8, H16, F32, D64>("DupSM", "00000101 zz 100000 100 ggg nnnnn ddddd", direct<sve_cpy_zpv, Zd, Pg_m, Vn>),
    row<U8, U16, U32, U64>("DupSM", "00000101 zz 101000 101 ggg nnnnn ddddd", direct<sve_cpy_zpr, Zd, Pg_m, Rn_sp>),
    row<U32, U64>("CompressVV", "00000101 zz 100001 100 ggg nnnnn ddddd", library<Zd, Pg, Zn>),
    row<U8, U16, U32, U64>("SpliceVV", "00000101 zz 101100 100 ggg mmmmm ddddd", library<Zdn, Pg, Zm5>));

constexpr auto immediates =
    group(row<S8, S16, S32, S64>("MaxVIX", "00100101 zz 101000 110 iiiiiiii ddddd", library<Zdn, imm8_s>),
          row<U8, U16, U32, U64>("MaxVIX", "00100101 zz 101001 110 iiiiiiii ddddd", library<Zdn, imm8>),
          row<S8, S16, S32, S64>("MinVIX", "00100101 zz 101010 110 iiiiiiii ddddd", library<Zdn, imm8_s>),
          row<U8, U16, U32, U64>("MinVIX", "00100101 zz 101011 110 iiiiiiii ddddd", library<Zdn, imm8>),
          row<S8, S16, S32, S64>("MulVIX", "00100101 zz 110000 110 iiiiiiii ddddd", direct<sve_mul_zi, Zdn, imm8_s>),
          row<F16, F32, D64>("DupI", "00100101 zz 111001 110 iiiiiiii ddddd", direct<sve_fdup_zi, Zd, imm8_fp_dup>));

constexpr auto float_arithmetic =
    group(row<F32, D64>("AddVVM", "01100101 zz 000000 100 ggg mmmmm ddddd", binary_fp<sve_fadd_zpz>),
          row<F16>("AddVVM", "01100101 zz 000000 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("SubVVM", "01100101 zz 000001 100 ggg mmmmm ddddd", binary_fp<sve_fsub_zpz>),
          row<F16>("SubVVM", "01100101 zz 000001 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("MulVVM", "01100101 zz 000010 100 ggg mmmmm ddddd", binary_fp<sve_fmul_zpz>),
          row<F16>("MulVVM", "01100101 zz 000010 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("SubRVVM", "01100101 zz 000011 100 ggg mmmmm ddddd", binary_fp<sve_fsubr_zpz>),
          row<F16>("SubRVVM", "01100101 zz 000011 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("MaxNumVVM", "01100101 zz 000100 100 ggg mmmmm ddddd", binary_fp<sve_fmaxnm_zpz>),
          row<F16>("MaxNumVVM", "01100101 zz 000100 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("MinNumVVM", "01100101 zz 000101 100 ggg mmmmm ddddd", binary_fp<sve_fminnm_zpz>),
          row<F16>("MinNumVVM", "01100101 zz 000101 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("MaxVVM", "01100101 zz 000110 100 ggg mmmmm ddddd", binary_fp<sve_fmax_zpz>),
          row<F16>("MaxVVM", "01100101 zz 000110 100 ggg mmmmm ddddd", library_binary),
          row<F16, F32, D64>("MinVVM", "01100101 zz 000111 100 ggg mmmmm ddddd", library_binary),
          row<F16, F32, D64>("AbdVVM", "01100101 zz 001000 100 ggg mmmmm ddddd", library_binary),
          row<F16, F32, D64>("ScaleVVM", "01100101 zz 001001 100 ggg mmmmm ddddd", library_binary),
          row<F16, F32, D64>("MulXVVM", "01100101 zz 001010 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("DivRVVM", "01100101 zz 001100 100 ggg mmmmm ddddd", binary_fp<sve_fdivr_zpz>),
          row<F16>("DivRVVM", "01100101 zz 001100 100 ggg mmmmm ddddd", library_binary),
          row<F32, D64>("DivVVM", "01100101 zz 001101 100 ggg mmmmm ddddd", binary_fp<sve_fdiv_zpz>),
          row<F16>("DivVVM", "01100101 zz 001101 100 ggg mmmmm ddddd", library_binary),
          row<F16, F32, D64>("FRIntNVM", "01100101 zz 000000 101 ggg nnnnn ddddd", library_unary),
          row<F16, F32, D64>("FRIntPVM", "01100101 zz 000001 101 ggg nnnnn ddddd", library_unary),
          row<F16, F32, D64>("FRIntMVM", "01100101 zz 000010 101 ggg nnnnn ddddd", library_unary),
          row<F16, F32, D64>("FRIntZVM", "01100101 zz 000011 101 ggg nnnnn ddddd", library_unary),
          row<F32, D64>("FRIntAVM", "01100101 zz 000100 101 ggg nnnnn ddddd", unary_fp<sve_frinta_zpz>),
          row<F16>("FRIntAVM", "01100101 zz 000100 101 ggg nnnnn ddddd", library_unary),
          row<F16, F32, D64>("FRIntXVM", "01100101 zz 000110 101 ggg nnnnn ddddd", library_unary),
          row<F16, F32, D64>("FRIntIVM", "01100101 zz 000111 101 ggg nnnnn ddddd", library_unary),
          row<F16, F32, D64>("RecpXVM", "01100101 zz 001100 101 ggg nnnnn ddddd", library_unary),
          row<F32, D64>("SqrtVM", "01100101 zz 001101 101 ggg nnnnn ddddd", unary_fp<sve_fsqrt_zpz>),
          row<F16>("SqrtVM", "01100101 zz 001101 101 ggg nnnnn ddddd", library_unary));

// Lanes have the width of the wider side; each register is named by its own.
constexpr auto conversions =
    group(row<H32>("TruncFVM", "01100101 10 001000 101 ggg nnnnn ddddd", library_convert<size_h, size_s>),
          row<F32>("ExtndHVM", "01100101 10 001001 101 ggg nnnnn ddddd", library_convert<size_s, size_h>),
          row<H64>("TruncDVM", "01100101 11 001000 101 ggg nnnnn ddddd", library_convert<size_h, size_d>),
          row<D64>("ExtndHVM", "01100101 11 001001 101 ggg nnnnn ddddd", library_convert<size_d, size_h>),
          row<F64>("TruncDVM", "01100101 11 001010 101 ggg nnnnn ddddd", convert<sve_fcvt_d2s_zpz, size_s, size_d>),
          row<D64>("ExtndFVM", "01100101 11 001011 101 ggg nnnnn ddddd", convert<sve_fcvt_s2d_zpz, size_d, size_s>),
          row<F16>("FromS2VM", "01100101 01 010010 101 ggg nnnnn ddddd", library_convert<size_h, size_h>),
          row<F16>("FromS4VM", "01100101 01 010100 101 ggg nnnnn ddddd", library_convert<size_h, size_s>),
          row<F16>("FromS8VM", "01100101 01 010110 101 ggg nnnnn ddddd", library_convert<size_h, size_d>),
          row<F32>("FromS4VM", "01100101 10 010100 101 ggg nnnnn ddddd", convert<sve_scvtf_s2s_zpz, size_s, size_s>),
          row<D64>("FromS4VM", "01100101 11 010000 101 ggg nnnnn ddddd", convert<sve_scvtf_s2d_zpz, size_d, size_s>),
          row<F64>("FromS8VM", "01100101 11 010100 101 ggg nnnnn ddddd", convert<sve_scvtf_d2s_zpz, size_s, size_d>),
          row<D64>("FromS8VM", "01100101 11 010110 101 ggg nnnnn ddddd", convert<sve_scvtf_d2d_zpz, size_d, size_d>),
          row<F16>("FromU2VM", "01100101 01 010011 101 ggg nnnnn ddddd", library_convert<size_h, size_h>),
          row<F16>("FromU4VM", "01100101 01 010101 101 ggg nnnnn ddddd", library_convert<size_h, size_s>),
          row<F16>("FromU8VM", "01100101 01 010111 101 ggg nnnnn ddddd", library_convert<size_h, size_d>),
          row<F32>("FromU4VM", "01100101 10 010101 101 ggg nnnnn ddddd", convert<sve_ucvtf_s2s_zpz, size_s, size_s>),
          row<D64>("FromU4VM", "01100101 11 010001 101 ggg nnnnn ddddd", convert<sve_ucvtf_s2d_zpz, size_d, size_s>),
          row<F64>("FromU8VM", "01100101 11 010101 101 ggg nnnnn ddddd", library_convert<size_s, size_d>),
          row<D64>("FromU8VM", "01100101 11 010111 101 ggg nnnnn ddddd", convert<sve_ucvtf_d2d_zpz, size_d, size_d>),
          row<S16_2>("FromHVM", "01100101 01 011010 101 ggg nnnnn ddddd", library_convert<size_h, size_h>),
          row<S32_4>("FromHVM", "01100101 01 011100 101 ggg nnnnn ddddd", library_convert<size_s, size_h>),
          row<S64_8>("FromHVM", "01100101 01 011110 101 ggg nnnnn ddddd", library_convert<size_d, size_h>),
          row<S32_4>("FromFVM", "01100101 10 011100 101 ggg nnnnn ddddd", convert<sve_fcvtzs_s2s_zpz, size_s, size_s>),
          row<S64_8>("FromFVM", "01100101 11 011100 101 ggg nnnnn ddddd", convert<sve_fcvtzs_s2d_zpz, size_d, size_s>),
          row<S64_4>("FromDVM", "01100101 11 011000 101 ggg nnnnn ddddd", convert<sve_fcvtzs_d2s_zpz, size_s, size_d>),
          row<S64_8>("FromDVM", "01100101 11 011110 101 ggg nnnnn ddddd", convert<sve_fcvtzs_d2d_zpz, size_d, size_d>),
          row<U16_2>("FromHVM", "01100101 01 011011 101 ggg nnnnn ddddd", library_convert<size_h, size_h>),
          row<U32_4>("FromHVM", "01100101 01 011101 101 ggg nnnnn ddddd", library_convert<size_s, size_h>),
          row<U64_8>("FromHVM", "01100101 01 011111 101 ggg nnnnn ddddd", library_convert<size_d, size_h>),
          row<U32_4>("FromFVM", "01100101 10 011101 101 ggg nnnnn ddddd", library_convert<size_s, size_s>),
          row<U64_8>("FromFVM", "01100101 11 011101 101 ggg nnnnn ddddd", library_convert<size_d, size_s>),
          row<U64_4>("FromDVM", "01100101 11 011001 101 ggg nnnnn ddddd", convert<sve_fcvtzu_d2s_zpz, size_s, size_d>),
          row<U64_8>("FromDVM", "01100101 11 011111 101 ggg nnnnn ddddd", convert<sve_fcvtzu_d2d_zpz, size_d, size_d>));
}  // namespace

QUERN_DECODE_TABLE(31_13, 403, integer_arithmetic, shifts, integer_unary, reductions, element_moves, immediates,
                   float_arithmetic, conversions)

}  // namespace quern
