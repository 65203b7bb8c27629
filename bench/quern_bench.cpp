// The benchmarks' program.
#include <benchmark/benchmark.h>

#include "bench/registration.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  quern::register_direct_thunks();
  quern::register_memory();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
