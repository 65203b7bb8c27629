// The kernel's own signal calls: what the C library's do, without the library's names, which this host takes over, and
// without errno. Each answers 0 or more, or a negated error number. All are async-signal-safe.
#pragma once

#include "sve/trap/signal_actions.h"

namespace quern::kernel {

// The record of rt_sigaction; the restorer is unused on AArch64.
struct sigaction_record {
  void* handler;
  unsigned long flags;
  void* restorer;
  signal_set mask;
};

// rt_sigaction. `action` or `old` may be null.
long set_action(int signal, const signal_action* action, signal_action* old);

// rt_sigprocmask of the calling thread. `set` or `old` may be null.
long change_mask(int how, const signal_set* set, signal_set* old);

// The calling thread's mask.
signal_set mask();

// Sets the calling thread's mask.
void set_mask(signal_set set);

// Has the kernel block a set of signals, beside those that it blocks already, for the calling thread.
class blocked_signals {
 public:
  explicit blocked_signals(signal_set set) { change_mask(SIG_BLOCK, &set, &before_); }
  ~blocked_signals() { set_mask(before_); }
  blocked_signals(const blocked_signals&) = delete;
  blocked_signals& operator=(const blocked_signals&) = delete;

 private:
  signal_set before_ = 0;
};

// rt_sigpending: what is pending for the calling thread or its process.
signal_set pending();

// rt_tgsigqueueinfo: sends `signal` to the calling thread, with the sender, code and value of `info`.
void queue_to_self(int signal, const siginfo_t& info);

// Whether the byte at `address` can be read, found out without a fault.
bool can_read(std::uint64_t address);

// Whether there is a mapping at `address`, though it may not be one that can be read.
bool is_mapped(std::uint64_t address);

// prctl with one argument.
long control_process(int option, unsigned long argument);

// Reads the file from `offset` on; answers how many bytes that are, at most `size`.
long read_file(const char* path, std::uint64_t offset, void* bytes, std::size_t size);

// Writes one line of text, which ends in a newline, to standard error.
void print_error(const char* line);

// Ends the process at once.
[[noreturn]] void leave(int status);

// The same with 125, the status that tells of a failure of quern itself.
[[noreturn]] void leave_by_own_failure();

}  // namespace quern::kernel
