// Packing and unpacking of predicates, beside the loop that takes a byte at a time.
#include "sve/state/predicate_bits.h"

#include <benchmark/benchmark.h>

#include "bench/registration.h"

namespace {

void pack_by_bytes(const unsigned char* bytes, unsigned char* image) {
  std::memset(image, 0, predicate_image_bytes);
  for (int i = 0; i != VL_BYTES; ++i) image[i / 8] |= static_cast<unsigned char>((bytes[i] & 1) << i % 8);
}

void unpack_by_bytes(const unsigned char* image, unsigned char* bytes) {
  for (int i = 0; i != VL_BYTES; ++i) bytes[i] = image[i / 8] >> i % 8 & 1;
}

template <void (*Convert)(const unsigned char*, unsigned char*)>
void convert(benchmark::State& state) {
  alignas(16) unsigned char from[VL_BYTES], to[VL_BYTES];
  for (int i = 0; i != VL_BYTES; ++i) from[i] = static_cast<unsigned char>(i * 7 % 5 == 0);
  for (auto _ : state) {
    Convert(from, to);
    benchmark::DoNotOptimize(from);
    benchmark::DoNotOptimize(to);
    benchmark::ClobberMemory();
  }
}

}  // namespace

void quern::register_predicate_bits() {
  benchmark::RegisterBenchmark("predicate/pack", convert<pack_predicate>);
  benchmark::RegisterBenchmark("predicate/pack a byte at a time", convert<pack_by_bytes>);
  benchmark::RegisterBenchmark("predicate/unpack", convert<unpack_predicate>);
  benchmark::RegisterBenchmark("predicate/unpack a byte at a time", convert<unpack_by_bytes>);
}
