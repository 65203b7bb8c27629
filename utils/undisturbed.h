// Keeps a thread to itself for the few system calls that a chunk or a file takes: no signal handler runs in between (it
// might trace, too), no cancellation is acted on (the traced instruction is no cancellation point), errno survives.
#pragma once

#include <pthread.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace quern {

class undisturbed {
 public:
  undisturbed() : errno_(errno) {
    // The kernel's call: a host may interpose on libc's to manage the masks that the application asks for.
    const std::uint64_t all = ~std::uint64_t{0};
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, &all, &mask_, sizeof mask_);
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancel_state_);
  }
  ~undisturbed() {
    pthread_setcancelstate(cancel_state_, nullptr);
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, &mask_, nullptr, sizeof mask_);
    errno = errno_;
  }
  undisturbed(const undisturbed&) = delete;
  undisturbed& operator=(const undisturbed&) = delete;

 private:
  int errno_;
  int cancel_state_ = 0;
  std::uint64_t mask_ = 0;
};

}  // namespace quern
