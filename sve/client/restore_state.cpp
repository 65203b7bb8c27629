// The application's registers where rewritten code was interrupted.
#include "sve/client/restore_state.h"

#include "sve/client/saved_registers.h"
#include "sve/client/thread_state.h"

// Between the two reads of the cpu_state's address and the restore of X27, nothing but rewritten code has that address
// in X27. Not mended are the three instructions before the first read, whose X27 is the application's X28, and those
// that restore X28, X27 and X26 at the end: none of them can fault, and an asynchronous signal waits for the block's
// end. Nor are registers that an instruction has already changed brought back, when it is interrupted on the way out
// of its call.
void quern::event_restore_state(void* drcontext, void*, dr_mcontext_t* mcontext, bool, bool) {
  if (mcontext->r27 == reinterpret_cast<reg_t>(thread_state(drcontext))) {
    mcontext->r26 = dr_read_saved_reg(drcontext, slot_x26);
    mcontext->r27 = dr_read_saved_reg(drcontext, slot_x27);
  }
}
