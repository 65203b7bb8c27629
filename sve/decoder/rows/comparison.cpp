// Tables of vector comparisons into a predicate, and of the prefetches whose encodings stand beside them.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/integer/integer_compare.h"

namespace quern {
namespace {

template <auto Handler>
constexpr auto compare = direct<Handler, Pd, Pg_z, Zn, Zm>;
template <auto Handler>
constexpr auto compare_fp = direct_fp<Handler, Pd, Pg_z, Zn, Zm>;
template <auto Handler>
constexpr auto compare_imm = direct<Handler, Pd, Pg_z, Zn, imm5_s>;
template <auto Handler>
constexpr auto compare_imm7 = direct<Handler, Pd, Pg_z, Zn, imm7>;
constexpr auto library_compare = library<Pd, Pg_z, Zn, Zm>;
constexpr auto library_compare_wide = library<Pd, Pg_z, Zn, Zm.of(size_d)>;
constexpr auto library_compare_imm = library<Pd, Pg_z, Zn, imm5_s>;
constexpr auto library_compare_imm7 = library<Pd, Pg_z, Zn, imm7>;

constexpr auto integer_comparisons = group(
    row<U8, U16, U32, U64>("CmpFlgGEVVZ", "00100100 zz 0 mmmmm 000 ggg nnnnn 0 dddd", compare<sve_cmphs_ppzz>),
    row<U8, U16, U32, U64>("CmpFlgGTVVZ", "00100100 zz 0 mmmmm 000 ggg nnnnn 1 dddd", compare<sve_cmphi_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgGEVVZ", "00100100 zz 0 mmmmm 100 ggg nnnnn 0 dddd", compare<sve_cmpge_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgGTVVZ", "00100100 zz 0 mmmmm 100 ggg nnnnn 1 dddd", compare<sve_cmpgt_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgEQVVZ", "00100100 zz 0 mmmmm 101 ggg nnnnn 0 dddd", compare<sve_cmpeq_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgNEVVZ", "00100100 zz 0 mmmmm 101 ggg nnnnn 1 dddd", compare<sve_cmpne_ppzz>),
    row<S8, S16, S32>("CmpFlgEQVWZ", "00100100 zz 0 mmmmm 001 ggg nnnnn 0 dddd", library_compare_wide),
    row<S8, S16, S32>("CmpFlgNEVWZ", "00100100 zz 0 mmmmm 001 ggg nnnnn 1 dddd", library_compare_wide),
    row<S8, S16, S32>("CmpFlgGEVWZ", "00100100 zz 0 mmmmm 010 ggg nnnnn 0 dddd", library_compare_wide),
    row<S8, S16, S32>("CmpFlgGTVWZ", "00100100 zz 0 mmmmm 010 ggg nnnnn 1 dddd", library_compare_wide),
    row<S8, S16, S32>("CmpFlgLTVWZ", "00100100 zz 0 mmmmm 011 ggg nnnnn 0 dddd", library_compare_wide),
    row<S8, S16, S32>("CmpFlgLEVWZ", "00100100 zz 0 mmmmm 011 ggg nnnnn 1 dddd", library_compare_wide),
    row<U8, U16, U32>("CmpFlgGEVWZ", "00100100 zz 0 mmmmm 110 ggg nnnnn 0 dddd", library_compare_wide),
    row<U8, U16, U32>("CmpFlgGTVWZ", "00100100 zz 0 mmmmm 110 ggg nnnnn 1 dddd", library_compare_wide),
    row<U8, U16, U32>("CmpFlgLTVWZ", "00100100 zz 0 mmmmm 111 ggg nnnnn 0 dddd", library_compare_wide),
    row<U8, U16, U32>("CmpFlgLEVWZ", "00100100 zz 0 mmmmm 111 ggg nnnnn 1 dddd", library_compare_wide),
    row<S8, S16, S32, S64>("CmpFlgGEVIZ", "00100101 zz 0 iiiii 000 ggg nnnnn 0 dddd", library_compare_imm),
    row<S8, S16, S32, S64>("CmpFlgGTVIZ", "00100101 zz 0 iiiii 000 ggg nnnnn 1 dddd", compare_imm<sve_cmpgt_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgLTVIZ", "00100101 zz 0 iiiii 001 ggg nnnnn 0 dddd", compare_imm<sve_cmplt_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgLEVIZ", "00100101 zz 0 iiiii 001 ggg nnnnn 1 dddd", compare_imm<sve_cmple_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgEQVIZ", "00100101 zz 0 iiiii 100 ggg nnnnn 0 dddd", compare_imm<sve_cmpeq_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgNEVIZ", "00100101 zz 0 iiiii 100 ggg nnnnn 1 dddd", compare_imm<sve_cmpne_ppzi>));

constexpr auto float_comparisons =
    group(row<F32, D64>("CmpGEVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 0 dddd", compare_fp<sve_fcmge_ppzz>),
          row<F16>("CmpGEVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 0 dddd", library_compare),
          row<F32, D64>("CmpGTVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 1 dddd", compare_fp<sve_fcmgt_ppzz>),
          row<F16>("CmpGTVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 1 dddd", library_compare),
          row<F32, D64>("CmpEQVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 0 dddd", compare_fp<sve_fcmeq_ppzz>),
          row<F16>("CmpEQVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 0 dddd", library_compare),
          row<F32, D64>("CmpNEVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 1 dddd", compare_fp<sve_fcmne_ppzz>),
          row<F16>("CmpNEVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 1 dddd", library_compare),
          row<F32, D64>("CmpUNVVZ", "01100101 zz 0 mmmmm 110 ggg nnnnn 0 dddd", compare_fp<sve_fcmuo_ppzz>),
          row<F16>("CmpUNVVZ", "01100101 zz 0 mmmmm 110 ggg nnnnn 0 dddd", library_compare),
          row<F16, F32, D64>("AcGEVVZ", "01100101 zz 0 mmmmm 110 ggg nnnnn 1 dddd", library_compare),
          row<F16, F32, D64>("AcGTVVZ", "01100101 zz 0 mmmmm 111 ggg nnnnn 1 dddd", library_compare));

// Prefetches of Bytes bytes an element, by the form of the address.
template <unsigned Bytes>
constexpr auto prefetch_scalar = no_operation<prfop, Pg, Xn_sp, Xm.times(Bytes)>;
template <operand Offset>
constexpr auto prefetch_vector = no_operation<prfop, Pg, Xn_sp, Offset>;
template <unsigned Bytes>
constexpr auto prefetch_base = no_operation<prfop, Pg, Zn, imm5.times(Bytes)>;

// Where 32-bit and 64-bit lanes differ in bit 30 alone, the types give its value.
constexpr type_tag lanes_32 = U32.at(0), lanes_64 = U64.at(1);

constexpr auto prefetches =
    group(row<U8>("Prefetch1LSS", "1000010 00 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<1>),
          row<U16>("Prefetch2LSS", "1000010 01 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<2>),
          row<U32>("Prefetch4LSS", "1000010 10 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<4>),
          row<U64>("Prefetch8LSS", "1000010 11 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<8>),
          row<lanes_32, lanes_64>("Prefetch1VI", "1z00010 00 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<1>),
          row<lanes_32, lanes_64>("Prefetch2VI", "1z00010 01 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<2>),
          row<lanes_32, lanes_64>("Prefetch4VI", "1z00010 10 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<4>),
          row<lanes_32, lanes_64>("Prefetch8VI", "1z00010 11 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<8>),
          row<U64>("Prefetch1SV", "1100010 00 11 mmmmm 100 ggg nnnnn 0 oooo", prefetch_vector<Zm>),
          row<U64>("Prefetch2SV", "1100010 00 11 mmmmm 101 ggg nnnnn 0 oooo", prefetch_vector<Zm.times(2)>),
          row<U64>("Prefetch4SV", "1100010 00 11 mmmmm 110 ggg nnnnn 0 oooo", prefetch_vector<Zm.times(4)>),
          row<U64>("Prefetch8SV", "1100010 00 11 mmmmm 111 ggg nnnnn 0 oooo", prefetch_vector<Zm.times(8)>),
          row<lanes_32, lanes_64>("Prefetch1YSV", "1z00010 00 01 mmmmm 000 ggg nnnnn 0 oooo", prefetch_vector<Zm_uxtw>),
          row<lanes_32, lanes_64>("Prefetch2YSV", "1z00010 00 01 mmmmm 001 ggg nnnnn 0 oooo",
                                  prefetch_vector<Zm_uxtw.times(2)>),
          row<lanes_32, lanes_64>("Prefetch4YSV", "1z00010 00 01 mmmmm 010 ggg nnnnn 0 oooo",
                                  prefetch_vector<Zm_uxtw.times(4)>),
          row<lanes_32, lanes_64>("Prefetch8YSV", "1z00010 00 01 mmmmm 011 ggg nnnnn 0 oooo",
                                  prefetch_vector<Zm_uxtw.times(8)>),
          row<lanes_32, lanes_64>("Prefetch1XSV", "1z00010 00 11 mmmmm 000 ggg nnnnn 0 oooo", prefetch_vector<Zm_sxtw>),
          row<lanes_32, lanes_64>("Prefetch2XSV", "1z00010 00 11 mmmmm 001 ggg nnnnn 0 oooo",
                                  prefetch_vector<Zm_sxtw.times(2)>),
          row<lanes_32, lanes_64>("Prefetch4XSV", "1z00010 00 11 mmmmm 010 ggg nnnnn 0 oooo",
                                  prefetch_vector<Zm_sxtw.times(4)>),
          row<lanes_32, lanes_64>("Prefetch8XSV", "1z00010 00 11 mmmmm 011 ggg nnnnn 0 oooo",
                                  prefetch_vector<Zm_sxtw.times(8)>));

}  // namespace

QUERN_DECODE_TABLE(31_21__15_13__4_4, 131, integer_comparisons, float_comparisons, prefetches)

QUERN_DECODE_TABLE(
    31_21__13_13__4_4, 16,
    row<U8, U16, U32, U64>("CmpFlgGEVIZ", "00100100 zz 1 iiiiiii 0 ggg nnnnn 0 dddd", library_compare_imm7),
    row<U8, U16, U32, U64>("CmpFlgGTVIZ", "00100100 zz 1 iiiiiii 0 ggg nnnnn 1 dddd", compare_imm7<sve_cmphi_ppzi>),
    row<U8, U16, U32, U64>("CmpFlgLTVIZ", "00100100 zz 1 iiiiiii 1 ggg nnnnn 0 dddd", compare_imm7<sve_cmplo_ppzi>),
    row<U8, U16, U32, U64>("CmpFlgLEVIZ", "00100100 zz 1 iiiiiii 1 ggg nnnnn 1 dddd", library_compare_imm7))

}  // namespace quern
