// The benchmarks' program.
#include <benchmark/benchmark.h>

#include "bench/registration.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  quern::register_direct_thunks();
  quern::register_memory();
  quern::register_float();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
