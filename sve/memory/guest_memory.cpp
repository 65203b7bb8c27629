// Guarded reads of application memory, the readability probe, and the fault handlers behind them.
#include "sve/memory/guest_memory.h"

#include <ucontext.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "sve/memory/current_access.h"
#include "sve/memory/memory_host.h"
#include "sve/memory/pages.h"

std::uint32_t page_size;
volatile std::int32_t SVEFaultRegion;
sigjmp_buf sveFaultJB;

void read_page_size() { page_size = static_cast<std::uint32_t>(sysconf(_SC_PAGESIZE)); }

namespace {

std::int32_t SVELibInitialized;

constinit quern::memory_host host{.set_action = sigaction, .probe = nullptr};

using action_function = void (*)(int, siginfo_t*, void*);

// An action with an empty mask; SA_NODEFER, since its handler may leave by a jump and the signal must stay deliverable.
struct sigaction action_of(action_function function) {
  struct sigaction action {};
  action.sa_sigaction = function;
  action.sa_flags = SA_SIGINFO | SA_RESTART | SA_NODEFER;
  sigemptyset(&action.sa_mask);
  return action;
}

void set_action(int signal, action_function function) {
  const struct sigaction action = action_of(function);
  host.set_action(signal, &action, nullptr);
}

void touch(std::uint64_t address) {
  [[maybe_unused]] const unsigned char byte = *reinterpret_cast<const volatile unsigned char*>(address);
}

// Whether the first and the last byte of an element can be read: its two ends lie in all the pages that it touches.
bool ends_are_readable(std::uint64_t first, std::uint64_t last) {
  if (host.probe != nullptr) {
    return host.probe(first, true) && (quern::page_of(first) == quern::page_of(last) || host.probe(last, true));
  }
  if (sigsetjmp(sveFaultJB, 1) != 0) return false;
  SVEFaultRegion = 1;
  touch(first);
  touch(last);
  SVEFaultRegion = 0;
  return true;
}

template <class T>
T guarded_read(std::uint64_t address, bool* fault) {
  if (fault != nullptr && !ends_are_readable(address, address + sizeof(T) - 1)) {
    *fault = true;
    return 0;
  }
  quern::note_access(address, sizeof(T), MEM_LOAD);
  T value;
  std::memcpy(&value, reinterpret_cast<const void*>(address), sizeof value);
  return value;
}

template <class T>
void write(T value, std::uint64_t address) {
  quern::note_access(address, sizeof(T), MEM_STORE);
  std::memcpy(reinterpret_cast<void*>(address), &value, sizeof value);
}

// The probing read: one instruction of this length on either processor, so that a fault is survived by stepping over
// it.
constexpr std::uint64_t probing_read_bytes = 4;

void probing_read(volatile char* address) {
#if defined(__aarch64__)
  asm volatile("ldrb %w0, [%0]" : "+r"(address) : : "memory");
#elif defined(__x86_64__)
  // RAX, since other registers would change the encoding's length; the explicit displacement makes it four bytes.
  asm volatile("%{disp8%} movzbl (%0), %k0" : "+a"(address) : : "memory");
#else
#error "no probing read for this processor"
#endif
}

void step_over_probing_read(void* context) {
  mcontext_t& machine = static_cast<ucontext_t*>(context)->uc_mcontext;
#if defined(__aarch64__)
  machine.pc += probing_read_bytes;
#elif defined(__x86_64__)
  machine.gregs[REG_RIP] += probing_read_bytes;
#endif
}

}  // namespace

void quern::use_memory_host(const memory_host& given) { host = given; }

std::uint8_t ReadMemLib1(unsigned long addr, int, bool* fault, CpuContext*) {
  return guarded_read<std::uint8_t>(addr, fault);
}
std::uint16_t ReadMemLib2(unsigned long addr, int, bool* fault, CpuContext*) {
  return guarded_read<std::uint16_t>(addr, fault);
}
std::uint32_t ReadMemLib4(unsigned long addr, int, bool* fault, CpuContext*) {
  return guarded_read<std::uint32_t>(addr, fault);
}
std::uint64_t ReadMemLib8(unsigned long addr, int, bool* fault, CpuContext*) {
  return guarded_read<std::uint64_t>(addr, fault);
}

void WriteMemLib1(unsigned char value, unsigned long addr, CpuContext*) { write(value, addr); }
void WriteMemLib2(unsigned short value, unsigned long addr, CpuContext*) { write(value, addr); }
void WriteMemLib4(unsigned int value, unsigned long addr, CpuContext*) { write(value, addr); }
void WriteMemLib8(unsigned long value, unsigned long addr, CpuContext*) { write(value, addr); }

std::uint64_t ReadMem(unsigned long, int, int, bool* fault, CpuContext*) {
  *fault = false;
  return 0;
}
std::uint64_t ReadMemSim(unsigned long, int, int, bool* fault, bool, CpuContext*) {
  *fault = false;
  return 0;
}
void WriteMem(unsigned long, unsigned long, int, CpuContext*) {}
void WriteMemSim(unsigned long, unsigned long, int, bool, CpuContext*) {}

template <>
bool addr_is_readable<char>(volatile char* addr) {
  if (host.probe != nullptr) return host.probe(reinterpret_cast<std::uint64_t>(addr), false);
  static thread_local volatile bool access_violation;
  [[maybe_unused]] static thread_local volatile std::uint64_t
      access_violation_addr;  // for whoever looks with a debugger
  const struct sigaction action = action_of([](int, siginfo_t*, void* context) {
    access_violation = true;
    step_over_probing_read(context);
  });
  access_violation_addr = reinterpret_cast<std::uint64_t>(addr);
  access_violation = false;
  struct sigaction old;
  host.set_action(SIGSEGV, &action, &old);
  probing_read(addr);
  host.set_action(SIGSEGV, &old, nullptr);
  return !access_violation;
}

void SVESigHandler(int signal, siginfo_t*, void*) {
  if (SVEFaultRegion != 0) {
    SVEFaultRegion = 0;
    siglongjmp(sveFaultJB, 1);
  }
  set_action(SIGSEGV, nullptr);
  set_action(SIGBUS, nullptr);
  std::fprintf(stderr,
               "zivra's SVESigHandler caught signal %s from the process being emulated, passing it to the default "
               "signal handler.\n",
               signal == SIGSEGV ? "SIGSEGV" : "SIGBUS");
  std::fflush(stderr);
}

std::int32_t SVEInitialize() {
  if (SVELibInitialized != 0) return SVELibInitialized;
  cpu_ctxt.vl_units = 2;
  ctxt = &cpu_ctxt;
  set_action(SIGSEGV, SVESigHandler);
  set_action(SIGBUS, SVESigHandler);
  SVELibInitialized = 1;
  return 1;
}
