// The framework's call-out as the rewritten code wants it, made of its published calls.
#pragma once

#include "sve/client/framework.h"

// Inserts before `where` a call of `callee` with `count` arguments, immediates or registers. The call may change any
// register that the application does not see, and keeps the spill slots, which show what the callee writes to them with
// dr_write_saved_reg. `pc` is the address of the application's instruction that the call stands for.
//
// A clean call does more than is asked, since it keeps all registers; the framework's cheaper call would run on the
// application's stack, and with its thread-local storage.
template <class... arguments>
void dr_insert_call_zivra(void* drcontext, instrlist_t* list, instr_t* where, [[maybe_unused]] app_pc pc, void* callee,
                          unsigned int count, arguments... operands) {
  constexpr bool keep_fp_state = false;  // asks for x87 state, which this processor does not have
  dr_insert_clean_call(drcontext, list, where, callee, keep_fp_state, count, operands...);
}
