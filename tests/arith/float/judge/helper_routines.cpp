// The rows of the trigonometric and exponential helpers, which the processor has in SVE alone.
#include "sve/arith/float/exponential.h"
#include "sve/arith/float/scale.h"
#include "sve/arith/float/trigonometric.h"
#include "tests/arith/float/judge/instruction.h"
#include "tests/arith/float/judge/tables.h"

namespace quern::judge {
namespace {

template <std::uint64_t index, class T>
T trigonometric_multiply_add(T a, T b, FPSCR& fpscr) {
  return FPTRIMADD<T>(index, a, b, fpscr);
}

}  // namespace

// The rows of all three formats. The last move leaves out the other elements.
#define EACH_FORMAT(row_of_format) row_of_format(H, h), row_of_format(S, s), row_of_format(D, d)
#define FTMAD(T, f, index)                         \
  row<trigonometric_multiply_add<index, T>, T, T>( \
      "ftmad " #f #index,                          \
      PROCESSOR("movprfx z0, z1\n\tftmad z0." #f ", z0." #f ", z2." #f ", #" #index "\n\tfmov " #f "0, " #f "0"))
#define FTMADS(T, f)                                                                                              \
  FTMAD(T, f, 0), FTMAD(T, f, 1), FTMAD(T, f, 2), FTMAD(T, f, 3), FTMAD(T, f, 4), FTMAD(T, f, 5), FTMAD(T, f, 6), \
      FTMAD(T, f, 7)
#define FTSMUL(T, f) \
  row<FPTRISMUL<T>, T, T>("ftsmul " #f, PROCESSOR("ftsmul z0." #f ", z1." #f ", z2." #f "\n\tfmov " #f "0, " #f "0"))
#define FEXPA(T, f) row<FPEXPA<T>, T>("fexpa " #f, PROCESSOR("fexpa z0." #f ", z1." #f "\n\tfmov " #f "0, " #f "0"))
#define FSCALE(function, T, N, f)                                       \
  row<function, T, N>("fscale " #f,                                     \
                      PROCESSOR("ptrue p0.b, vl1\n\tmovprfx z0, z1\n\t" \
                                "fscale z0." #f ", p0/m, z0." #f ", z2." #f "\n\tfmov " #f "0, " #f "0"))

std::vector<routine> helper_routines() {
  return {
      EACH_FORMAT(FTMADS),
      EACH_FORMAT(FTSMUL),
      EACH_FORMAT(FEXPA),
      FSCALE(FPScale16, H, std::int16_t, h),
      FSCALE(FPScale32, S, std::int32_t, s),
      FSCALE(FPScale64, D, std::int64_t, d),
  };
}

#undef FSCALE
#undef FEXPA
#undef FTSMUL
#undef FTMADS
#undef FTMAD
#undef EACH_FORMAT

}  // namespace quern::judge
