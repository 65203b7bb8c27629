// setjmp, longjmp and their kin: a jump brings back whether SIGILL was held, with the rest of the mask.
#include <cstdint>
#include <cstring>

#include "sve/trap/host/export.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/thread_signals.h"

namespace quern {
namespace {

// Kept in the jump buffer behind the kernel's part of the saved mask, where the C library stores nothing: the mark
// tells a noted buffer, or a copy of one, from one that was filled behind our back.
struct jump_note {
  std::uint64_t mark;
  signal_set held;
};

constexpr std::uint64_t note_mark = 0x517E0B5E9A3D4C27;
constexpr std::size_t note_offset = sizeof(sigset_t) - sizeof(jump_note);
static_assert(note_offset >= sizeof(signal_set));

unsigned char* note_place(__jmp_buf_tag& buffer) {
  return reinterpret_cast<unsigned char*>(&buffer.__saved_mask) + note_offset;
}

// Called before a long jump.
void bring_back_held(__jmp_buf_tag& buffer) {
  if (!buffer.__mask_was_saved) return;
  jump_note note;
  std::memcpy(&note, note_place(buffer), sizeof note);
  hold_signals(note.mark == note_mark ? note.held : 0);
}

}  // namespace

// Called by the setjmp functions below; answers the C library's.
extern "C" __attribute__((visibility("hidden"))) void* quern_note_jump(__jmp_buf_tag* buffer, int which) {
  const jump_note note{note_mark, held_signals()};
  std::memcpy(note_place(*buffer), &note, sizeof note);
  return reinterpret_cast<void*>(next().setjmps[which]);
}

}  // namespace quern

// A function that returns twice can't be called by one that returns between: ours end in a jump to the C library's,
// with the arguments, the stack and the link register as they came.
#define SETJMP(name, which)                               \
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
      "  mov w1, #" #which                                \
      "\n"                                                \
      "  bl quern_note_jump\n"                            \
      "  mov x16, x0\n"                                   \
      "  ldp x0, x1, [sp, #16]\n"                         \
      "  ldp x29, x30, [sp], #32\n"                       \
      "  .cfi_restore x29\n"                              \
      "  .cfi_restore x30\n"                              \
      "  .cfi_def_cfa_offset 0\n"                         \
      "  br x16\n"                                        \
      "  .cfi_endproc\n"                                  \
      "  .size " name ", . - " name "\n")
SETJMP("__sigsetjmp", 0);
SETJMP("_setjmp", 1);
SETJMP("setjmp", 2);
#undef SETJMP

using namespace quern;

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
