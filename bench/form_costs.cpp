// form_costs CALLS [NAME]: calls the thunk of each form, or of those whose name begins with NAME, on a fixed state,
// with all lanes active and with every other one, and says before each what it is. For a counter of executed
// instructions: the difference of two runs is what so many more calls cost.
#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/representative_form.h"
#include "sve/decoder/decode_map.h"

namespace {

using namespace quern;

const char* way_name(route way) {
  switch (way) {
    case route::direct: return "direct";
    case route::direct_fp: return "direct_fp";
    case route::library: return "library";
    case route::none: break;
  }
  return "none";
}

void call(const decode_row& row, active_lanes active, long calls, std::uint64_t memory) {
  cpu_state& state = random_registers(row.size, active);
  if (row.memory.touches_memory()) address_memory(row, state, memory);
  const std::uint32_t word = representative_word(row);
  std::printf("%s %s %d %s %08x\n", row.name.c_str(), way_name(row.way), 8 << row.size,
              active == active_lanes::all ? "all" : "half", word);
  std::fflush(stdout);
  for (long i = 0; i != calls; ++i) row.thunk(&state, word);
}

// Memory that 32-bit addresses reach.
std::uint64_t low_memory() {
  constexpr std::size_t size = 1 << 16;
  void* const at = mmap(reinterpret_cast<void*>(0x10000000), size, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
  if (at == MAP_FAILED) {
    std::perror("form_costs: mmap");
    std::exit(1);
  }
  return reinterpret_cast<std::uint64_t>(at) + size / 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: form_costs CALLS [NAME]\n", stderr);
    return 2;
  }
  const long calls = std::strtol(argv[1], nullptr, 10);
  const std::string begins = argc > 2 ? argv[2] : "";
  const std::uint64_t memory = low_memory();
  for (const decode_map& map : decode_maps()) {
    for (const decode_row& row : map.rows) {
      if (!row.name.view().starts_with(begins)) continue;
      for (const active_lanes active : {active_lanes::all, active_lanes::half}) call(row, active, calls, memory);
    }
  }
}
