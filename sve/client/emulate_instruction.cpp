// The one function that rewritten code calls.
#include "sve/client/emulate_instruction.h"

#include <cstdio>
#include <cstring>

#include "sve/client/application_context.h"
#include "sve/client/application_fault.h"
#include "sve/client/framework.h"
#include "sve/client/reported_places.h"
#include "sve/client/saved_registers.h"
#include "sve/client/thread_state.h"

namespace {

// The word is read again, not taken from the block: it shows when the application has changed its code meanwhile.
void report_failure(const unsigned char* pc) {
  std::uint32_t word;
  std::memcpy(&word, pc, sizeof word);
  if (!quern::count_failed({reinterpret_cast<std::uint64_t>(pc), word})) return;
  std::fprintf(stderr, "Error: failed to emulate SVE instruction 0x%08x at PC %p\n", word,
               static_cast<const void*>(pc));
}

// Goes on behind the instruction by way of the framework when it is time to. The framework hands a signal on at once if
// it comes in the application's code, and else when the thread comes by.
void leave_linked_blocks(cpu_state& state) {
  unsigned int& call_outs = reinterpret_cast<quern::thread_block&>(state).call_outs;
  if (++call_outs != quern::most_call_outs) return;
  call_outs = 0;
  dr_mcontext_t context = quern::context_of(state);
  context.pc += sizeof(unsigned int);
  dr_redirect_execution(&context);
}

}  // namespace

void emulate_instruction(unsigned int word, unsigned char* pc, sve_handler handler) {
  using namespace quern;
  void* const drcontext = dr_get_current_drcontext();
  cpu_state* const state = thread_state(drcontext);
  state->pc = pc;
  state->x[26] = dr_read_saved_reg(drcontext, slot_x26);
  state->x[27] = dr_read_saved_reg(drcontext, slot_x27);
  state->x[28] = dr_read_saved_reg(drcontext, slot_x28);
  if (run_handler(drcontext, handler, state, word) == DECODE_OK)
    count_emulated({reinterpret_cast<std::uint64_t>(pc), word});
  else
    report_failure(pc);
  dr_write_saved_reg(drcontext, slot_x26, state->x[26]);
  dr_write_saved_reg(drcontext, slot_x27, state->x[27]);
  dr_write_saved_reg(drcontext, slot_x28, state->x[28]);
  leave_linked_blocks(*state);
}
