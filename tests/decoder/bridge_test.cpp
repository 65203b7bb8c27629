// The bridge to the vector library: what a function is given, where its result goes, and what every call leaves behind.
// Families of the tests' own show the arguments and the context; rows of the library show the whole.
#include "sve/decoder/bridge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/operands.h"
#include "sve/decoder/sve_utils.h"
#include "sve/decoder/thunk.h"

namespace {

// What the last call of a probe was given, and what the next is to answer.
struct probe_record {
  CpuContext ctx;
  VecV a, b, answer_vector;
  PredV predicate, answer_predicate;
  std::uint64_t x, y, answer_scalar;
  const unsigned char* watched;  // a register's bytes, compared with `a` when the answer is ready
  bool watched_is_unchanged;
  CpuContext answer_ctx;
};
probe_record probe;

void see(CpuContext* ctx) {
  probe.ctx = *ctx;
  *ctx = probe.answer_ctx;
}

}  // namespace

extern "C" {
VecV VecU16ProbeVector(VecV a, PredV predicate, VecV b, CpuContext* ctx) {
  probe.a = a, probe.predicate = predicate, probe.b = b;
  see(ctx);
  VecV result = probe.answer_vector;
  probe.watched_is_unchanged = probe.watched == nullptr || std::memcmp(probe.watched, &a, sizeof a) == 0;
  return result;
}
PredV VecU16ProbePredicate(PredV predicate, CpuContext* ctx) {
  probe.predicate = predicate;
  see(ctx);
  return probe.answer_predicate;
}
std::uint64_t VecU64ProbeScalar(std::uint64_t x, std::uint64_t y, CpuContext* ctx) {
  probe.x = x, probe.y = y;
  see(ctx);
  return probe.answer_scalar;
}
std::int32_t VecS32ProbeScalar(std::int32_t x, std::uint16_t y, CpuContext* ctx) {
  probe.x = static_cast<std::uint64_t>(std::int64_t{x}), probe.y = y;
  see(ctx);
  return static_cast<std::int32_t>(probe.answer_scalar);
}
std::uint16_t VecU16ProbeScalar(std::uint16_t x, std::uint16_t y, CpuContext* ctx) {
  probe.x = x, probe.y = y;
  see(ctx);
  return static_cast<std::uint16_t>(probe.answer_scalar);
}
void VecU64ProbeFlags(std::uint64_t x, std::uint64_t y, CpuContext* ctx) {
  probe.x = x, probe.y = y;
  see(ctx);
}
}  // extern "C"

QUERN_LIBRARY_FUNCTION(U16, ProbeVector)
QUERN_LIBRARY_FUNCTION(U16, ProbePredicate)
QUERN_LIBRARY_FUNCTION(U64, ProbeScalar)
QUERN_LIBRARY_FUNCTION(S32, ProbeScalar)
QUERN_LIBRARY_FUNCTION(U16, ProbeScalar)
QUERN_LIBRARY_FUNCTION(U64, ProbeFlags)

namespace quern {
namespace {

using namespace families;

template <class Family, operand... Operands>
using shape = library_shape<false, Family, Operands...>;
template <class Family, operand... Operands>
using ffr_shape = library_shape<true, Family, Operands...>;

// A state in which every byte tells where it stands, and predicates are not confined to zeros and ones.
class Bridge : public testing::Test {
 protected:
  Bridge() {
    auto* const bytes = reinterpret_cast<unsigned char*>(state_.get());
    for (std::size_t i = 0; i != sizeof *state_; ++i) bytes[i] = static_cast<unsigned char>(i * 37 + (i >> 8) * 11);
    before_ = std::make_unique<cpu_state>(*state_);
    probe = {};
    for (std::size_t i = 0; i != VL_BYTES; ++i) probe.answer_vector.bytes[i] = static_cast<unsigned char>(255 - i);
    probe.answer_predicate.words[0] = 0x8000000000000005;
    probe.answer_scalar = 0x8877665544332211;
    probe.answer_ctx = {.nzcv = 0xA0000000, .fpsr = 0x08000010, .fpcr = 0, .vl_units = 0, .ffr = {{2}}};
  }

  // Runs a thunk of the word, or of 0 in its place.
  aarch64_decode_rc run(sve_handler thunk, std::uint32_t word) { return thunk(state_.get(), word); }
  cpu_state& state() { return *state_; }
  const cpu_state& before() { return *before_; }

