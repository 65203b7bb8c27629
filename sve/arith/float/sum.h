// The sum of two terms with its low bits sticky, and its rounding: what addition and the fused operations share.
#pragma once

#include "sve/arith/float/round.h"

namespace quern {

// mnt * 2^exp, negated if sgn is 1.
template <class Word>
struct term {
  int sgn;
  int exp;
  Word mnt;
};

// x + y at the larger exponent. The term with the smaller one is shifted right, and what it loses is sticky; both have
// room for a carry at the top. A zero y has no say in the exponent. Equal terms of opposite signs give mnt 0.
template <class Word>
constexpr term<Word> add_terms(term<Word> x, term<Word> y) {
  if (y.mnt == 0) return x;
  if (x.exp >= y.exp) {
    y.mnt = shift_right_sticky(y.mnt, x.exp - y.exp);
  } else {
    x.mnt = shift_right_sticky(x.mnt, y.exp - x.exp);
    x.exp = y.exp;
  }
  if (x.sgn == y.sgn) return {x.sgn, x.exp, x.mnt + y.mnt};
  if (x.mnt < y.mnt) return {y.sgn, x.exp, y.mnt - x.mnt};
  return {x.sgn, x.exp, x.mnt - y.mnt};
}

// A sum, with `unit` as in normalize_and_round, in the mode's rounding. Exact cancellation gives +0, or -0 when
// rounding towards minus infinity.
template <float_bits T, class Word>
constexpr T round_sum(const term<Word>& sum, int unit, int mode, int* flags) {
  const FPRounding rounding = rounding_of(mode);
  if (sum.mnt == 0) return zero<T>(rounding == FPRounding_NEGINF);
  return normalize_and_round<T>(sum.sgn, sum.exp, sum.mnt, unit, rounding, mode, flags);
}

}  // namespace quern
