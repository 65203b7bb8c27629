// A run that has looked at a predicate's lanes before it is left, by a fault or a signal in its middle, or before
// another run goes by the same predicate: what changes predicate or registers meanwhile counts for the words behind.
#include <asm/sigcontext.h>
#include <setjmp.h>
#include <signal.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"

enum { VECTORS = 64, LONGEST = 256 };

// Copies a vector from `whole`, then one from `fault`, to `to`, all by P0; answers X20, which has 1000 and a vector's
// bytes at the fault.
uint64_t copy_two(const uint8_t* whole, const uint8_t* fault, uint8_t* to);
// Copies n bytes by a loop that is a run; answers X20, which was 0 before.
uint64_t copy_by_loop(const uint8_t* from, uint8_t* to, size_t n);
// Goes round a loop that is a run, until a handler makes X3 zero. Answers X20, which was 7 before.
uint64_t wait_in_loop(const uint8_t* from);
// The same with a word that goes to a routine for long.
uint64_t wait_in_routine(void);
extern const unsigned char copy_two_fault[], copy_loop[], copy_loop_end[], waiting_loop[], waiting_loop_end[],
    routine_loop[], routine_loop_end[];
__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".balign 128\n"
    ".type copy_two, %function\n"
    "copy_two:\n"
    "  stp x19, x20, [sp, #-16]!\n"
    "  mov x20, #1000\n"
    "  ptrue p0.b\n"
    "  incb x20\n"
    "  ld1b {z0.b}, p0/z, [x0]\n"
    ".globl copy_two_fault\n"
    "copy_two_fault:\n"
    "  ld1b {z1.b}, p0/z, [x1]\n"
    "  st1b {z0.b}, p0, [x2]\n"
    "  ptrue p0.b\n"
    "  st1b {z1.b}, p0, [x2, #1, mul vl]\n"
    "  incb x20\n"
    "  mov x0, x20\n"
    "  ldp x19, x20, [sp], #16\n"
    "  ret\n"
    ".size copy_two, .-copy_two\n"
    ".balign 128\n"
    ".type copy_by_loop, %function\n"
    "copy_by_loop:\n"
    "  stp x19, x20, [sp, #-16]!\n"
    "  mov x20, #0\n"
    "  mov x3, #0\n"
    "  whilelo p0.b, x3, x2\n"
    ".globl copy_loop\n"
    "copy_loop:\n"
    "  ld1b {z0.b}, p0/z, [x0, x3]\n"
    "  st1b {z0.b}, p0, [x1, x3]\n"
    "  incb x3\n"
    "  whilelo p0.b, x3, x2\n"
    "  b.any copy_loop\n"
    ".globl copy_loop_end\n"
    "copy_loop_end:\n"
    "  mov x0, x20\n"
    "  ldp x19, x20, [sp], #16\n"
    "  ret\n"
    ".size copy_by_loop, .-copy_by_loop\n"
    ".balign 128\n"
    ".type wait_in_loop, %function\n"
    "wait_in_loop:\n"
    "  stp x19, x20, [sp, #-16]!\n"
    "  mov x20, #7\n"
    "  mov x3, #1\n"
    "  ptrue p0.b\n"
    ".globl waiting_loop\n"
    "waiting_loop:\n"
    "  ld1b {z0.b}, p0/z, [x0]\n"
    "  add z1.b, z0.b, z1.b\n"
    "  cbnz x3, waiting_loop\n"
    ".globl waiting_loop_end\n"
    "waiting_loop_end:\n"
    "  mov x0, x20\n"
    "  ldp x19, x20, [sp], #16\n"
    "  ret\n"
    ".size wait_in_loop, .-wait_in_loop\n"
    ".balign 128\n"
    ".type wait_in_routine, %function\n"
    "wait_in_routine:\n"
    "  stp x19, x20, [sp, #-16]!\n"
    "  mov x20, #7\n"
    "  mov x3, #1\n"
    ".globl routine_loop\n"
    "routine_loop:\n"
    "  sqadd z1.b, z0.b, z1.b\n"
    "  cbnz x3, routine_loop\n"
    ".globl routine_loop_end\n"
    "routine_loop_end:\n"
    "  mov x0, x20\n"
    "  ldp x19, x20, [sp], #16\n"
    "  ret\n"
    ".size wait_in_routine, .-wait_in_routine\n");

