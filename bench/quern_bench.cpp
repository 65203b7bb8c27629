// The benchmarks' program.
#include <benchmark/benchmark.h>

#include "bench/registration.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  quern::register_direct_thunks();  // first: as CSV, what the first has counters of is what all may have
  quern::register_memory();
  quern::register_float();
  quern::register_predicate_bits();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
