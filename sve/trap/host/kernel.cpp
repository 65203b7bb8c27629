// The kernel's signal calls.
#include "sve/trap/host/kernel.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

#include "sve/report/place_report.h"
#include "sve/trap/host/system_call.h"

namespace quern::kernel {

long set_action(int signal, const signal_action* action, signal_action* old) {
  sigaction_record wanted{}, previous{};
  if (action) wanted = {action->handler, static_cast<unsigned>(action->flags), nullptr, action->mask};
  const long result =
      call(SYS_rt_sigaction, signal, action ? argument(&wanted) : 0, argument(&previous), sizeof(signal_set));
  if (result == 0 && old) *old = {previous.handler, static_cast<int>(previous.flags), previous.mask};
  return result;
}

long change_mask(int how, const signal_set* set, signal_set* old) {
  return call(SYS_rt_sigprocmask, how, argument(set), argument(old), sizeof(signal_set));
}

signal_set mask() {
  signal_set result = 0;
  change_mask(SIG_BLOCK, nullptr, &result);
  return result;
}

void set_mask(signal_set set) { change_mask(SIG_SETMASK, &set, nullptr); }

signal_set pending() {
  signal_set result = 0;
  call(SYS_rt_sigpending, argument(&result), sizeof result);
  return result;
}

void queue_to_self(int signal, const siginfo_t& info) {
  call(SYS_rt_tgsigqueueinfo, call(SYS_getpid), call(SYS_gettid), signal, argument(&info));
}

// By a call that reads the eight bytes around and then refuses its first argument. Unlike a load it refuses an address
// with a tag in its top byte as well.
bool can_read(std::uint64_t address) {
  constexpr std::uint64_t tag = std::uint64_t{0xFF} << 56;
  constexpr int no_change = -1;
  const auto bytes = static_cast<long>(address & ~tag & ~(sizeof(signal_set) - 1));
  return call(SYS_rt_sigprocmask, no_change, bytes, 0, sizeof(signal_set)) != -EFAULT;
}

// By a call that does nothing since Linux 2.6.19, but for telling of memory that is not mapped.
bool is_mapped(std::uint64_t address) {
  constexpr std::uint64_t least_page = 4096;  // the kernel wants the start of one, and any of its multiples will do
  return call(SYS_msync, static_cast<long>(address & -least_page), 1, MS_ASYNC) != -ENOMEM;
}

long control_process(int option, unsigned long argument) { return call(SYS_prctl, option, long(argument)); }

long read_file(const char* path, std::uint64_t offset, void* bytes, std::size_t size) {
  const long file = call(SYS_openat, AT_FDCWD, argument(path), O_RDONLY | O_CLOEXEC);
  if (file < 0) return file;
  const long read = call(SYS_pread64, file, argument(bytes), long(size), long(offset));
  call(SYS_close, file);
  return read;
}

void print_error(const char* line) { call(SYS_write, STDERR_FILENO, argument(line), long(std::strlen(line))); }

void leave(int status) {
  for (;;) call(SYS_exit_group, status);
}

void leave_by_own_failure() { leave(status_of_own_failure); }

}  // namespace quern::kernel
