// The place is data of this program, made executable.
#include "tests/trap/patch/aarch64/patched_place.h"

#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sve/trap/patch/instructions.h"

extern "C" {
extern unsigned char quern_place[], quern_place_code[], quern_after_place[];
void quern_call_place(cpu_state* image, unsigned char* v, std::uint64_t* own_sp);
}

namespace quern {
namespace {

constexpr std::size_t place_bytes = 65536;

void make_executable() {
  if (mprotect(quern_place, place_bytes, PROT_READ | PROT_WRITE | PROT_EXEC) == 0) return;
  std::perror("mprotect");
  std::abort();
}

void put_branch(unsigned char* at, const unsigned char* to) {
  const aarch64::word branch = aarch64::b(to - at);
  std::memcpy(at, &branch, sizeof branch);
}

}  // namespace

const run_code& last_code() { return *reinterpret_cast<const run_code*>(quern_place_code); }

void run_patched(std::span<const run_word> run, processor_registers& processor, thread_registers& registers) {
  static const bool is_ready = (make_executable(), true);
  static_cast<void>(is_ready);
  const auto offset = static_cast<std::size_t>(reinterpret_cast<unsigned char*>(&registers) -
                                               static_cast<unsigned char*>(__builtin_thread_pointer()));
  alignas(64) static unsigned char room[max_run_code_bytes];
  make_run_code(run, quern_place, offset, quern_place_code, room);
  std::memcpy(quern_place_code, room, sizeof room);
  put_branch(quern_place, last_code().at(last_code().entry));
  put_branch(quern_place + 4 * run.size(), quern_after_place);
  __builtin___clear_cache(reinterpret_cast<char*>(quern_place), reinterpret_cast<char*>(quern_place + place_bytes));
  quern_call_place(&processor.state, processor.v[0], &processor.own_sp);
}

}  // namespace quern
