// The judge of handlers itself.
#include "tests/handlers/agreement.h"

#include <cstddef>

namespace quern {
namespace {

// One bit of any byte, but for the padding before the vectors.
TEST(Agreement, SeesAChangeOfAnyByteOfARegisterFile) {
  const cpu_state& before = samples().front().state;
  cpu_state changed = before;
  EXPECT_EQ(difference(changed, before), "");
  auto* const bytes = reinterpret_cast<unsigned char*>(&changed);
  for (std::size_t i = 0; i != offsetof(cpu_state, instr_word) + sizeof changed.instr_word; ++i) {
    if (i >= offsetof(cpu_state, fpcr) + sizeof changed.fpcr && i < offsetof(cpu_state, z)) continue;
    bytes[i] ^= 1;
    EXPECT_NE(difference(changed, before), "") << "byte " << i;
    bytes[i] ^= 1;
  }
}

}  // namespace
}  // namespace quern
