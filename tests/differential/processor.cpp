// The processor with SVE that this program runs on.
#include "tests/differential/processor.h"

#include <sys/auxv.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "tests/differential/processor_image.h"
#include "tests/support/host_controls.h"

#ifndef PR_SVE_SET_VL
#define PR_SVE_SET_VL 50
#define PR_SVE_VL_LEN_MASK 0xFFFF
#endif

extern "C" {
extern std::uint32_t quern_word_slot[2];
void quern_run_word(quern::processor_image* image);
}

namespace quern {
namespace {

constexpr unsigned long hwcap_sve = 1ul << 22;

sigjmp_buf way_out;
volatile sig_atomic_t is_guarded = 0;

void leave(int signal) {
  if (is_guarded != 0) siglongjmp(way_out, signal);
  std::signal(signal, SIG_DFL);  // the fault comes again, and ends the process as it should
}

processor_image image;
std::uint32_t slot_word = 0;

// The slot is written only for a new word: a processor that is itself emulated translates its page anew each time.
void set_word(std::uint32_t word) {
  if (slot_word == word) return;
  quern_word_slot[0] = slot_word = word;
  __builtin___clear_cache(reinterpret_cast<char*>(quern_word_slot), reinterpret_cast<char*>(quern_word_slot + 1));
}

void fill_image(const cpu_state& state) {
  std::memcpy(image.x, state.x, sizeof image.x);
  image.sp = state.sp;
  image.nzcv = state.nzcv & 0xF0000000;
  image.fpsr = state.fpsr;
  std::memcpy(image.z, state.z, sizeof image.z);
  for (int n = 0; n != 16; ++n) pack_predicate(state.p[n], image.p[n]);
  pack_predicate(state.ffr, image.ffr);
}

void take_image(cpu_state& state) {
  std::memcpy(state.x, image.x, sizeof image.x);
  state.sp = image.sp;
  state.nzcv = (state.nzcv & ~std::uint64_t{0xF0000000}) | (image.nzcv & 0xF0000000);
  state.fpsr = static_cast<std::uint32_t>(image.fpsr);
  std::memcpy(state.z, image.z, sizeof image.z);
  for (int n = 0; n != 16; ++n) unpack_predicate(image.p[n], state.p[n]);
  unpack_predicate(image.ffr, state.ffr);
}

struct emulator_call {
  sve_handler handler;
  std::uint32_t word;
  cpu_state* state;
};

}  // namespace

bool prepare_processor() {
  if ((getauxval(AT_HWCAP) & hwcap_sve) == 0) {
    std::printf("Left out: this processor has no SVE.\n");
    return false;
  }
  const int length = prctl(PR_SVE_SET_VL, VL_BYTES);
  if (length < 0 || (length & PR_SVE_VL_LEN_MASK) != VL_BYTES) {
    std::printf("Left out: this processor's vectors can't be set to %d bytes.\n", VL_BYTES);
    return false;
  }
  if (mprotect(quern_word_slot, WORD_PAGES, PROT_READ | PROT_WRITE | PROT_EXEC) != 0) {
    std::perror("Cannot make a page both writable and executable, which this test needs");
    std::exit(EXIT_FAILURE);
  }
  return true;
}

void catch_faults() {
  static char stack[1 << 16];  // a signal frame holds all of Z and P
  const stack_t alternate{.ss_sp = stack, .ss_flags = 0, .ss_size = sizeof stack};
  sigaltstack(&alternate, nullptr);
  struct sigaction action {};
  action.sa_handler = leave;
  action.sa_flags = SA_ONSTACK | SA_NODEFER;
  for (const int signal : {SIGILL, SIGSEGV, SIGBUS}) sigaction(signal, &action, nullptr);
}

int run_caught(void (*f)(void*), void* argument) {
  const int signal = sigsetjmp(way_out, 0);
  if (signal == 0) {
    is_guarded = 1;
    f(argument);
  }
  is_guarded = 0;
  return signal;
}

int run_on_processor(std::uint32_t word, cpu_state& state) {
  const host_controls controls(state);
  set_word(word);
  fill_image(state);
  const int signal = run_caught([](void*) { quern_run_word(&image); }, nullptr);
  if (signal == 0) take_image(state);
  return signal;
}

int run_on_emulator(sve_handler handler, std::uint32_t word, cpu_state& state) {
  const host_controls controls(state);
  emulator_call call{handler, word, &state};
  return run_caught(
      [](void* argument) {
        const auto& c = *static_cast<emulator_call*>(argument);
        c.handler(c.state, c.word);
      },
      &call);
}

}  // namespace quern
