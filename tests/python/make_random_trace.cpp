// make_random_trace SEED THREADS RECORDS END: threads that trace so many records each, in loops over arrays, gathers,
// and accesses without any order, with markers and other kinds among them. END says how the process ends: `orderly`, or
// `killed` in the midst.
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string_view>
#include <thread>
#include <vector>

#include "sve/memory/trace.h"

namespace {

using random_source = std::mt19937_64;

thread_local std::uint64_t traced = 0;

void record(std::uint32_t tid, std::uint32_t group, std::uint32_t kind, std::uint64_t size, std::uint64_t address,
            std::uint64_t pc) {
  ++traced;
  trace_mem({incr_count(), tid, group, memaccess_type_t{kind}, 0, size, address, pc});
}

// Any number, as often a short as a long one.
std::uint64_t any(random_source& random) { return random() >> random() % 64; }

void stream(random_source& random, std::uint32_t tid) {
  const std::uint64_t start = any(random), pc = 4 * (random() % 4096), stride = any(random), length = random() % 200;
  for (std::uint64_t i = 0; i < length; ++i) {
    record(tid, 0, MEM_LOAD, 256, start + i * stride, pc);
    record(tid, 0, MEM_STORE, 256, start + 4096 + i * stride, pc + 4);
  }
}

void gather(random_source& random, std::uint32_t tid) {
  const std::uint64_t start = any(random), pc = 4 * (random() % 4096), lanes = random() % 64 + 1;
  for (std::uint64_t i = 0; i < lanes; ++i) {
    const std::uint32_t group =
        trace_group_member | (i == 0 ? trace_group_first : 0) | (i == lanes - 1 ? trace_group_last : 0);
    record(tid, group, MEM_LOAD, 4, start + random() % 65536, pc);
  }
}

void without_order(random_source& random, std::uint32_t tid) {
  for (std::uint64_t i = random() % 20; i != 0; --i) {
    const auto group = static_cast<std::uint32_t>(any(random));
    record(tid, group, static_cast<std::uint32_t>(random() % 3), any(random), any(random), any(random));
  }
}

void marker(random_source& random) {
  record(random() % 2 != 0 ? tid_start_marker : tid_stop_marker, 0, MEM_STORE, 0, 0, 0);
}

void trace(random_source random, std::uint32_t tid, std::uint64_t records) {
  while (traced < records) {
    switch (random() % 8) {
      case 0: marker(random); break;
      case 1:
      case 2: without_order(random, tid); break;
      case 3:
      case 4: gather(random, tid); break;
      default: stream(random, tid);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5 || !sve_init(0, "make_random_trace")) return 2;
  const auto seed = std::strtoull(argv[1], nullptr, 10), threads = std::strtoull(argv[2], nullptr, 10),
             records = std::strtoull(argv[3], nullptr, 10);
  std::vector<std::thread> running;
  for (std::uint64_t i = 0; i < threads; ++i)
    running.emplace_back(trace, random_source(seed + i), static_cast<std::uint32_t>(i + 1), records);
  for (std::thread& thread : running) thread.join();
  if (argv[4] == std::string_view("killed")) kill(getpid(), SIGKILL);
  sve_exit();
}
