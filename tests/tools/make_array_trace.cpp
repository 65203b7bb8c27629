// make_array_trace: traces accesses at random to variables of its own and to other memory. Prints what plain caches of
// 4 KB and 32 KB make of each array: accesses, misses of either, and the array's name.
#include <cstdio>
#include <random>

#include "plain_cache.h"
#include "sve/memory/trace.h"

char small_table[4000];
static char large_table[100'000];

namespace {

using quern::test::plain_cache;

struct traced_array {
  const char* name;
  std::uint64_t first, bytes, most_gap;  // between two accesses
  std::uint64_t counts[3] = {};
};

// Traces accesses, and puts them through the caches line by line.
class tracer {
 public:
  void access(traced_array& array, std::uint64_t from, std::uint64_t bytes) {
    constexpr std::uint64_t line_bytes = 64;
    trace_mem({count_++, 7, 0, MEM_LOAD, 0, bytes, from, 0x400000});
    for (std::uint64_t line = from / line_bytes; line <= (from + bytes - 1) / line_bytes; ++line) {
      ++array.counts[0];
      if (first_.access(line * line_bytes)) continue;
      ++array.counts[1];
      array.counts[2] += !second_.access(line * line_bytes);
    }
  }

 private:
  plain_cache first_{{4096, 4, 64}}, second_{{32768, 8, 64}};
  std::uint64_t count_ = 0;
};

}  // namespace

int main() {
  const auto address = [](const char* table) { return reinterpret_cast<std::uint64_t>(table); };
  traced_array arrays[] = {
      {"small_table", address(small_table), sizeof small_table, sizeof small_table},
      {"large_table", address(large_table), sizeof large_table, sizeof large_table},
      {"given", 0x20000000, 100'000, 100'000},
      {"0x10000000-0x1000ffff", 0x10000000, 0x10000, 4096},
      {"0x10011000-0x10012fff", 0x10011000, 0x2000, 4096},  // too far behind the one before to be one with it
  };
  if (!sve_init(0, "make_array_trace")) return 1;
  tracer trace;
  for (traced_array& array : arrays) {
    for (std::uint64_t at = 0; at < array.bytes; at += array.most_gap) trace.access(array, array.first + at, 1);
    trace.access(array, array.first + array.bytes - 1, 1);
  }
  std::mt19937 random(1);
  for (int i = 0; i != 50'000; ++i) {
    traced_array& array = arrays[random() % 5];
    const std::uint64_t at = random() % array.bytes;
    trace.access(array, array.first + at, std::min<std::uint64_t>(1 + random() % 256, array.bytes - at));
  }
  sve_exit();
  for (const traced_array& each : arrays)
    std::printf("%12lu%12lu%12lu  %s\n", each.counts[0], each.counts[1], each.counts[2], each.name);
}
