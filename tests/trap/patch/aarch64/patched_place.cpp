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
static_assert(4 * (max_run + 1) <= 256 && max_run_code_bytes <= 16384, "the room in call_place.S");

void make_executable() {
  static const bool is_ready = mprotect(quern_place, place_bytes, PROT_READ | PROT_WRITE | PROT_EXEC) == 0;
  if (is_ready) return;
  std::perror("mprotect");
  std::abort();
}

void put_branch(unsigned char* at, const unsigned char* to) {
  const aarch64::word branch = aarch64::b(to - at);
  std::memcpy(at, &branch, sizeof branch);
}

void call_place(std::size_t words, processor_registers& processor) {
  put_branch(quern_place + 4 * words, quern_after_place);
  __builtin___clear_cache(reinterpret_cast<char*>(quern_place), reinterpret_cast<char*>(quern_place + place_bytes));
  quern_call_place(&processor.state, processor.v[0], &processor.own_sp);
}

}  // namespace

const run_code& last_code() { return *reinterpret_cast<const run_code*>(quern_place_code); }

void run_patched(std::span<const run_word> run, processor_registers& processor, thread_registers& registers) {
  make_executable();
  const auto offset = static_cast<std::size_t>(reinterpret_cast<unsigned char*>(&registers) -
                                               static_cast<unsigned char*>(__builtin_thread_pointer()));
  alignas(64) static unsigned char room[max_run_code_bytes];
  make_run_code(run, quern_place, offset, quern_place_code, room);
  std::memcpy(quern_place_code, room, sizeof room);
  put_branch(quern_place, last_code().at(last_code().entry));
  call_place(run.size(), processor);
}

void run_unpatched(std::span<const std::uint32_t> words, processor_registers& processor) {
  make_executable();
  std::memcpy(quern_place, words.data(), words.size_bytes());
  call_place(words.size(), processor);
}

}  // namespace quern
