// The rows of addition, multiplication and their kin, comparison, division, roots, estimates and steps.
#include "sve/arith/float/add.h"
#include "sve/arith/float/compare.h"
#include "sve/arith/float/divide.h"
#include "sve/arith/float/estimate.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/arith/float/multiply.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/process.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/float/square_root.h"
#include "sve/arith/float/step.h"
#include "sve/arith/float/unsigned_estimate.h"
#include "tests/arith/float/judge/instruction.h"
#include "tests/arith/float/judge/tables.h"

namespace quern::judge {
namespace {

template <class T, bool signal>
int compare(T a, T b, FPSCR& fpscr) {
  return FPCompare<T>(a, b, signal, fpscr);
}

template <auto estimate>
std::uint64_t estimate_word(std::int32_t operand) {
  return estimate(static_cast<std::uint32_t>(operand), 32);
}

}  // namespace

#define EACH_FORMAT(row_of, function, mnemonic) \
  row_of(function<H>, mnemonic, H, h), row_of(function<S>, mnemonic, S, s), row_of(function<D>, mnemonic, D, d)

#define ONE(function, mnemonic, T, f) row<function, T>(mnemonic " " #f, PROCESSOR(mnemonic " " #f "0, " #f "1"))
#define TWO(function, mnemonic, T, f) \
  row<function, T, T>(mnemonic " " #f, PROCESSOR(mnemonic " " #f "0, " #f "1, " #f "2"))
#define FMADD(function, mnemonic, T, f) \
  row<function, T, T, T>(mnemonic " " #f, PROCESSOR(mnemonic " " #f "0, " #f "2, " #f "3, " #f "1"))

// A comparison's all ones for true become 1.
#define COMPARE(function, mnemonic, T, f)                                          \
  row<function, T, T>(mnemonic " " #f, PROCESSOR(mnemonic " " #f "0, " #f "1, " #f \
                                                          "2\n\tfmov x9, d0\n\tand x9, x9, #1\n\tfmov d0, x9"))

// V of NZCV tells that the operands are unordered.
#define UNORDERED(function, mnemonic, T, f)   \
  row<function, T, T>(mnemonic " " #f " (V)", \
                      PROCESSOR(mnemonic " " #f "1, " #f "2\n\tmrs x9, nzcv\n\tubfx x9, x9, #28, #1\n\tfmov d0, x9"))
#define FCMP(function, mnemonic, T, f) \
  row<function, T, T>(mnemonic " " #f, \
                      PROCESSOR(mnemonic " " #f "1, " #f "2\n\tmrs x9, nzcv\n\tlsr x9, x9, #28\n\tfmov d0, x9"))

// A number times one goes through a processor's front and back end.
#define PROCESS(function, T, f) \
  row<function, T>("fmul by one " #f, PROCESSOR("fmov " #f "2, #1.0\n\tfmul " #f "0, " #f "1, " #f "2"))

#define ESTIMATE_WORD(function, mnemonic) \
  row<estimate_word<function>, std::int32_t>(mnemonic, PROCESSOR(mnemonic " v0.2s, v1.2s\n\tfmov s0, s0"))

std::vector<routine> arithmetic_routines() {
  return {
      PROCESS(FPProcess16, H, h),
      PROCESS(FPProcess32, S, s),
      PROCESS(FPProcess64, D, d),
      EACH_FORMAT(TWO, FPAdd, "fadd"),
      EACH_FORMAT(TWO, FPSub, "fsub"),
      EACH_FORMAT(TWO, FPMul, "fmul"),
      EACH_FORMAT(TWO, FPMulX, "fmulx"),
      EACH_FORMAT(TWO, FPDiv, "fdiv"),
      EACH_FORMAT(FMADD, FPMulAdd, "fmadd"),
      EACH_FORMAT(TWO, FPMax, "fmax"),
      EACH_FORMAT(TWO, FPMin, "fmin"),
      EACH_FORMAT(TWO, FPMaxNum, "fmaxnm"),
      EACH_FORMAT(TWO, FPMinNum, "fminnm"),
      EACH_FORMAT(COMPARE, FPCompareEQ, "fcmeq"),
      EACH_FORMAT(COMPARE, FPCompareGE, "fcmge"),
      EACH_FORMAT(COMPARE, FPCompareGT, "fcmgt"),
      EACH_FORMAT(UNORDERED, FPCompareUN, "fcmp"),
      FCMP((compare<S, false>), "fcmp", S, s),
      FCMP((compare<D, false>), "fcmp", D, d),
      FCMP((compare<S, true>), "fcmpe", S, s),
      FCMP((compare<D, true>), "fcmpe", D, d),
      EACH_FORMAT(ONE, FPAbs, "fabs"),
      EACH_FORMAT(ONE, FPNeg, "fneg"),
      EACH_FORMAT(ONE, FPSqrt, "fsqrt"),
      EACH_FORMAT(ONE, FPRecipEstimate, "frecpe"),
      EACH_FORMAT(ONE, FPRSqrtEstimate, "frsqrte"),
      EACH_FORMAT(ONE, FPRecpX, "frecpx"),
      EACH_FORMAT(TWO, FPRecipStepFused, "frecps"),
      EACH_FORMAT(TWO, FPRSqrtStepFused, "frsqrts"),
      ESTIMATE_WORD(UnsignedRecipEstimate, "urecpe"),
      ESTIMATE_WORD(UnsignedRSqrtEstimate, "ursqrte"),
  };
}

#undef ESTIMATE_WORD
#undef PROCESS
#undef FCMP
#undef UNORDERED
#undef COMPARE
#undef FMADD
#undef TWO
#undef ONE
#undef EACH_FORMAT

}  // namespace quern::judge
