// The judge of handlers itself.
#include "tests/handlers/agreement.h"

#include <cstddef>

namespace quern {
namespace {

void expect_seen(std::size_t byte) {
  const cpu_state& before = samples().front().state;
  cpu_state changed = before;
  reinterpret_cast<unsigned char*>(&changed)[byte] ^= 1;
  EXPECT_NE(difference(changed, before), "") << "byte " << byte;
}

// Every byte of the scalar fields, and a byte in each vector and predicate.
TEST(Agreement, SeesAChangeOfAnyRegister) {
  EXPECT_EQ(difference(samples().front().state, samples().front().state), "");
  for (std::size_t i = 0; i != offsetof(cpu_state, fpcr) + 4; ++i) expect_seen(i);
  for (std::size_t i = offsetof(cpu_state, z) + VL_BYTES - 1; i < offsetof(cpu_state, instr_word); i += VL_BYTES)
    expect_seen(i);
  for (std::size_t i = 0; i != 8; ++i) expect_seen(offsetof(cpu_state, instr_word) + i);
}

}  // namespace
}  // namespace quern
