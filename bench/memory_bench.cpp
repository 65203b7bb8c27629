// The memory instructions, all lanes active and every other one, with tracing off and on, beside memcpy of the bytes
// that all lanes touch.
#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <string>

#include "bench/registration.h"
#include "sve/handlers/memory/broadcast.h"
#include "sve/handlers/memory/contiguous.h"
#include "sve/handlers/memory/fault_tolerant.h"
#include "sve/handlers/memory/gather_scatter.h"
#include "sve/handlers/memory/structure.h"
#include "sve/handlers/memory/whole_register.h"
#include "sve/memory/trace.h"

namespace {

constexpr aarch64_z_reg zt{3, size_b, z_none, z_none}, zv{8, size_b, z_none, z_none};
constexpr aarch64_p_reg pg{0, p_zeroing, p_none, p_none}, pt{1, p_none, p_none, p_none};
constexpr aarch64_i_rsp_reg base{1, size_x};
constexpr aarch64_i_reg index_31{31, size_x, i_none, i_none};

alignas(4096) cpu_state s;
// The registers and addresses are such that no two of an instruction's blocks agree in the low twelve bits of their
// addresses, which would make loads wait for unrelated stores.
alignas(4096) unsigned char memory[2 * 4096];
unsigned char* const block = memory + 3072;

using loop = std::function<void(benchmark::State&)>;

// The loop that calls a handler with its operands, which are constants, as they cost a program next to nothing.
template <auto... operand, class Handler>
loop calling(Handler* handler) {
  return [=](benchmark::State& state) {
    for (auto _ : state) {
      handler(&s, operand...);
      benchmark::ClobberMemory();
    }
  };
}

struct measured {
  const char* name;
  std::size_t memory_bytes, lane_bytes, registers;
  loop run;
};

loop by(handler_zpri* h) { return calling<zt, pg, base, 0>(h); }
loop by(handler_zprr* h) { return calling<zt, pg, base, index_31>(h); }
loop by(handler_zpri_unsigned* h) { return calling<zt, pg, base, 0u>(h); }
loop by(handler_zprz* h) { return calling<zt, pg, base, zv>(h); }
loop by(handler_zri* h) { return calling<zt, base, 0>(h); }
loop by(handler_pri* h) { return calling<pt, base, 0>(h); }

const measured instructions[] = {
    {"ld1b", 1, 1, 1, by(sve_ld1b_zpri)},
    {"ld1w", 4, 4, 1, by(sve_ld1w_zpri)},
    {"ld1d", 8, 8, 1, by(sve_ld1d_zpri)},
    {"ld1d scaled", 8, 8, 1, by(sve_ld1d_scaled_zprr)},
    {"ld1b_h", 1, 2, 1, by(sve_ld1b_h_zpri)},
    {"ld1b_d", 1, 8, 1, by(sve_ld1b_d_zpri)},
    {"ld1sw_d", 4, 8, 1, by(sve_ld1sw_d_zpri)},
    {"st1b", 1, 1, 1, by(sve_st1b_zpri)},
    {"st1w", 4, 4, 1, by(sve_st1w_zpri)},
    {"st1d", 8, 8, 1, by(sve_st1d_zpri)},
    {"st1b_s", 1, 4, 1, by(sve_st1b_s_zpri)},
    {"st1b_d", 1, 8, 1, by(sve_st1b_d_zpri)},
    {"ld1rw", 4, 4, 1, by(sve_ld1rw_zpri)},
    {"ld2b", 1, 1, 2, by(sve_ld2b_zpri)},
    {"ld2w", 4, 4, 2, by(sve_ld2w_zpri)},
    {"ld3b", 1, 1, 3, by(sve_ld3b_zpri)},
    {"ld4d", 8, 8, 4, by(sve_ld4d_zpri)},
    {"st2w", 4, 4, 2, by(sve_st2w_zpri)},
    {"st3b", 1, 1, 3, by(sve_st3b_zpri)},
    {"st4d", 8, 8, 4, by(sve_st4d_zpri)},
    {"gather ld1w", 4, 4, 1, by(sve_ld1w_sxtw_scaled_zprz)},
    {"gather ld1d", 8, 8, 1, by(sve_ld1d_scaled_zprz)},
    {"scatter st1w", 4, 4, 1, by(sve_st1w_sxtw_scaled_zprz)},
    {"scatter st1d", 8, 8, 1, by(sve_st1d_scaled_zprz)},
    {"ldff1b", 1, 1, 1, by(sve_ldff1b_scaled_zprr)},
    {"ldnf1d", 8, 8, 1, by(sve_ldnf1d_zpri)},
};

const measured whole_registers[] = {
    {"ldr z", 1, 1, 1, by(sve_ldr_zri)},
    {"str z", 1, 1, 1, by(sve_str_zri)},
    {"ldr p", 1, 8, 1, by(sve_ldr_pri)},
    {"str p", 1, 8, 1, by(sve_str_pri)},
};

void prepare(const measured& m, std::size_t step) {
  s.x[1] = reinterpret_cast<std::uint64_t>(block);
  for (std::size_t i = 0; i != VL_BYTES; ++i) s.p[0][i] = i % (step * m.lane_bytes) == 0;
  for (std::size_t i = 0; i != VL_BYTES / m.lane_bytes; ++i) {  // small indices, out of order
    const std::uint64_t index = i * 37 % 61;
    std::memcpy(s.z[zv.num] + i * m.lane_bytes, &index, m.lane_bytes);
  }
}

void measure(benchmark::State& state, const measured& m, std::size_t step, bool traced) {
  prepare(m, step);
  enable_trace = traced;
  m.run(state);
  enable_trace = false;
}

// Of a length that the compiler does not know, as in a program that copies such blocks.
void measure_memcpy(benchmark::State& state, const measured& m) {
  std::size_t length = VL_BYTES / m.lane_bytes * m.memory_bytes * m.registers;
  alignas(4096) static unsigned char copy[4 * VL_BYTES];
  for (auto _ : state) {
    benchmark::DoNotOptimize(length);
    std::memcpy(copy, block, length);
    benchmark::ClobberMemory();
  }
}

}  // namespace

void quern::register_memory() {
  for (const measured& m : instructions) {
    const std::string name = std::string("memory/") + m.name;
    benchmark::RegisterBenchmark((name + "/memcpy").c_str(), measure_memcpy, m);
    for (const bool traced : {false, true}) {
      for (const std::size_t step : {1u, 2u}) {
        benchmark::RegisterBenchmark((name + (step == 1 ? "/all" : "/half") + (traced ? "/traced" : "")).c_str(),
                                     measure, m, step, traced);
      }
    }
  }
  for (const measured& m : whole_registers) {
    const std::string name = std::string("memory/") + m.name;
    benchmark::RegisterBenchmark((name + "/memcpy").c_str(), measure_memcpy, m);
    benchmark::RegisterBenchmark((name + "/all").c_str(), measure, m, 1, false);
  }
}
