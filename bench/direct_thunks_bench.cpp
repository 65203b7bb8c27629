// What a call of each direct thunk costs that doesn't touch memory: with all lanes active and, under a predicate, with
// every other one. Beside it the limit: copying as many whole registers as it has
// vector and predicate operands, or one where it has none. The rows come from the decode maps, so that a new one is
// measured without a line here.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>
#include <string>

#include "bench/registration.h"
#include "bench/representative_form.h"
#include "sve/decoder/decode_map.h"

namespace quern {
namespace {

using clock = std::chrono::steady_clock;

double nanoseconds(clock::duration d) { return std::chrono::duration<double, std::nano>(d).count(); }

// Whether the operand is a register that the emulator keeps whole: a vector or a predicate.
bool is_scalable(const operand& op) {
  const register_file file = op.traits().file;
  return file == register_file::vector || file == register_file::element || file == register_file::predicate;
}

// Every vector lane 1.0 but for its last few bits, as a double and as the single in its low word: numbers that stay
// normal however often an instruction adds to them or multiplies them.
void fill_with_numbers_near_one(cpu_state& state, std::uint32_t size) {
  std::mt19937_64 random{1};
  for (auto& z : state.z) {
    for (std::size_t i = 0; i != VL_BYTES; i += std::size_t{1} << size) {
      const std::uint64_t number = (size == size_s ? 0x3F800000 : 0x3FF000003F800000) + random() % 16 - 8;
      std::memcpy(z + i, &number, std::size_t{1} << size);
    }
  }
}

// The time of copying that many whole registers, the least of several tries.
double copy_time(std::size_t registers) {
  static unsigned char from[8][VL_BYTES], to[8][VL_BYTES];
  double least = 1e9;
  for (int attempt = 0; attempt != 20; ++attempt) {
    constexpr int calls = 2000;
    const auto start = clock::now();
    for (int i = 0; i != calls; ++i) {
      for (std::size_t r = 0; r != registers; ++r) std::memcpy(to[r], from[r], VL_BYTES);
      benchmark::DoNotOptimize(from);
      benchmark::DoNotOptimize(to);
      benchmark::ClobberMemory();
    }
    least = std::min(least, nanoseconds(clock::now() - start) / calls);
  }
  return least;
}

void call_thunk(benchmark::State& benchmark_state, const decode_row& row, active_lanes active) {
  cpu_state& state = random_registers(row.size, active);
  if (row.way == route::direct_fp) fill_with_numbers_near_one(state, row.size);
  const std::uint32_t word = representative_word(row);
  const auto registers = std::ranges::count_if(row.operands, is_scalable);
  const double limit = copy_time(std::max<std::size_t>(1, static_cast<std::size_t>(registers)));
  const auto start = clock::now();
  for (auto _ : benchmark_state) {
    row.thunk(&state, word);
    benchmark::ClobberMemory();
  }
  const double call = nanoseconds(clock::now() - start) / static_cast<double>(benchmark_state.iterations());
  benchmark_state.counters["copy_ns"] = limit;
  benchmark_state.counters["ratio"] = call / limit;
}

}  // namespace

void register_direct_thunks() {
  for (const decode_map& map : decode_maps()) {
    for (const decode_row& row : map.rows) {
      const bool direct = row.way == route::direct || row.way == route::direct_fp;
      if (!direct || row.memory.touches_memory()) continue;
      const auto name = [&](const char* lanes) {
        return row.name.view().data() + std::string(" ") + std::string(row.handler) + lanes;
      };
      const auto add = [&](const char* lanes, active_lanes active) {
        benchmark::RegisterBenchmark(name(lanes).c_str(),
                                     [&row, active](benchmark::State& s) { call_thunk(s, row, active); });
      };
      add("", active_lanes::all);
      if (std::ranges::any_of(row.operands, [](const operand& op) { return governs(op.kind); }))
        add("/half", active_lanes::half);
    }
  }
}

}  // namespace quern
