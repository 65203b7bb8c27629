// A main for fuzz targets where libFuzzer is not there: the same pseudo-random inputs in every run.
//   TARGET [COUNT]
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  const unsigned long count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 20'000;
  std::mt19937 random(20481);
  std::array<std::uint8_t, 64> bytes;
  for (unsigned long i = 0; i != count; ++i) {
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%lu inputs\n", count);
}
