// Prices of options by the formula of Black and Scholes, with exponential, logarithm and normal distribution worked out
// in the loop: FDIV, FSQRT, FMUL, FADD, FCVTZS, SCVTF, FCMLT and SEL; FMAD, FMSB and FRINTZ with -ffast-math.
#include <string.h>

#include "floating_point.h"

#define KERNEL static inline __attribute__((always_inline))

KERNEL double from_bits(int64_t bits) {
  double number;
  memcpy(&number, &bits, sizeof number);
  return number;
}

KERNEL int64_t to_bits(double number) {
  int64_t bits;
  memcpy(&bits, &number, sizeof bits);
  return bits;
}

// By the series around the nearest multiple of ln 2.
KERNEL double exponential(double x) {
  const double scaled = x * 1.4426950408889634 + (x < 0 ? -0.5 : 0.5);
  const int64_t whole = (int64_t)scaled;
  const double r = x - (double)whole * 0.6931471805599453;
  double sum = 1.0 / 40320;
  sum = sum * r + 1.0 / 5040;
  sum = sum * r + 1.0 / 720;
  sum = sum * r + 1.0 / 120;
  sum = sum * r + 1.0 / 24;
  sum = sum * r + 1.0 / 6;
  sum = sum * r + 0.5;
  sum = sum * r + 1;
  sum = sum * r + 1;
  return sum * from_bits((whole + 1023) << 52);
}

// By the series of the inverse hyperbolic tangent.
KERNEL double logarithm(double x) {
  const int64_t exponent = (to_bits(x) >> 52) - 1023;
  const double fraction = from_bits((to_bits(x) & 0xFFFFFFFFFFFFF) | 0x3FF0000000000000);
  const double t = (fraction - 1) / (fraction + 1), square = t * t;
  double sum = 1.0 / 15;
  sum = sum * square + 1.0 / 13;
  sum = sum * square + 1.0 / 11;
  sum = sum * square + 1.0 / 9;
  sum = sum * square + 1.0 / 7;
  sum = sum * square + 1.0 / 5;
  sum = sum * square + 1.0 / 3;
  sum = sum * square + 1;
  return (double)exponent * 0.6931471805599453 + 2 * t * sum;
}

// The normal distribution, by the approximation of Abramowitz and Stegun (26.2.17).
KERNEL double distribution(double x) {
  const double magnitude = x < 0 ? -x : x, k = 1 / (1 + 0.2316419 * magnitude);
  double sum = 1.330274429;
  sum = sum * k - 1.821255978;
  sum = sum * k + 1.781477937;
  sum = sum * k - 0.356563782;
  sum = sum * k + 0.319381530;
  const double tail = 0.3989422804014327 * exponential(magnitude * magnitude * -0.5) * sum * k;
  return x < 0 ? tail : 1 - tail;
}

// Call prices, and put prices behind them.
#define PRICES(name, kind)                                                                                  \
  static kind void name(double* restrict call, const double* restrict stock, const double* restrict strike, \
                        const double* restrict years, double rate, double volatility, size_t n) {           \
    double* restrict put = call + n;                                                                        \
    for (size_t i = 0; i < n; ++i) {                                                                        \
      const double spread = volatility * __builtin_sqrt(years[i]);                                          \
      const double drift = (rate + volatility * volatility / 2) * years[i];                                 \
      const double d1 = (logarithm(stock[i] / strike[i]) + drift) / spread, d2 = d1 - spread;               \
      const double discounted = strike[i] * exponential(-rate * years[i]);                                  \
      call[i] = stock[i] * distribution(d1) - discounted * distribution(d2);                                \
      put[i] = call[i] - stock[i] + discounted;                                                             \
    }                                                                                                       \
  }
PRICES(prices, VECTOR)
PRICES(prices_scalar, SCALAR)
#undef PRICES

enum { N = LARGEST_TEST_SIZE };
static double stock[N], strike[N], years[N], out[2 * N], judged[2 * N];

int main(void) {
  fill_numbers(stock, 8, N, 20, 120);
  fill_numbers(strike, 8, N, 20, 120);
  fill_numbers(years, 8, N, 0.1, 5);
  // A textbook's example: 100 for 100 in one year at 5 % and a volatility of 20 %.
  stock[0] = strike[0] = 100;
  years[0] = 1;
  for (size_t i = 1; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    COMPARE(prices, true, out, judged, 2 * n, stock, strike, years, 0.05, 0.2, n);
    printf("call %.6f, put %.6f\n", out[0], out[n]);
    check_case("textbook", n, out[0] > 10.4505 && out[0] < 10.4507 && out[n] > 5.5734 && out[n] < 5.5737);
  }
  return finish("black_scholes");
}
