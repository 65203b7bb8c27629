// Each routine of the software floating point, in all three formats, on normal operands of mixed signs, exponents and
// fractions: one call an iteration.
#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>

#include "bench/registration.h"
#include "sve/arith/float/add.h"
#include "sve/arith/float/compare.h"
#include "sve/arith/float/divide.h"
#include "sve/arith/float/estimate.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/arith/float/multiply.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/square_root.h"
#include "sve/arith/float/step.h"

namespace {

using namespace quern;

constexpr std::size_t operand_count = 1024;  // enough that no branch predictor learns them

// Normal numbers of both signs, or positive ones for `signs` 0, within four powers of two around 1.
template <class T>
std::array<T, operand_count> operands(unsigned seed, int signs) {
  std::mt19937_64 random(seed);
  std::array<T, operand_count> values;
  for (T& value : values) {
    const int exp = float_format<T>::bias - 2 + static_cast<int>(random() % 4);
    value = pack<T>(static_cast<int>(random() & 1) & signs, exp, static_cast<mantissa<T>>(random()));
  }
  return values;
}

// One benchmark: `op` on three operands, of which it takes as many as it likes.
template <class T, class Op>
void add_benchmark(const char* name, int signs, Op op) {
  const std::string format = sizeof(T) == 2 ? "half" : sizeof(T) == 4 ? "single" : "double";
  benchmark::RegisterBenchmark(("float/" + format + "/" + name).c_str(), [signs, op](benchmark::State& state) {
    const auto a = operands<T>(1, signs), b = operands<T>(2, signs), c = operands<T>(3, signs);
    FPSCR fpscr;
    std::size_t i = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(op(a[i], b[i], c[i], fpscr));
      i = (i + 1) % operand_count;
    }
  });
}

template <class T, class Result>
void add_benchmark(const char* name, Result (*op)(T, FPSCR&)) {
  add_benchmark<T>(name, 0, [op](T a, T, T, FPSCR& fpscr) { return op(a, fpscr); });
}
template <class T, class Result>
void add_benchmark(const char* name, Result (*op)(T, T, FPSCR&)) {
  add_benchmark<T>(name, 1, [op](T a, T b, T, FPSCR& fpscr) { return op(a, b, fpscr); });
}
template <class T>
void add_benchmark(const char* name, T (*op)(T, T, T, FPSCR&)) {
  add_benchmark<T>(name, 1, op);
}

template <class T>
void register_format() {
  add_benchmark("FPAdd", FPAdd<T>);
  add_benchmark("FPSub", FPSub<T>);
  add_benchmark("FPMul", FPMul<T>);
  add_benchmark("FPMulX", FPMulX<T>);
  add_benchmark("FPMulAdd", FPMulAdd<T>);
  add_benchmark("FPDiv", FPDiv<T>);
  add_benchmark("FPSqrt", FPSqrt<T>);
  add_benchmark("FPMax", FPMax<T>);
  add_benchmark("FPMaxNum", FPMaxNum<T>);
  add_benchmark("FPCompareEQ", FPCompareEQ<T>);
  add_benchmark("FPCompareGE", FPCompareGE<T>);
  add_benchmark("FPRecipEstimate", FPRecipEstimate<T>);
  add_benchmark("FPRSqrtEstimate", FPRSqrtEstimate<T>);
  add_benchmark("FPRecipStepFused", FPRecipStepFused<T>);
  add_benchmark("FPRSqrtStepFused", FPRSqrtStepFused<T>);
  add_benchmark("FPRecpX", FPRecpX<T>);
}

}  // namespace

void quern::register_float() {
  register_format<std::uint16_t>();
  register_format<std::uint32_t>();
  register_format<std::uint64_t>();
}
