// The integer handlers against scalar definitions of their lanes.
#include <gtest/gtest.h>

#include <bit>

#include "sve/handlers/integer/divide.h"
#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/handlers/integer/integer_logic.h"
#include "sve/handlers/integer/integer_unary.h"
#include "sve/handlers/integer/multiply.h"
#include "sve/handlers/integer/reduce.h"
#include "sve/handlers/integer/shift.h"
#include "sve/handlers/permute/move_prefix.h"
#include "tests/harness/lane_judge.h"

namespace quern {
namespace {

using u64 = std::uint64_t;
using s64 = std::int64_t;

// ---- Scalar definitions: of the width and operands, zero-extended; only the result's low bits count.

u64 sum(unsigned, u64 a, u64 b) { return a + b; }
u64 difference(unsigned, u64 a, u64 b) { return a - b; }
u64 both(unsigned, u64 a, u64 b) { return a & b; }
u64 either(unsigned, u64 a, u64 b) { return a | b; }
u64 one_of(unsigned, u64 a, u64 b) { return a ^ b; }
u64 first_only(unsigned, u64 a, u64 b) { return a & ~b; }
u64 greater(unsigned, u64 a, u64 b) { return a > b ? a : b; }
u64 lesser(unsigned, u64 a, u64 b) { return a < b ? a : b; }
u64 signed_greater(unsigned w, u64 a, u64 b) { return signed_value(w, a) > signed_value(w, b) ? a : b; }
u64 signed_lesser(unsigned w, u64 a, u64 b) { return signed_value(w, a) < signed_value(w, b) ? a : b; }
u64 product(unsigned, u64 a, u64 b) { return a * b; }

u64 shifted_left(unsigned w, u64 a, u64 count) { return count >= w ? 0 : a << count; }
u64 shifted_right(unsigned w, u64 a, u64 count) { return count >= w ? 0 : a >> count; }
u64 shifted_right_signed(unsigned w, u64 a, u64 count) {
  return static_cast<u64>(signed_value(w, a) >> (count >= w ? w - 1 : count));
}

u64 quotient(unsigned, u64 a, u64 b) { return b == 0 ? 0 : a / b; }
u64 signed_quotient(unsigned w, u64 a, u64 b) {
  if (b == 0) return 0;
  const s64 dividend = signed_value(w, a), divisor = signed_value(w, b);
  return divisor == -1 ? 0 - a : static_cast<u64>(dividend / divisor);
}

u64 reversed(unsigned w, u64 a) {
  u64 r = 0;
  for (unsigned i = 0; i != w; ++i) r |= (a >> i & 1) << (w - 1 - i);
  return r;
}

// ---- Handlers by shape.

struct zpz_case {
  const char* name;
  handler_zpz* handler;
  const char* sizes;
  u64 (*lane)(unsigned width, u64 a, u64 b);
};

TEST(IntegerHandlers, MergeZdnAndZm) {
  static constexpr zpz_case cases[] = {
      {"sve_add_zpz", sve_add_zpz, "bhsd", sum},
      {"sve_sub_zpz", sve_sub_zpz, "bhsd", difference},
      {"sve_smax_zpz", sve_smax_zpz, "bhsd", signed_greater},
      {"sve_smin_zpz", sve_smin_zpz, "bhsd", signed_lesser},
      {"sve_umax_zpz", sve_umax_zpz, "bhsd", greater},
      {"sve_umin_zpz", sve_umin_zpz, "bhsd", lesser},
      {"sve_and_zpz", sve_and_zpz, "bhsd", both},
      {"sve_orr_zpz", sve_orr_zpz, "bhsd", either},
      {"sve_eor_zpz", sve_eor_zpz, "bhsd", one_of},
      {"sve_bic_zpz", sve_bic_zpz, "bhsd", first_only},
      {"sve_mul_zpz", sve_mul_zpz, "bhsd", product},
      {"sve_lsl_zpz", sve_lsl_zpz, "bhsd", shifted_left},
      {"sve_lsr_zpz", sve_lsr_zpz, "bhsd", shifted_right},
      {"sve_asr_zpz", sve_asr_zpz, "bhsd", shifted_right_signed},
      {"sve_sdiv_zpz", sve_sdiv_zpz, "sd", signed_quotient},
      {"sve_sdivr_zpz", sve_sdivr_zpz, "sd", [](unsigned w, u64 a, u64 b) { return signed_quotient(w, b, a); }},
      {"sve_udiv_zpz", sve_udiv_zpz, "sd", quotient},
      {"sve_udivr_zpz", sve_udivr_zpz, "sd", [](unsigned w, u64 a, u64 b) { return quotient(w, b, a); }},
  };
  for (const zpz_case& c : cases) {
    judge_lanes({c.name, c.sizes,
                 [&](cpu_state* s, std::uint32_t size, const registers& r) {
                   return c.handler(s, z_both(r.d, size), p_reg(r.g, p_merging), z_reg(r.m, size));
                 },
                 [&](unsigned w, u64 d, u64, u64 m) { return c.lane(w, d, m); }});
  }
}

struct unary_case {
  const char* name;
  handler_zpz* handler;
  const char* sizes;
  u64 (*lane)(unsigned width, u64 n);
};

template <unsigned From>
u64 sign_extended(unsigned, u64 n) {
  return static_cast<u64>(signed_value(From, n));
}
template <unsigned From>
u64 zero_extended(unsigned, u64 n) {
  return low_bits(From, n);
}

TEST(IntegerHandlers, MergeAFunctionOfZn) {
  static constexpr unary_case cases[] = {
      {"sve_neg_zpz", sve_neg_zpz, "bhsd", [](unsigned, u64 n) { return 0 - n; }},
      {"sve_rbit_zpz", sve_rbit_zpz, "bhsd", reversed},
      {"sve_revw_zpz", sve_revw_zpz, "d", [](unsigned, u64 n) { return n >> 32 | n << 32; }},
      {"sve_sxtb_zpz", sve_sxtb_zpz, "hsd", sign_extended<8>},
      {"sve_sxth_zpz", sve_sxth_zpz, "sd", sign_extended<16>},
      {"sve_sxtw_zpz", sve_sxtw_zpz, "d", sign_extended<32>},
      {"sve_uxth_zpz", sve_uxth_zpz, "sd", zero_extended<16>},
      {"sve_uxtw_zpz", sve_uxtw_zpz, "d", zero_extended<32>},
      {"sve_movprfx_zpz", sve_movprfx_zpz, "bhsd", [](unsigned, u64 n) { return n; }},
  };
  for (const unary_case& c : cases) {
    judge_lanes({c.name, c.sizes,
                 [&](cpu_state* s, std::uint32_t size, const registers& r) {
                   return c.handler(s, z_reg(r.d, size), p_reg(r.g, p_merging), z_reg(r.n, size));
                 },
                 [&](unsigned w, u64, u64 n, u64) { return c.lane(w, n); }});
  }
}

TEST(IntegerHandlers, MovePrefixZeroesInactiveLanes) {
  judge_lanes({.name = "sve_movprfx_zpz /z",
               .sizes = "bhsd",
               .call =
                   [](cpu_state* s, std::uint32_t size, const registers& r) {
                     return sve_movprfx_zpz(s, z_reg(r.d, size), p_reg(r.g, p_zeroing), z_reg(r.n, size));
                   },
               .lane = [](unsigned, u64, u64 n, u64) { return n; },
               .zeroing = true});
}

struct zpzz_case {
  const char* name;
  handler_zpzz* handler;
  u64 (*lane)(u64 d, u64 second, u64 third);
};

TEST(IntegerHandlers, MergeProductsAndSums) {
  static constexpr zpzz_case cases[] = {
      {"sve_mla_zpzz", sve_mla_zpzz, [](u64 a, u64 n, u64 m) { return a + n * m; }},
      {"sve_mls_zpzz", sve_mls_zpzz, [](u64 a, u64 n, u64 m) { return a - n * m; }},
      {"sve_mad_zpzz", sve_mad_zpzz, [](u64 n, u64 m, u64 a) { return a + n * m; }},
      {"sve_msb_zpzz", sve_msb_zpzz, [](u64 n, u64 m, u64 a) { return a - n * m; }},
  };
  for (const zpzz_case& c : cases) {
    judge_lanes({c.name, "bhsd",
                 [&](cpu_state* s, std::uint32_t size, const registers& r) {
                   return c.handler(s, z_both(r.d, size), p_reg(r.g, p_merging), z_reg(r.n, size), z_reg(r.m, size));
                 },
                 [&](unsigned, u64 d, u64 n, u64 m) { return c.lane(d, n, m); }});
  }
}

struct zzz_case {
  const char* name;
  handler_zzz* handler;
  u64 (*lane)(unsigned width, u64 n, u64 m);
};

TEST(IntegerHandlers, SetEveryLaneFromZnAndZm) {
  static constexpr zzz_case cases[] = {
      {"sve_add_zzz", sve_add_zzz, sum},    {"sve_sub_zzz", sve_sub_zzz, difference},
      {"sve_and_zzz", sve_and_zzz, both},   {"sve_orr_zzz", sve_orr_zzz, either},
      {"sve_eor_zzz", sve_eor_zzz, one_of}, {"sve_bic_zzz", sve_bic_zzz, first_only},
  };
  for (const zzz_case& c : cases) {
    judge_lanes(
        {.name = c.name,
         .sizes = "bhsd",
         .call = [&](cpu_state* s, std::uint32_t size,
                     const registers& r) { return c.handler(s, z_reg(r.d, size), z_reg(r.n, size), z_reg(r.m, size)); },
         .lane = [&](unsigned w, u64, u64 n, u64 m) { return c.lane(w, n, m); },
         .predicated = false});
  }
}

TEST(IntegerHandlers, CopyAWholeVectorForMovePrefix) {
  judge_lanes({.name = "sve_movprfx_zz",
               .sizes = "b",
               .call = [](cpu_state* s, std::uint32_t,
                          const registers& r) { return sve_movprfx_zz(s, z_reg(r.d, size_s), z_reg(r.n, size_s)); },
               .lane = [](unsigned, u64, u64 n, u64) { return n; },
               .predicated = false});
}

// ---- Immediates.

// Judges `call(state, size, registers, immediate)` for each immediate.
template <class Call, class Lane>
void judge_immediates(const char* name, const char* sizes, std::initializer_list<u64> immediates, bool predicated,
                      Call call, Lane lane) {
  for (const u64 immediate : immediates) {
    judge_lanes(
        {.name = std::string(name) + " #" + std::to_string(immediate),
         .sizes = sizes,
         .call = [&](cpu_state* s, std::uint32_t size, const registers& r) { return call(s, size, r, immediate); },
         .lane = [&](unsigned w, u64 d, u64 n, u64) { return lane(w, d, n, immediate); },
         .predicated = predicated});
  }
}

struct shift_case {
  const char* name;
  handler_zpi* merging;
  handler_zzi* unpredicated;
  u64 (*lane)(unsigned width, u64 a, u64 count);
};

TEST(IntegerHandlers, ShiftByAnImmediate) {
  static constexpr shift_case cases[] = {
      {"lsl", sve_lsl_zpi, sve_lsl_zzi, shifted_left},
      {"lsr", sve_lsr_zpi, sve_lsr_zzi, shifted_right},
      {"asr", sve_asr_zpi, sve_asr_zzi, shifted_right_signed},
  };
  const std::initializer_list<u64> counts = {0,  1,  3,  7,  8,  9,  15,  16,  17,
                                             31, 32, 33, 63, 64, 65, 256, 259, 0x80000001};
  for (const shift_case& c : cases) {
    judge_immediates(
        c.name, "bhsd", counts, true,
        [&](cpu_state* s, std::uint32_t size, const registers& r, u64 count) {
          return c.merging(s, z_both(r.d, size), p_reg(r.g, p_merging), static_cast<unsigned>(count));
        },
        [&](unsigned w, u64 d, u64, u64 count) { return c.lane(w, d, count); });
    judge_immediates(
        c.name, "bhsd", counts, false,
        [&](cpu_state* s, std::uint32_t size, const registers& r, u64 count) {
          return c.unpredicated(s, z_reg(r.d, size), z_reg(r.n, size), static_cast<unsigned>(count));
        },
        [&](unsigned w, u64, u64 n, u64 count) { return c.lane(w, n, count); });
  }
}

// Immediates are zero-extended to doublewords and cut to narrower elements.
TEST(IntegerHandlers, AddAndSubtractAnImmediate) {
  const std::initializer_list<u64> immediates = {0, 1, 255, 0x7F00, 0xFF00, 0xFFFFFFFF};
  judge_immediates(
      "sve_add_zi", "bhsd", immediates, false,
      [](cpu_state* s, std::uint32_t size, const registers& r, u64 immediate) {
        return sve_add_zi(s, z_both(r.d, size), static_cast<unsigned>(immediate));
      },
      [](unsigned, u64 d, u64, u64 immediate) { return d + immediate; });
  judge_immediates(
      "sve_sub_zi", "bhsd", immediates, false,
      [](cpu_state* s, std::uint32_t size, const registers& r, u64 immediate) {
        return sve_sub_zi(s, z_both(r.d, size), static_cast<unsigned>(immediate));
      },
      [](unsigned, u64 d, u64, u64 immediate) { return d - immediate; });
}

TEST(IntegerHandlers, MultiplyByASignedImmediate) {
  judge_immediates(
      "sve_mul_zi", "bhsd", {0, 1, 3, 127, static_cast<u64>(-1), static_cast<u64>(-128)}, false,
      [](cpu_state* s, std::uint32_t size, const registers& r, u64 immediate) {
        return sve_mul_zi(s, z_both(r.d, size), static_cast<int>(immediate));
      },
      [](unsigned, u64 d, u64, u64 immediate) { return d * immediate; });
}

struct mask_case {
  const char* name;
  handler_zi_mask* handler;
  u64 (*lane)(unsigned width, u64 d, u64 mask);
};

TEST(IntegerHandlers, ApplyAMaskToEveryDoubleword) {
  static constexpr mask_case cases[] = {
      {"sve_and_zi", sve_and_zi, both}, {"sve_orr_zi", sve_orr_zi, either}, {"sve_eor_zi", sve_eor_zi, one_of}};
  for (const mask_case& c : cases) {
    judge_immediates(
        c.name, "d", {0, 0xFF, 0x8000000000000001, 0x0F0F0F0F0F0F0F0F}, false,
        [&](cpu_state* s, std::uint32_t size, const registers& r, u64 mask) {
          return c.handler(s, z_both(r.d, size), {mask});
        },
        [&](unsigned w, u64 d, u64, u64 mask) { return c.lane(w, d, mask); });
  }
}

// ---- Reductions.

u64 zero(unsigned) { return 0; }
u64 ones(unsigned width) { return low_bits(width, ~u64{0}); }
u64 least(unsigned width) { return u64{1} << (width - 1); }
u64 greatest(unsigned width) { return least(width) - 1; }

TEST(IntegerHandlers, ReduceActiveLanes) {
  static constexpr reduction_case cases[] = {
      {"sve_andv_vpz", sve_andv_vpz, 0, ones, both},
      {"sve_orv_vpz", sve_orv_vpz, 0, zero, either},
      {"sve_eorv_vpz", sve_eorv_vpz, 0, zero, one_of},
      {"sve_uaddv_vpz", sve_uaddv_vpz, 64, zero, sum},
      {"sve_smaxv_vpz", sve_smaxv_vpz, 0, least, signed_greater},
      {"sve_sminv_vpz", sve_sminv_vpz, 0, greatest, signed_lesser},
      {"sve_umaxv_vpz", sve_umaxv_vpz, 0, zero, greater},
      {"sve_uminv_vpz", sve_uminv_vpz, 0, ones, lesser},
  };
  for (const reduction_case& c : cases) judge_reduction(c);
}

}  // namespace
}  // namespace quern
