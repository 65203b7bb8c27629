// Embeds the emulator: runs SVE instructions one by one on a register file of its own, on whatever processor this is.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "sve/decoder/sve_utils.h"
#include "sve/state/cpu_state.h"

namespace {

constexpr std::uint32_t program[] = {
    0x04a14000,  // index z0.s, #0, #1
    0x25b8c0a1,  // mov   z1.s, #5
    0x04a10002,  // add   z2.s, z0.s, z1.s
};

bool run(cpu_state& state, std::uint32_t word) {
  const sve_handler handler = get_sve_handler(word);
  return handler != nullptr && handler(&state, word) == DECODE_OK;
}

}  // namespace

int main() {
  const auto state = std::make_unique<cpu_state>();
  for (const std::uint32_t word : program) {
    if (run(*state, word)) continue;
    std::printf("%08x is not an emulated instruction\n", static_cast<unsigned>(word));
    return 1;
  }
  constexpr int lanes = VL_BYTES / sizeof(std::uint32_t);
  std::uint32_t sums[lanes];
  std::memcpy(sums, state->z[2], sizeof sums);
  std::printf("z2.s, %d lanes: %u %u %u ... %u\n", lanes, sums[0], sums[1], sums[2], sums[lanes - 1]);
}
