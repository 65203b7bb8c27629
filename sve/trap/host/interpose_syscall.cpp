// syscall(), by which a program changes its mask, its actions and its memory behind the C library's back, and prctl().
// The calls that are this host's to answer go the way of the library's own functions; all others to the kernel as they
// are.
#include <errno.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cstring>

#include "sve/trap/host/export.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/own_actions.h"
#include "sve/trap/host/system_call.h"
#include "sve/trap/host/thread_signals.h"
#include "sve/trap/host/waiting_set.h"

// In assembly, since some calls (vfork) must not find a frame of ours on the stack. The numbers are those of
// rt_sigaction, rt_sigprocmask, the calls that wait with a mask, prctl, mremap, mprotect, pkey_mprotect and seccomp,
// and of prctl's options for seccomp and the vector length; the functions for other calls than prctl take the arguments
// of syscall() as they stand.
asm(R"(
  // Under a filter of system calls no new place can be patched.
  .macro stop_patching
  adrp x9, quern_patching_is_off
  mov w10, #1
  strb w10, [x9, #:lo12:quern_patching_is_off]
  .endm
  .text
  .globl syscall
  .type syscall, %function
syscall:
  .cfi_startproc
  hint #34  // BTI C
  cmp x0, #134
  b.eq quern_change_action
  cmp x0, #135
  b.eq quern_change_mask
  cmp x0, #22
  b.eq quern_wait
  cmp x0, #72
  b.eq quern_wait
  cmp x0, #73
  b.eq quern_wait
  cmp x0, #133
  b.eq quern_wait
  cmp x0, #441
  b.eq quern_wait
  cmp x0, #167
  b.eq 1f
  cmp x0, #216
  b.eq quern_change_memory
  cmp x0, #226
  b.eq quern_change_memory
  cmp x0, #288
  b.eq quern_change_memory
  cmp x0, #277
  b.eq 3f
4:
  mov x8, x0
  mov x0, x1
  mov x1, x2
  mov x2, x3
  mov x3, x4
  mov x4, x5
  mov x5, x6
  svc #0
  cmn x0, #4095
  b.hs quern_system_call_failed
  ret
3:
  stop_patching
  b 4b
1:
  mov x0, x1
  mov x1, x2
  mov x2, x3
  mov x3, x4
  mov x4, x5
  b 2f
  .cfi_endproc
  .size syscall, .-syscall

  .globl prctl
  .type prctl, %function
prctl:
  .cfi_startproc
  hint #34  // BTI C
2:
  cmp w0, #22
  b.eq 5f
6:
  cmp w0, #50
  b.eq quern_vector_length
  cmp w0, #51
  b.eq quern_vector_length
  mov x8, #167
  svc #0
  cmn x0, #4095
  b.hs quern_system_call_failed
  ret
5:
  stop_patching
  b 6b
  .cfi_endproc
  .size prctl, .-prctl
  .purgem stop_patching
)");
static_assert(SYS_rt_sigaction == 134 && SYS_rt_sigprocmask == 135 && SYS_prctl == 167);
static_assert(SYS_mremap == 216 && SYS_mprotect == 226 && SYS_pkey_mprotect == 288 && SYS_seccomp == 277);
static_assert(SYS_epoll_pwait == 22 && SYS_pselect6 == 72 && SYS_ppoll == 73 && SYS_rt_sigsuspend == 133);
static_assert(PR_SET_SECCOMP == 22);
static_assert(PR_SVE_SET_VL == 50 && PR_SVE_GET_VL == 51);

using namespace quern;

#define HIDDEN extern "C" __attribute__((visibility("hidden"), used))

HIDDEN long quern_system_call_failed(long negated_error) { return result_of(static_cast<int>(-negated_error)); }

HIDDEN long quern_change_mask(long, int how, const signal_set* set, signal_set* old, std::size_t size) {
  return result_of(size != sizeof *set ? EINVAL : change_application_mask(how, set, old));
}

// The mask is the first argument of rt_sigsuspend, and the fourth or fifth of the others; but pselect6 has it in a
// record with its size, which is the sixth.
HIDDEN long quern_wait(long number, long a, long b, long c, long d, long e, long f) {
  struct {
    long set;
    std::size_t size;
  } record{};
  const bool has_record = number == SYS_pselect6 && f;
  if (has_record) {
    std::memcpy(&record, reinterpret_cast<void*>(f), sizeof record);
    f = kernel::argument(&record);
  }
  long& set = number == SYS_pselect6 ? record.set : number == SYS_rt_sigsuspend ? a : number == SYS_ppoll ? d : e;
  const auto carry_out = [&] {
    const long result = kernel::call(number, a, b, c, d, e, f);
    return result < 0 ? result_of(static_cast<int>(-result)) : result;
  };
  if (!set) return carry_out();
  return wait_with_set(*reinterpret_cast<const signal_set*>(set), [&](const signal_set& kernel_set) {
    set = kernel::argument(&kernel_set);
    return carry_out();
  });
}

HIDDEN long quern_change_action(long, int signal, const kernel::sigaction_record* action, kernel::sigaction_record* old,
                                std::size_t size) {
  if (size != sizeof action->mask) return result_of(EINVAL);
  signal_action wanted{}, before{};
  if (action) wanted = {action->handler, static_cast<int>(action->flags), action->mask};
  const int error = change_action(signal, action ? &wanted : nullptr, &before);
  if (error == 0 && old) *old = {before.handler, static_cast<unsigned>(before.flags), nullptr, before.mask};
  return result_of(error);
}