 private:
  std::unique_ptr<cpu_state> state_{new cpu_state}, before_;
};

bool bit(const PredV& predicate, int i) { return (predicate.words[i / 64] >> i % 64 & 1) != 0; }

void expect_bits_0_packed(const unsigned char* bytes, const PredV& packed) {
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(bit(packed, i), (bytes[i] & 1) != 0) << i;
}

void expect_unpacked(const PredV& packed, const unsigned char* bytes) {
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(bytes[i], bit(packed, i) ? 1 : 0) << i;
}

constexpr std::uint32_t d(std::uint32_t n) { return n; }
constexpr std::uint32_t n5(std::uint32_t n) { return n << 5; }
constexpr std::uint32_t g10(std::uint32_t n) { return n << 10; }
constexpr std::uint32_t m16(std::uint32_t n) { return n << 16; }

TEST_F(Bridge, CopiesVectorsAndPacksPredicates) {
  const auto thunk = shape<ProbeVector, Zdn, Zdn, Pg_m, Zm5>::thunk<U16>;
  EXPECT_EQ(run(thunk, d(3) | g10(5) | n5(31)), DECODE_OK);
  EXPECT_EQ(std::memcmp(&probe.a, before().z[3], VL_BYTES), 0);
  EXPECT_EQ(std::memcmp(&probe.b, before().z[31], VL_BYTES), 0);
  expect_bits_0_packed(before().p[5], probe.predicate);
  EXPECT_EQ(std::memcmp(state().z[3], &probe.answer_vector, VL_BYTES), 0);
}

TEST_F(Bridge, TakesBit0OfAPredicateByteAlone) {
  state().p[5][0] = 0xFE, state().p[5][1] = 0x03;
  run(shape<ProbePredicate, Pd, Pg_z>::thunk<U16>, g10(5));
  EXPECT_FALSE(bit(probe.predicate, 0));
  EXPECT_TRUE(bit(probe.predicate, 1));
}

TEST_F(Bridge, GivesTheFunctionItsContext) {
  state().nzcv = 0x1234567890ABCDEF, state().fpsr = 0x55AA55AA, state().fpcr = 0xFFFFFFFF;
  run(ffr_shape<ProbePredicate, Pd, Pg_z>::thunk<U16>, 0);
  EXPECT_EQ(probe.ctx.nzcv, 0x90ABCDEFu);
  EXPECT_EQ(probe.ctx.fpsr, 0x55AA55AAu);
  EXPECT_EQ(probe.ctx.fpcr, 0x07C89F00u);
  EXPECT_EQ(probe.ctx.vl_units, std::uint32_t{VL_BITS / 64});
  expect_bits_0_packed(before().ffr, probe.ctx.ffr);
}

TEST_F(Bridge, BringsBackFlagsStatusAndFirstFaultRegister) {
  run(ffr_shape<ProbePredicate, Pd, Pg_z>::thunk<U16>, 0);
  EXPECT_EQ(state().nzcv, 0xA0000000u);
  EXPECT_EQ(state().fpsr, 0x08000010u);
  EXPECT_EQ(state().fpcr, before().fpcr);
  expect_unpacked(probe.answer_ctx.ffr, state().ffr);
}

TEST_F(Bridge, NormalisesTheFirstFaultRegisterOfFunctionsThatDoNotLookAtIt) {
  run(shape<ProbePredicate, Pd, Pg_z>::thunk<U16>, 0);
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(state().ffr[i], before().ffr[i] & 1) << i;
}

TEST_F(Bridge, LeavesAllElseAlone) {
  run(shape<ProbeFlags, no_result, Rn, Rm>::thunk<U64>, n5(1) | m16(2));
  cpu_state expected = before();
  expected.nzcv = 0xA0000000, expected.fpsr = 0x08000010;
  for (unsigned char& byte : expected.ffr) byte &= 1;
  EXPECT_EQ(std::memcmp(&state(), &expected, sizeof expected), 0);  // instr_word among them
}

TEST_F(Bridge, RewritesAllBytesOfAPredicate) {
  run(shape<ProbePredicate, Pd, Pg_z>::thunk<U16>, d(7));
  expect_unpacked(probe.answer_predicate, state().p[7]);
}

TEST_F(Bridge, LeavesTheRegisterOfALoadUntilTheFunctionHasReturned) {
  probe.watched = state().z[3];
  run(shape<ProbeVector, Zt, Zda, Pg_z, Zn>::thunk<U16>, d(3) | n5(4));
  EXPECT_TRUE(probe.watched_is_unchanged);
  EXPECT_EQ(std::memcmp(state().z[3], &probe.answer_vector, VL_BYTES), 0);
}

// Register 31 is zero as a scalar, whose result is dropped, and the stack pointer as a base.
TEST_F(Bridge, ReadsRegister31AsZeroOrTheStackPointer) {
  run(shape<ProbeScalar, Xdn, Xdn, Xn_sp>::thunk<U64>, d(31) | n5(31));
  EXPECT_EQ(probe.x, 0u);
  EXPECT_EQ(probe.y, before().sp);
  EXPECT_EQ(std::memcmp(state().x, before().x, sizeof before().x), 0);
  EXPECT_EQ(state().sp, before().sp);
  run(shape<ProbeScalar, Xdn, Xdn, Xn_sp>::thunk<U64>, d(30) | n5(29));
  EXPECT_EQ(probe.x, before().x[30]);
  EXPECT_EQ(probe.y, before().x[29]);
  EXPECT_EQ(state().x[30], 0x8877665544332211u);
}

TEST_F(Bridge, CutsScalarsToTheParametersWidth) {
  run(shape<ProbeScalar, Wdn, Wdn, Rm>::thunk<S32>, d(1) | m16(2));
  EXPECT_EQ(probe.x, static_cast<std::uint64_t>(static_cast<std::int32_t>(before().x[1])));
  EXPECT_EQ(probe.y, before().x[2] & 0xFFFF);
}

TEST_F(Bridge, ZeroExtendsResultsOf32Bits) {
  probe.answer_scalar = 0xFFFFFFFF;  // -1 as the function's result
  run(shape<ProbeScalar, Wdn, Wdn, Rm>::thunk<S32>, d(1));
  EXPECT_EQ(state().x[1], 0xFFFFFFFFu);
  probe.answer_scalar = 0x8877665544332211;
  run(shape<ProbeScalar, Rdn, Rdn, Rm>::thunk<U16>, d(1));
  EXPECT_EQ(state().x[1], 0x2211u);
}

TEST_F(Bridge, ReadsAndWritesScalarsInVectors) {
  run(shape<ProbeScalar, Vdn, Vdn, Vm5>::thunk<U16>, d(1) | n5(2));
  std::uint16_t x, y;
  std::memcpy(&x, before().z[1], 2);
  std::memcpy(&y, before().z[2], 2);
  EXPECT_EQ(probe.x, x);
  EXPECT_EQ(probe.y, y);
  unsigned char expected[VL_BYTES]{0x11, 0x22};
  EXPECT_EQ(std::memcmp(state().z[1], expected, VL_BYTES), 0);
}

TEST_F(Bridge, PassesImmediatesAsNumbers) {
  run(shape<ProbeFlags, no_result, pattern, multiplier>::thunk<U64>, n5(29) | m16(15));
  EXPECT_EQ(probe.x, 29u);
  EXPECT_EQ(probe.y, 15u);  // the field: the function adds 1
  run(shape<ProbeFlags, no_result, i1_half_one, right_b>::thunk<U64>, 1 << 5);
  EXPECT_EQ(probe.x, 1u);
  EXPECT_EQ(probe.y, 64u - 1u);
  run(shape<ProbeFlags, no_result, imm4_s, rot13>::thunk<U64>, m16(8) | 3 << 13);
  EXPECT_EQ(probe.x, ~std::uint64_t{0} - 7);
  EXPECT_EQ(probe.y, 3u);
}

// A wrong number or kind of operands does not compile.
template <class F, operand... Operands>
constexpr bool accepted = fits<F*, Operands...>;
using ternary = VecV(VecV, PredV, VecV, CpuContext*);
static_assert(accepted<ternary, Zdn, Zdn, Pg_m, Zm5>);
static_assert(accepted<ternary, Zt, Zda, Pg_z, Zn>);
static_assert(!accepted<ternary, Zdn, Zdn, Pg_m>);
static_assert(!accepted<ternary, Zdn, Zdn, Pg_m, Zm5, Zn>);
static_assert(!accepted<ternary, Zdn, Pg_m, Zdn, Zm5>);
static_assert(!accepted<ternary, Zdn, Zdn, Pg_m, imm5>);
static_assert(!accepted<ternary, Zdn, Zdn, Pg_m, Vn>);
static_assert(!accepted<ternary, Pd, Zdn, Pg_m, Zm5>);
static_assert(!accepted<ternary, Vd, Zdn, Pg_m, Zm5>);
static_assert(!accepted<ternary, no_result, Zdn, Pg_m, Zm5>);
static_assert(accepted<std::uint64_t(PredV, CpuContext*), Vd, Pg>);
static_assert(accepted<std::uint64_t(PredV, CpuContext*), Xd, Pg>);
static_assert(!accepted<std::uint64_t(PredV, CpuContext*), Zd, Pg>);
static_assert(!accepted<std::uint64_t(PredV, CpuContext*), Xd, Zn>);
static_assert(!accepted<std::uint64_t(PredV, CpuContext*), imm5, Pg>);
static_assert(!accepted<std::uint64_t(std::uint64_t, CpuContext*), Xd, imm13>);  // a mask is no number yet
static_assert(accepted<void(std::uint64_t, CpuContext*), no_result, imm5>);
static_assert(!accepted<void(std::uint64_t, CpuContext*), Xd, imm5>);
static_assert(!accepted<void(std::uint64_t, std::uint64_t), no_result, imm5>);  // no context

// The rows themselves, by words.

void run_word(cpu_state& state, std::uint32_t word) { ASSERT_EQ(get_sve_handler(word)(&state, word), DECODE_OK); }

struct aliased_case {
  const char* what;
  std::uint32_t apart, aliased;  // the same sources, into Z0 and into one of them
  int destination;
};

TEST_F(Bridge, SeesOperandsAsTheyWereWhenTheDestinationIsOneOfThem) {
  const aliased_case cases[] = {
      {"uqsub z0.b, z1.b, z2.b into z1", 0x04201C00 | m16(2) | n5(1), 0x04201C00 | m16(2) | n5(1) | d(1), 1},
      {"uqsub z0.b, z1.b, z2.b into z2", 0x04201C00 | m16(2) | n5(1), 0x04201C00 | m16(2) | n5(1) | d(2), 2},
  };
  for (const aliased_case& c : cases) {
    cpu_state apart = before(), aliased = before();
    run_word(apart, c.apart);
    run_word(aliased, c.aliased);
    EXPECT_EQ(std::memcmp(apart.z[0], aliased.z[c.destination], VL_BYTES), 0) << c.what;
  }
}

TEST_F(Bridge, DropsTheResultOfACounterOnRegister31) {
  run_word(state(), 0x252D8800 | n5(1) | d(31));  // decp xzr, p1.b
  EXPECT_EQ(std::memcmp(state().x, before().x, sizeof before().x), 0);
  EXPECT_EQ(state().sp, before().sp);
}

TEST_F(Bridge, ZeroesAReductionsVectorAboveElement0) {
  run_word(state(), 0x04002000 | n5(1) | d(2));  // saddv d2, p0, z1.b
  std::int64_t sum = 0;
  for (int i = 0; i != VL_BYTES; ++i)
    if ((before().p[0][i] & 1) != 0) sum += static_cast<signed char>(before().z[1][i]);
  unsigned char expected[VL_BYTES]{};
  std::memcpy(expected, &sum, sizeof sum);
  EXPECT_EQ(std::memcmp(state().z[2], expected, VL_BYTES), 0);
}

TEST_F(Bridge, RewritesFlagsStatusFirstFaultRegisterAndPredicateInAComparison) {
  run_word(state(), 0x24002000 | m16(1) | n5(2) | d(3));  // cmpeq p3.b, p0/z, z2.b, z1.d
  EXPECT_EQ(state().nzcv >> 32, 0u);
  EXPECT_EQ(state().fpsr, before().fpsr);
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(state().ffr[i], before().ffr[i] & 1) << i;
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_LE(state().p[3][i], 1) << i;
}

TEST_F(Bridge, AddsNothingOfAShiftedByteImmediate) {
  run_word(state(), 0x2525C000 | 1 << 13 | n5(0x55) | d(1));  // uqadd z1.b, z1.b, #0x55, lsl #8
  EXPECT_EQ(std::memcmp(state().z[1], before().z[1], VL_BYTES), 0);
}

TEST_F(Bridge, ShiftsByteElementsRightByTheirWholeWidth) {
  std::fill(std::begin(state().p[0]), std::end(state().p[0]), static_cast<unsigned char>(1));
  run_word(state(), 0x04018100 | d(1));  // lsr z1.b, p0/m, z1.b, #8
  unsigned char zeros[VL_BYTES]{};
  EXPECT_EQ(std::memcmp(state().z[1], zeros, VL_BYTES), 0);
}

}  // namespace
}  // namespace quern
