// setjmp, getcontext and their kin: a jump or a change of context brings back whether SIGILL was held, with the rest of
// the mask.
#include <ucontext.h>

#include "sve/trap/held_note.h"
#include "sve/trap/host/export.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/thread_signals.h"

namespace quern {
namespace {

// Called before a long jump.
void bring_back_held(const __jmp_buf_tag& buffer) {
  if (buffer.__mask_was_saved) hold_signals(noted_held(buffer.__saved_mask));
}

// Called before a context takes over. The kernel must not see a SIGILL in its mask, which one that a handler was given
// may have, or one of the application's making: it becomes a note.
void bring_back_held(ucontext_t& context) {
  const signal_set mask = from_sigset(context.uc_sigmask);
  const signal_set held = noted_held(context.uc_sigmask) | (mask & never_blocked);
  to_sigset(mask & ~never_blocked, context.uc_sigmask);
  note_held(context.uc_sigmask, held);
  hold_signals(held);
}

}  // namespace
}  // namespace quern

using namespace quern;

// Called by the functions below with their first two arguments; each answers what they are to go on with.
#define HIDDEN extern "C" __attribute__((visibility("hidden"), used))

HIDDEN void* quern_before_setjmp(__jmp_buf_tag* buffer, void*, int which) {
  note_held(buffer->__saved_mask, held_signals());
  return reinterpret_cast<void*>(next().setjmps[which]);
}

HIDDEN void* quern_before_getcontext(ucontext_t* context) {
  note_held(context->uc_sigmask, held_signals());
  return reinterpret_cast<void*>(next().getcontext);
}

HIDDEN void* quern_before_setcontext(ucontext_t* context) {
  bring_back_held(*context);
  return reinterpret_cast<void*>(next().setcontext);
}

HIDDEN void* quern_before_swapcontext(ucontext_t* from, ucontext_t* to) {
  note_held(from->uc_sigmask, held_signals());
  bring_back_held(*to);
  return reinterpret_cast<void*>(next().swapcontext);
}

#undef HIDDEN

// A function that returns twice can't be called by one that returns between: ours end in a jump to the C library's,
// with the arguments, the stack and the link register as they came.
#define JUMP_ON(name, before, which)                      \
  asm(".text\n"                                           \
      ".globl " name "\n.type " name ", %function\n" name \
      ":\n"                                               \
      "  .cfi_startproc\n"                                \
      "  hint #34\n" /* BTI C */                          \
      "  stp x29, x30, [sp, #-32]!\n"                     \
      "  .cfi_def_cfa_offset 32\n"                        \
      "  .cfi_offset x29, -32\n"                          \
      "  .cfi_offset x30, -24\n"                          \
      "  stp x0, x1, [sp, #16]\n"                         \
      "  mov x29, sp\n"                                   \
      "  mov w2, #" #which                                \
      "\n"                                                \
      "  bl " before                                      \
      "\n"                                                \
      "  mov x16, x0\n"                                   \
      "  ldp x0, x1, [sp, #16]\n"                         \
      "  ldp x29, x30, [sp], #32\n"                       \
      "  .cfi_restore x29\n"                              \
      "  .cfi_restore x30\n"                              \
      "  .cfi_def_cfa_offset 0\n"                         \
      "  br x16\n"                                        \
      "  .cfi_endproc\n"                                  \
      "  .size " name ", . - " name "\n")
JUMP_ON("__sigsetjmp", "quern_before_setjmp", 0);
JUMP_ON("_setjmp", "quern_before_setjmp", 1);
JUMP_ON("setjmp", "quern_before_setjmp", 2);
JUMP_ON("getcontext", "quern_before_getcontext", 0);
JUMP_ON("setcontext", "quern_before_setcontext", 0);
JUMP_ON("swapcontext", "quern_before_swapcontext", 0);
#undef JUMP_ON

QUERN_EXPORT void siglongjmp(sigjmp_buf buffer, int value) noexcept(false) {
  bring_back_held(*buffer);
  next().siglongjmp(buffer, value);
  __builtin_unreachable();
}

QUERN_EXPORT void longjmp(jmp_buf buffer, int value) noexcept(false) {
  bring_back_held(*buffer);
  next().longjmp(buffer, value);
  __builtin_unreachable();
}

QUERN_EXPORT void _longjmp(jmp_buf buffer, int value) noexcept(false) {
  bring_back_held(*buffer);
  next()._longjmp(buffer, value);
  __builtin_unreachable();
}

// longjmp of programs compiled with _FORTIFY_SOURCE.
QUERN_EXPORT void __longjmp_chk(sigjmp_buf buffer, int value) {
  bring_back_held(*buffer);
  next().longjmp_checked(buffer, value);
}
