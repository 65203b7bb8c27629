// Rows of floating-point comparisons into a predicate.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/float_compare.h"

namespace quern::rows {

constexpr auto float_compare_rows =
    group(row<F32, D64>("CmpGEVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 0 dddd", compare_fp<sve_fcmge_ppzz>),
          row<F16>("CmpGEVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 0 dddd", library_compare<CmpGEVVZ>),
          row<F32, D64>("CmpGTVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 1 dddd", compare_fp<sve_fcmgt_ppzz>),
          row<F16>("CmpGTVVZ", "01100101 zz 0 mmmmm 010 ggg nnnnn 1 dddd", library_compare<CmpGTVVZ>),
          row<F32, D64>("CmpEQVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 0 dddd", compare_fp<sve_fcmeq_ppzz>),
          row<F16>("CmpEQVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 0 dddd", library_compare<CmpEQVVZ>),
          row<F32, D64>("CmpNEVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 1 dddd", compare_fp<sve_fcmne_ppzz>),
          row<F16>("CmpNEVVZ", "01100101 zz 0 mmmmm 011 ggg nnnnn 1 dddd", library_compare<CmpNEVVZ>),
          row<F32, D64>("CmpUNVVZ", "01100101 zz 0 mmmmm 110 ggg nnnnn 0 dddd", compare_fp<sve_fcmuo_ppzz>),
          row<F16>("CmpUNVVZ", "01100101 zz 0 mmmmm 110 ggg nnnnn 0 dddd", library_compare<CmpUNVVZ>),
          row<F16, F32, D64>("AcGEVVZ", "01100101 zz 0 mmmmm 110 ggg nnnnn 1 dddd", library_compare<AcGEVVZ>),
          row<F16, F32, D64>("AcGTVVZ", "01100101 zz 0 mmmmm 111 ggg nnnnn 1 dddd", library_compare<AcGTVVZ>),
          row<F32, D64>("CmpGEV0Z", "01100101 zz 010000 001 ggg nnnnn 0 dddd", compare_zero_fp<sve_fcmge_ppz>),
          row<F16>("CmpGEV0Z", "01100101 zz 010000 001 ggg nnnnn 0 dddd", library_compare_zero<CmpGEV0Z>),
          row<F32, D64>("CmpGTV0Z", "01100101 zz 010000 001 ggg nnnnn 1 dddd", compare_zero_fp<sve_fcmgt_ppz>),
          row<F16>("CmpGTV0Z", "01100101 zz 010000 001 ggg nnnnn 1 dddd", library_compare_zero<CmpGTV0Z>),
          row<F32, D64>("CmpLTV0Z", "01100101 zz 010001 001 ggg nnnnn 0 dddd", compare_zero_fp<sve_fcmlt_ppz>),
          row<F16>("CmpLTV0Z", "01100101 zz 010001 001 ggg nnnnn 0 dddd", library_compare_zero<CmpLTV0Z>),
          row<F32, D64>("CmpLEV0Z", "01100101 zz 010001 001 ggg nnnnn 1 dddd", compare_zero_fp<sve_fcmle_ppz>),
          row<F16>("CmpLEV0Z", "01100101 zz 010001 001 ggg nnnnn 1 dddd", library_compare_zero<CmpLEV0Z>),
          row<F32, D64>("CmpEQV0Z", "01100101 zz 010010 001 ggg nnnnn 0 dddd", compare_zero_fp<sve_fcmeq_ppz>),
          row<F16>("CmpEQV0Z", "01100101 zz 010010 001 ggg nnnnn 0 dddd", library_compare_zero<CmpEQV0Z>),
          row<F16, F32, D64>("CmpNEV0Z", "01100101 zz 010011 001 ggg nnnnn 0 dddd", library_compare_zero<CmpNEV0Z>));

}  // namespace quern::rows