// Loads a vector from `first` by all lanes of P0, calls `between`, and stores to `to` what it loads from `second` by
// P0. Each of the loads is in a run of its own.
void copy_around(const uint8_t* first, const uint8_t* second, uint8_t* to, void (*between)(void));
__asm__(
    ".balign 128\n"
    ".type copy_around, %function\n"
    "copy_around:\n"
    "  stp x20, x30, [sp, #-32]!\n"
    "  stp x1, x2, [sp, #16]\n"
    "  ptrue p0.b\n"
    "  ld1b {z0.b}, p0/z, [x0]\n"
    "  blr x3\n"
    "  ldp x1, x2, [sp, #16]\n"
    "  ld1b {z1.b}, p0/z, [x1]\n"
    "  ptrue p1.b\n"
    "  st1b {z1.b}, p1, [x2]\n"
    "  ldp x20, x30, [sp], #32\n"
    "  ret\n"
    ".size copy_around, .-copy_around\n");

// Loads a vector from `first` by all lanes of P0; and in a run of its own makes P0 inactive and reads `fault`.
void clear_and_read(const uint8_t* first, const uint8_t* fault);
// Stores to `to` what it loads from `from` by P0.
void copy_by_p0(const uint8_t* from, uint8_t* to);
__asm__(
    ".balign 128\n"
    ".type clear_and_read, %function\n"
    "clear_and_read:\n"
    "  ptrue p0.b\n"
    "  ptrue p1.b\n"
    "  ld1b {z0.b}, p0/z, [x0]\n"
    "  mrs x9, tpidr_el0\n"
    "  pfalse p0.b\n"
    "  ld1b {z1.b}, p1/z, [x1]\n"
    "  ret\n"
    ".size clear_and_read, .-clear_and_read\n"
    ".type copy_by_p0, %function\n"
    "copy_by_p0:\n"
    "  ld1b {z1.b}, p0/z, [x0]\n"
    "  ptrue p1.b\n"
    "  st1b {z1.b}, p1, [x1]\n"
    "  ret\n"
    ".size copy_by_p0, .-copy_by_p0\n");

static uint8_t *page, to[VECTORS * LONGEST], from[VECTORS * LONGEST];
static size_t page_bytes;
static volatile uint64_t faults, x20_at_fault, pc_at_fault, ticks, signals;
static bool clears_predicate, jumps;
static sigjmp_buf behind_fault;

static struct _aarch64_ctx* find(uint8_t* records, uint32_t magic) {
  for (struct _aarch64_ctx* head = (struct _aarch64_ctx*)records; head->magic; head = (struct _aarch64_ctx*)records) {
    if (head->magic == magic) return head;
    records += head->size;
  }
  return NULL;
}

// Leaves the first lane of P0 alone active.
static bool clear_predicate(mcontext_t* machine) {
  struct _aarch64_ctx* head = find(machine->__reserved, SVE_MAGIC);
  const struct extra_context* const extra = (struct extra_context*)find(machine->__reserved, EXTRA_MAGIC);
  if (!head && extra) head = find((uint8_t*)extra->datap, SVE_MAGIC);
  if (!head) return false;
  const unsigned quarters = sve_vq_from_vl(((struct sve_context*)head)->vl);
  uint8_t* const p0 = (uint8_t*)head + SVE_SIG_PREG_OFFSET(quarters, 0);
  memset(p0, 0, SVE_SIG_PREG_SIZE(quarters));
  p0[0] = 1;
  return true;
}

static void on_fault(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  mcontext_t* const machine = &((ucontext_t*)context)->uc_mcontext;
  ++faults;
  if (jumps) siglongjmp(behind_fault, 1);
  x20_at_fault = machine->regs[20];
  pc_at_fault = machine->pc;
  machine->regs[20] += 5;
  if (clears_predicate && !clear_predicate(machine)) _exit(1);
  mprotect(page, page_bytes, PROT_READ | PROT_WRITE);
}

static void on_alarm(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  mcontext_t* const machine = &((ucontext_t*)context)->uc_mcontext;
  ++ticks;
  if (machine->pc >= (uintptr_t)waiting_loop && machine->pc < (uintptr_t)waiting_loop_end) machine->regs[3] = 0;
  if (machine->pc >= (uintptr_t)routine_loop && machine->pc < (uintptr_t)routine_loop_end) machine->regs[3] = 0;
  if (machine->pc < (uintptr_t)copy_loop || machine->pc > (uintptr_t)copy_loop_end) return;
  ++machine->regs[20];
  ++signals;
}

