// Rows of integer multiplication, multiply-addition and dot products.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/multiply.h"
#include "sve/veclib/integer/multiply.h"

namespace quern::rows {

constexpr auto multiply_rows =
    group(row<S8, S16, S32, S64>("MLAVVVM", "00000100 zz 0 mmmmm 010 ggg nnnnn ddddd", accumulate<sve_mla_zpzz>),
          row<S8, S16, S32, S64>("MLSVVVM", "00000100 zz 0 mmmmm 011 ggg nnnnn ddddd", accumulate<sve_mls_zpzz>),
          // The integer MAD and MSB have Zm above Za in the word, the floating-point ones Za above Zm.
          row<S8, S16, S32, S64>("MADDVVVM", "00000100 zz 0 mmmmm 110 ggg aaaaa ddddd",
                                 direct<sve_mad_zpzz, Zdn, Pg_m, Zm, Za5>),
          row<S8, S16, S32, S64>("MSUBVVVM", "00000100 zz 0 mmmmm 111 ggg aaaaa ddddd",
                                 direct<sve_msb_zpzz, Zdn, Pg_m, Zm, Za5>),
          row<S8, S16, S32, S64>("MulVVM", "00000100 zz 010000 000 ggg mmmmm ddddd", binary<sve_mul_zpz>),
          row<S8, S16, S32, S64>("MulHVVM", "00000100 zz 010010 000 ggg mmmmm ddddd", library_binary<MulHVVM>),
          row<U8, U16, U32, U64>("MulHVVM", "00000100 zz 010011 000 ggg mmmmm ddddd", library_binary<MulHVVM>),
          row<S8, S16, S32, S64>("MulVIX", "00100101 zz 110000 110 iiiiiiii ddddd", immediate<sve_mul_zi, imm8_s>),
          row<S32>("DotVVVX", "01000100 zz 0 mmmmm 000000 nnnnn ddddd",
                   library<DotVVVX, Zda, Zda, Zn.of(size_b), Zm.of(size_b)>),
          row<S64>("DotVVVX", "01000100 zz 0 mmmmm 000000 nnnnn ddddd",
                   library<DotVVVX, Zda, Zda, Zn.of(size_h), Zm.of(size_h)>),
          row<S32>("DotVVVIX", "01000100 101 ii mmm 000000 nnnnn ddddd",
                   library<DotVVVIX, Zda, Zda, Zn.of(size_b), Zm_low8.of(size_b), index2>),
          row<S64>("DotVVVIX", "01000100 111 i mmmm 000000 nnnnn ddddd",
                   library<DotVVVIX, Zda, Zda, Zn.of(size_h), Zm_low16.of(size_h), index1>),
          row<U32>("DotVVVX", "01000100 zz 0 mmmmm 000001 nnnnn ddddd",
                   library<DotVVVX, Zda, Zda, Zn.of(size_b), Zm.of(size_b)>),
          row<U64>("DotVVVX", "01000100 zz 0 mmmmm 000001 nnnnn ddddd",
                   library<DotVVVX, Zda, Zda, Zn.of(size_h), Zm.of(size_h)>),
          row<U32>("DotVVVIX", "01000100 101 ii mmm 000001 nnnnn ddddd",
                   library<DotVVVIX, Zda, Zda, Zn.of(size_b), Zm_low8.of(size_b), index2>),
          row<U64>("DotVVVIX", "01000100 111 i mmmm 000001 nnnnn ddddd",
                   library<DotVVVIX, Zda, Zda, Zn.of(size_h), Zm_low16.of(size_h), index1>));

}  // namespace quern::rows
