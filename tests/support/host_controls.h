// A floating-point handler called as its thunk calls it, under given controls.
#pragma once

#include "sve/handlers/floating_point/host_fpsr.h"

namespace quern {

// The state's FPCR in the host's own register, as when the application has written it; where the host has none,
// handlers read the state's. The host's former value comes back at the end.
class host_controls {
 public:
#ifdef __aarch64__
  explicit host_controls(const cpu_state& state) {
    asm volatile("mrs %0, fpcr" : "=r"(former_));
    set(state.fpcr);
  }
  ~host_controls() { set(former_); }

 private:
  static void set(std::uint64_t fpcr) { asm volatile("msr fpcr, %0" : : "r"(fpcr) : "memory"); }
  std::uint64_t former_ = 0;
#else
  explicit host_controls(const cpu_state&) {}
  ~host_controls() {}

 public:
#endif
  host_controls(const host_controls&) = delete;
  host_controls& operator=(const host_controls&) = delete;
};

// handler(&state, operands...) with FPSR moved to the host and back.
template <class Handler, class... Operand>
aarch64_decode_rc call_under_controls(Handler* handler, cpu_state& state, Operand... operand) {
  const host_controls controls(state);
  load_host_fpsr(&state);
  const aarch64_decode_rc result = handler(&state, operand...);
  store_host_fpsr(&state);
  return result;
}

}  // namespace quern