static void check_fault(const char* name, bool clears, size_t bytes) {
  static const uint8_t nothing[LONGEST];
  const size_t active = clears ? 1 : bytes;
  clears_predicate = clears;
  memset(to, 0xEE, sizeof to);
  mprotect(page, page_bytes, PROT_NONE);
  faults = 0;
  const uint64_t x20 = copy_two(from, page, to);
  check(name, faults == 1 && pc_at_fault == (uintptr_t)copy_two_fault && x20_at_fault == 1000 + bytes);
  check("  what it adds to X20", x20 == 1005 + 2 * bytes);
  check("  the vector before", memcmp(to, from, active) == 0 && (active == bytes || to[active] == 0xEE));
  check("  that of the fault", memcmp(to + bytes, page, active) == 0);
  check("  beyond its active lanes", memcmp(to + bytes + active, nothing, bytes - active) == 0);
}

static void touch_page(void) { *(volatile uint8_t*)page; }

static void check_between(const char* name, bool clears, void (*between)(void), size_t active, size_t bytes) {
  static const uint8_t nothing[LONGEST];
  clears_predicate = clears;
  memset(to, 0xEE, sizeof to);
  mprotect(page, page_bytes, between == touch_page ? PROT_NONE : PROT_READ);
  copy_around(from, page, to, between);
  check(name, memcmp(to, page, active) == 0 && memcmp(to + active, nothing, bytes - active) == 0);
}

static void check_jump(size_t bytes) {
  static const uint8_t nothing[LONGEST];
  memset(to, 0xEE, sizeof to);
  mprotect(page, page_bytes, PROT_NONE);
  jumps = true;
  if (sigsetjmp(behind_fault, 1) == 0) clear_and_read(from, page);
  copy_by_p0(from, to);
  jumps = false;
  check("a run whose fault's handler jumps away", memcmp(to, nothing, bytes) == 0);
}

// A function in memory of no file, whose words trap each time.
static void (*made_function(uint32_t word))(void) {
  uint32_t* const code = mmap(NULL, 8, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  code[0] = word;
  code[1] = 0xD65F03C0;  // ret
  __builtin___clear_cache((char*)code, (char*)(code + 2));
  return (void (*)(void))(uintptr_t)code;
}

int main(void) {
  size_t bytes;
  __asm__("cntb %0" : "=r"(bytes));
  page_bytes = (size_t)sysconf(_SC_PAGESIZE);
  page = mmap(NULL, page_bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  for (size_t i = 0; i != page_bytes; ++i) page[i] = (uint8_t)(i * 7 + 1);
  for (size_t i = 0; i != sizeof from; ++i) from[i] = (uint8_t)(i * 5 + 3);
  struct sigaction action = {.sa_sigaction = on_fault, .sa_flags = SA_SIGINFO};
  sigaction(SIGSEGV, &action, NULL);
  for (int i = 0; i != 3; ++i) {
    check_fault("a fault behind a look", false, bytes);
    check_fault("a fault whose handler takes lanes away", true, bytes);
  }
  void (*const pfalse_p0)(void) = made_function(0x2518E400);
  for (int i = 0; i != 3; ++i) {
    check_between("a fault between two runs", false, touch_page, bytes, bytes);
    check_between("one whose handler takes lanes away", true, touch_page, 1, bytes);
    check_between("a word between two runs that traps, and takes all lanes away", false, pfalse_p0, 0, bytes);
    check_jump(bytes);
  }

  action.sa_sigaction = on_alarm;
  sigaction(SIGALRM, &action, NULL);
  const struct itimerval often = {.it_interval = {.tv_usec = 300}, .it_value = {.tv_usec = 300}}, never = {0};
  setitimer(ITIMER_REAL, &often, NULL);
  bool right = true;
  for (int i = 0; (signals < 100 || i < 500) && right; ++i) {
    const size_t n = sizeof from - (size_t)i % (2 * bytes);
    memset(to, 0xEE, sizeof to);
    const uint64_t before = signals, counted = copy_by_loop(from, to, n);
    right = counted == signals - before && memcmp(to, from, n) == 0 && (n == sizeof to || to[n] == 0xEE);
  }
  bool waited = true;
  for (int i = 0; i != 50; ++i) waited = wait_in_loop(from) == 7 && wait_in_routine() == 7 && waited;
  uint64_t words = 0, counted = 0;
  for (const uint64_t enough = ticks + 300; ticks < enough; ++words) {
    __asm__ volatile(
        "mov z1.d, %0\n"
        "mrs x9, tpidr_el0\n"
        "add z1.d, z1.d, #1\n"
        "mrs x9, tpidr_el0\n"
        "fmov %0, d1"
        : "+r"(counted)
        :
        : "x9", "z1");
  }
  setitimer(ITIMER_REAL, &never, NULL);
  check("loops that a handler ends", waited);
  check("runs of one word under signals", counted == words);
  check("a loop under signals that count in X20", right);
  return finish("predicates_in_runs");
}
