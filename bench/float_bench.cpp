// Each routine of the software floating point, in all three formats, on normal operands of mixed signs, exponents and
// fractions: one call an iteration.
#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>

#include "bench/registration.h"
#include "sve/arith/float/add.h"
#include "sve/arith/float/compare.h"
#include "sve/arith/float/convert.h"
#include "sve/arith/float/divide.h"
#include "sve/arith/float/estimate.h"
#include "sve/arith/float/exponential.h"
#include "sve/arith/float/from_fixed.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/arith/float/multiply.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/round_to_integral.h"
#include "sve/arith/float/scale.h"
#include "sve/arith/float/square_root.h"
#include "sve/arith/float/step.h"
#include "sve/arith/float/to_fixed.h"
#include "sve/arith/float/trigonometric.h"

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
void register_arithmetic() {
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

// Those that take other arguments than patterns of their format.
template <class T>
void register_conversions() {
  add_benchmark<T>("FPRoundInt", 1,
                   [](T a, T, T, FPSCR& fpscr) { return FPRoundInt(a, FPRounding_ZERO, true, fpscr); });
  add_benchmark<T>("fplibFPToFixed", 1, [](T a, T, T, FPSCR& fpscr) {
    return fplibFPToFixed<T, std::uint64_t>(a, 0, false, FPRounding_ZERO, fpscr);
  });
  add_benchmark<T>("fplibFixedToFP", 1,
                   [](T a, T, T, FPSCR& fpscr) { return fplibFixedToFP<T>(a, 0, true, FPRounding_TIEEVEN, fpscr); });
  add_benchmark<T>("FPTRIMADD", 1, [](T a, T b, T, FPSCR& fpscr) { return FPTRIMADD<T>(1, a, b, fpscr); });
  add_benchmark("FPTRISMUL", FPTRISMUL<T>);
  add_benchmark<T>("FPEXPA", 0, [](T a, T, T, FPSCR&) { return FPEXPA(a); });
}

template <class From, class To>
void register_conversion(const char* name) {
  add_benchmark<From>(
      name, 1, [](From a, From, From, FPSCR& fpscr) { return FPConvert<From, To>(a, FPRounding_TIEEVEN, fpscr); });
}

template <class T, class Integer>
void register_scale(T (*scale)(T, Integer, FPSCR&)) {
  add_benchmark<T>("FPScale", 1,
                   [scale](T a, T b, T, FPSCR& fpscr) { return scale(a, static_cast<Integer>(b & 7), fpscr); });
}

template <class T>
void register_format() {
  register_arithmetic<T>();
  register_conversions<T>();
}

}  // namespace

void quern::register_float() {
  register_format<std::uint16_t>();
  register_format<std::uint32_t>();
  register_format<std::uint64_t>();
  register_conversion<std::uint16_t, std::uint32_t>("FPConvert to single");
  register_conversion<std::uint16_t, std::uint64_t>("FPConvert to double");
  register_conversion<std::uint32_t, std::uint16_t>("FPConvert to half");
  register_conversion<std::uint32_t, std::uint64_t>("FPConvert to double");
  register_conversion<std::uint64_t, std::uint16_t>("FPConvert to half");
  register_conversion<std::uint64_t, std::uint32_t>("FPConvert to single");
  register_scale(FPScale16);
  register_scale(FPScale32);
  register_scale(FPScale64);
}
