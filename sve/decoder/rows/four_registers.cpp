// The table of forms with a fourth register or a vector address: multiply-accumulate, contiguous memory with a scalar
// offset, gathers and scatters; EXT.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/gathers.h"
#include "sve/decoder/rows/scalar_offset.h"
#include "sve/decoder/rows/scatters.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/integer/multiply.h"
#include "sve/handlers/permute/permute.h"

namespace quern {
namespace {

// The integer MAD and MSB have Zm above Za in the word, the floating-point ones Za above Zm.
constexpr auto multiply_add = group(
    row<S8, S16, S32, S64>("MLAVVVM", "00000100 zz 0 mmmmm 010 ggg nnnnn ddddd",
                           direct<sve_mla_zpzz, Zda, Pg_m, Zn, Zm>),
    row<S8, S16, S32, S64>("MLSVVVM", "00000100 zz 0 mmmmm 011 ggg nnnnn ddddd",
                           direct<sve_mls_zpzz, Zda, Pg_m, Zn, Zm>),
    row<S8, S16, S32, S64>("MADDVVVM", "00000100 zz 0 mmmmm 110 ggg aaaaa ddddd",
                           direct<sve_mad_zpzz, Zdn, Pg_m, Zm, Za5>),
    row<S8, S16, S32, S64>("MSUBVVVM", "00000100 zz 0 mmmmm 111 ggg aaaaa ddddd",
                           direct<sve_msb_zpzz, Zdn, Pg_m, Zm, Za5>),
    row<F32, D64>("FMAVVVM", "01100101 zz 1 mmmmm 000 ggg nnnnn ddddd", direct_fp<sve_fmla_zpzz, Zda, Pg_m, Zn, Zm>),
    row<F16>("FMAVVVM", "01100101 zz 1 mmmmm 000 ggg nnnnn ddddd", library<Zda, Pg_m, Zn, Zm>),
    row<F32, D64>("FMSVVVM", "01100101 zz 1 mmmmm 001 ggg nnnnn ddddd", direct_fp<sve_fmls_zpzz, Zda, Pg_m, Zn, Zm>),
    row<F16>("FMSVVVM", "01100101 zz 1 mmmmm 001 ggg nnnnn ddddd", library<Zda, Pg_m, Zn, Zm>),
    row<F32, D64>("FNMAVVVM", "01100101 zz 1 mmmmm 010 ggg nnnnn ddddd", direct_fp<sve_fnmla_zpzz, Zda, Pg_m, Zn, Zm>),
    row<F16>("FNMAVVVM", "01100101 zz 1 mmmmm 010 ggg nnnnn ddddd", library<Zda, Pg_m, Zn, Zm>),
    row<F32, D64>("FNMSVVVM", "01100101 zz 1 mmmmm 011 ggg nnnnn ddddd", direct_fp<sve_fnmls_zpzz, Zda, Pg_m, Zn, Zm>),
    row<F16>("FNMSVVVM", "01100101 zz 1 mmmmm 011 ggg nnnnn ddddd", library<Zda, Pg_m, Zn, Zm>),
    row<F32, D64>("FMADDVVVM", "01100101 zz 1 aaaaa 100 ggg mmmmm ddddd", direct_fp<sve_fmad_zpzz, Zdn, Pg_m, Zm5, Za>),
    row<F16>("FMADDVVVM", "01100101 zz 1 aaaaa 100 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5, Za>),
    row<F32, D64>("FMSUBVVVM", "01100101 zz 1 aaaaa 101 ggg mmmmm ddddd", direct_fp<sve_fmsb_zpzz, Zdn, Pg_m, Zm5, Za>),
    row<F16>("FMSUBVVVM", "01100101 zz 1 aaaaa 101 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5, Za>),
    row<F32, D64>("FNMADDVVVM", "01100101 zz 1 aaaaa 110 ggg mmmmm ddddd",
                  direct_fp<sve_fnmad_zpzz, Zdn, Pg_m, Zm5, Za>),
    row<F16>("FNMADDVVVM", "01100101 zz 1 aaaaa 110 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5, Za>),
    row<F32, D64>("FNMSUBVVVM", "01100101 zz 1 aaaaa 111 ggg mmmmm ddddd",
                  direct_fp<sve_fnmsb_zpzz, Zdn, Pg_m, Zm5, Za>),
    row<F16>("FNMSUBVVVM", "01100101 zz 1 aaaaa 111 ggg mmmmm ddddd", library<Zdn, Pg_m, Zm5, Za>));
}  // namespace

QUERN_DECODE_TABLE(31_21__15_13, 285, multiply_add, scalar_offset::rows, gathers::rows, scatters::rows,
                   row<U8>("SlideVI", "00000101 001 iiiii 000 iii mmmmm ddddd", direct<sve_ext_zzi, Zdn, Zm5, imm_ext>))

}  // namespace quern
