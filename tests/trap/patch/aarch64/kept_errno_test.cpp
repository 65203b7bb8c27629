// Square roots, as the host has them: the C library is not called for its errno, which is the application's own.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "sve/decoder/decode_map.h"
#include "sve/decoder/decode_row.h"
#include "sve/trap/patch/written_registers.h"

namespace quern {
namespace {

struct square_root {
  const char* name;
  std::uint32_t word;
};
constexpr square_root square_roots[] = {
    {"fsqrt z0.s, p0/m, z1.s", 0x658DA020},
    {"fsqrt z0.d, p0/m, z1.d", 0x65CDA020},
};

TEST(SquareRoot, BelowZeroLeavesErrno) {
  for (const square_root& root : square_roots) {
    const auto state = std::make_unique<cpu_state>();
    std::memset(state->p, 1, sizeof state->p);
    std::memset(state->z, 0xBF, sizeof state->z);
    errno = ENOENT;
    ASSERT_EQ(decode_word(root.word).row->thunk(state.get(), root.word), DECODE_OK) << root.name;
    EXPECT_NE(state->z[0][0], 0xBF) << root.name;
    EXPECT_EQ(errno, ENOENT) << root.name;
  }
}

TEST(SquareRoot, WritesFewRegisters) {
  for (const square_root& root : square_roots)
    EXPECT_NE(written_by(*decode_word(root.word).row), all_registers) << root.name;
}

}  // namespace
}  // namespace quern
