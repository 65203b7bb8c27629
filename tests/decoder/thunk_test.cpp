// What thunks do around the work itself: the word that direct ones keep, the status that floating-point ones move, and
// the nothing that prefetches do.
#include "sve/decoder/thunk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/operands.h"

namespace quern {
namespace {

constexpr std::uint64_t marker = 0x1122334455667788;

// All general registers point into the middle of memory of their own, and no predicate has an active element, so that
// any instruction may run.
struct quiet_state {
  std::unique_ptr<unsigned char[]> memory{new unsigned char[8 * VL_BYTES]};
  std::unique_ptr<cpu_state> state{new cpu_state};

  quiet_state() {
    std::memset(static_cast<void*>(state.get()), 0, sizeof *state);
    const auto middle = reinterpret_cast<std::uintptr_t>(memory.get() + 4 * VL_BYTES);
    for (std::uint64_t& x : state->x) x = middle;
    state->sp = middle;
    state->instr_word = marker;
  }
};

TEST(Thunks, KeepTheWordOfDirectInstructionsAlone) {
  for (const decode_map& map : decode_maps()) {
    for (const decode_row& row : map.rows) {
      const quiet_state quiet;
      EXPECT_EQ(row.thunk(quiet.state.get(), row.value), DECODE_OK) << row.name.view();
      const bool direct = row.way == route::direct || row.way == route::direct_fp;
      EXPECT_EQ(quiet.state->instr_word, direct ? row.value : marker) << row.name.view();
    }
  }
}

TEST(Thunks, OfPrefetchesChangeNothing) {
  std::mt19937 random{4};
  int prefetches = 0;
  for (const decode_map& map : decode_maps()) {
    for (const decode_row& row : map.rows) {
      if (row.way != route::none) continue;
      ++prefetches;
      cpu_state before, after;
      for (unsigned char& byte : reinterpret_cast<unsigned char(&)[sizeof before]>(before))
        byte = static_cast<unsigned char>(random());
      std::memcpy(static_cast<void*>(&after), &before, sizeof before);
      const std::uint32_t fields = static_cast<std::uint32_t>(random()) & ~map.key.mask();
      EXPECT_EQ(row.thunk(&after, row.value | fields), DECODE_OK) << row.name.view();
      EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0) << row.name.view();
    }
  }
  EXPECT_EQ(prefetches, 36);
}

// Handlers that keep what they are given.
aarch64_z_reg seen_zdn, seen_zm;
aarch64_p_reg seen_pg;
aarch64_decode_rc keep_operands(cpu_state*, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  seen_zdn = zdn, seen_pg = pg, seen_zm = zm;
  return DECODE_UNIMPLEMENTED;
}

TEST(Thunks, HandOverTheOperandsAndTheAnswer) {
  const quiet_state quiet;
  using shape = direct_shape<keep_operands, Zdn, Pg_m, Zm5>;
  const std::uint32_t word = 0xFFFF0000 | 5 << 10 | 17 << 5 | 30;
  EXPECT_EQ(shape::thunk<U32>(quiet.state.get(), word), DECODE_UNIMPLEMENTED);
  EXPECT_EQ(quiet.state->instr_word, word);  // zero-extended
  EXPECT_EQ(seen_zdn.num, 30u);
  EXPECT_EQ(seen_zdn.size, z_none);
  EXPECT_EQ(seen_zdn.dsize, size_s);
  EXPECT_EQ(seen_zdn.ssize, size_s);
  EXPECT_EQ(seen_pg.num, 5u);
  EXPECT_EQ(seen_pg.size, p_merging);
  EXPECT_EQ(seen_zm.num, 17u);
  EXPECT_EQ(seen_zm.size, size_s);
}

#ifdef __aarch64__
constexpr std::uint32_t division_by_zero = 1u << 1, saturation = 1u << 27;

aarch64_decode_rc divide_by_zero(cpu_state*) {
  volatile double one = 1, zero = 0;
  one = one / zero;
  return DECODE_OK;
}

TEST(Thunks, MoveTheFloatingPointStatusAroundTheCall) {
  const quiet_state quiet;
  asm volatile("msr fpsr, %0" : : "r"(std::uint64_t{1}) : "memory");  // the host's own, which must not come in
  quiet.state->fpsr = saturation;
  direct_fp_shape<divide_by_zero>::thunk<U64>(quiet.state.get(), 0);
  EXPECT_EQ(quiet.state->fpsr, saturation | division_by_zero);
  direct_shape<divide_by_zero>::thunk<U64>(quiet.state.get(), 0);
  EXPECT_EQ(quiet.state->fpsr, saturation | division_by_zero);
}

TEST(Thunks, WithoutFloatingPointLeaveTheStatusAlone) {
  const quiet_state quiet;
  direct_shape<divide_by_zero>::thunk<U64>(quiet.state.get(), 0);
  EXPECT_EQ(quiet.state->fpsr, 0u);
}
#endif

}  // namespace
}  // namespace quern
