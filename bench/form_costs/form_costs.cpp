// form_costs [NAME]: what a call of the thunk of each form, or of those whose name begins with NAME, costs on a fixed
// state, in executed AArch64 instructions: with all lanes active, with every other one, and with all while tracing. It
// marks each call; the numbers are written by instruction_counter.c, without which they are missing.
#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/representative_form.h"
#include "sve/decoder/decode_map.h"
#include "sve/memory/trace.h"

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

// The second of two calls: the first may find addresses of functions.
void call(const decode_row& row, active_lanes active, bool traced, std::uint64_t memory) {
  for (const bool counted : {false, true}) {
    cpu_state& state = random_registers(row.size, active);
    if (row.memory.touches_memory()) address_memory(row, state, memory);
    const std::uint32_t word = representative_word(row);
    const sve_handler thunk = row.thunk;
    enable_trace = traced;
    if (counted) asm volatile("hint #0x7e" ::: "memory");
    thunk(&state, word);
    if (counted) asm volatile("hint #0x7f" ::: "memory");
    enable_trace = false;
  }
}

void call_in_all_ways(const decode_row& row, std::uint64_t memory) {
  std::printf("%s,%s", row.name.c_str(), way_name(row.way));
  std::fflush(stdout);  // the counter writes behind it
  call(row, active_lanes::all, false, memory);
  call(row, active_lanes::half, false, memory);
  call(row, active_lanes::all, true, memory);
  std::printf("\n");
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
  const std::string_view begins = argc > 1 ? argv[1] : "";
  const std::uint64_t memory = low_memory();
  for (const decode_map& map : decode_maps()) {
    for (const decode_row& row : map.rows) {
      if (row.name.view().starts_with(begins)) call_in_all_ways(row, memory);
    }
  }
}
