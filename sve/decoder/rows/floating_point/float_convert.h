// Rows of conversions between floating-point formats, and from and to integers.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/float_convert.h"

namespace quern::rows {

constexpr auto float_convert_rows =
    group(row<H32>("TruncFVM", "01100101 10 001000 101 ggg nnnnn ddddd", library_convert<TruncFVM, size_h, size_s>),
          row<F32>("ExtndHVM", "01100101 10 001001 101 ggg nnnnn ddddd", library_convert<ExtndHVM, size_s, size_h>),
          row<H64>("TruncDVM", "01100101 11 001000 101 ggg nnnnn ddddd", library_convert<TruncDVM, size_h, size_d>),
          row<D64>("ExtndHVM", "01100101 11 001001 101 ggg nnnnn ddddd", library_convert<ExtndHVM, size_d, size_h>),
          row<F64>("TruncDVM", "01100101 11 001010 101 ggg nnnnn ddddd", convert<sve_fcvt_d2s_zpz, size_s, size_d>),
          row<D64>("ExtndFVM", "01100101 11 001011 101 ggg nnnnn ddddd", convert<sve_fcvt_s2d_zpz, size_d, size_s>),
          row<F16>("FromS2VM", "01100101 01 010010 101 ggg nnnnn ddddd", library_convert<FromS2VM, size_h, size_h>),
          row<F16>("FromS4VM", "01100101 01 010100 101 ggg nnnnn ddddd", library_convert<FromS4VM, size_h, size_s>),
          row<F16>("FromS8VM", "01100101 01 010110 101 ggg nnnnn ddddd", library_convert<FromS8VM, size_h, size_d>),
          row<F32>("FromS4VM", "01100101 10 010100 101 ggg nnnnn ddddd", convert<sve_scvtf_s2s_zpz, size_s, size_s>),
          row<D64>("FromS4VM", "01100101 11 010000 101 ggg nnnnn ddddd", convert<sve_scvtf_s2d_zpz, size_d, size_s>),
          row<F64>("FromS8VM", "01100101 11 010100 101 ggg nnnnn ddddd", convert<sve_scvtf_d2s_zpz, size_s, size_d>),
          row<D64>("FromS8VM", "01100101 11 010110 101 ggg nnnnn ddddd", convert<sve_scvtf_d2d_zpz, size_d, size_d>),
          row<F16>("FromU2VM", "01100101 01 010011 101 ggg nnnnn ddddd", library_convert<FromU2VM, size_h, size_h>),
          row<F16>("FromU4VM", "01100101 01 010101 101 ggg nnnnn ddddd", library_convert<FromU4VM, size_h, size_s>),
          row<F16>("FromU8VM", "01100101 01 010111 101 ggg nnnnn ddddd", library_convert<FromU8VM, size_h, size_d>),
          row<F32>("FromU4VM", "01100101 10 010101 101 ggg nnnnn ddddd", convert<sve_ucvtf_s2s_zpz, size_s, size_s>),
          row<D64>("FromU4VM", "01100101 11 010001 101 ggg nnnnn ddddd", convert<sve_ucvtf_s2d_zpz, size_d, size_s>),
          row<F64>("FromU8VM", "01100101 11 010101 101 ggg nnnnn ddddd", library_convert<FromU8VM, size_s, size_d>),
          row<D64>("FromU8VM", "01100101 11 010111 101 ggg nnnnn ddddd", convert<sve_ucvtf_d2d_zpz, size_d, size_d>),
          row<S16_2>("FromHVM", "01100101 01 011010 101 ggg nnnnn ddddd", library_convert<FromHVM, size_h, size_h>),
          row<S32_4>("FromHVM", "01100101 01 011100 101 ggg nnnnn ddddd", library_convert<FromHVM, size_s, size_h>),
          row<S64_8>("FromHVM", "01100101 01 011110 101 ggg nnnnn ddddd", library_convert<FromHVM, size_d, size_h>),
          row<S32_4>("FromFVM", "01100101 10 011100 101 ggg nnnnn ddddd", convert<sve_fcvtzs_s2s_zpz, size_s, size_s>),
          row<S64_8>("FromFVM", "01100101 11 011100 101 ggg nnnnn ddddd", convert<sve_fcvtzs_s2d_zpz, size_d, size_s>),
          row<S64_4>("FromDVM", "01100101 11 011000 101 ggg nnnnn ddddd", convert<sve_fcvtzs_d2s_zpz, size_s, size_d>),
          row<S64_8>("FromDVM", "01100101 11 011110 101 ggg nnnnn ddddd", convert<sve_fcvtzs_d2d_zpz, size_d, size_d>),
          row<U16_2>("FromHVM", "01100101 01 011011 101 ggg nnnnn ddddd", library_convert<FromHVM, size_h, size_h>),
          row<U32_4>("FromHVM", "01100101 01 011101 101 ggg nnnnn ddddd", library_convert<FromHVM, size_s, size_h>),
          row<U64_8>("FromHVM", "01100101 01 011111 101 ggg nnnnn ddddd", library_convert<FromHVM, size_d, size_h>),
          row<U32_4>("FromFVM", "01100101 10 011101 101 ggg nnnnn ddddd", library_convert<FromFVM, size_s, size_s>),
          row<U64_8>("FromFVM", "01100101 11 011101 101 ggg nnnnn ddddd", library_convert<FromFVM, size_d, size_s>),
          row<U64_4>("FromDVM", "01100101 11 011001 101 ggg nnnnn ddddd", convert<sve_fcvtzu_d2s_zpz, size_s, size_d>),
          row<U64_8>("FromDVM", "01100101 11 011111 101 ggg nnnnn ddddd", convert<sve_fcvtzu_d2d_zpz, size_d, size_d>));

}  // namespace quern::rows
