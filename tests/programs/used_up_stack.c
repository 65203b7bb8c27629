// Instructions and handlers on stacks that are nearly used up: no more is left of them than the documents say that an
// emulated instruction or a handler takes, above a page that can't be touched. They are stacks of threads that are as
// small as is allowed.
#include <limits.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

// What docs/embedded-host.md says; a handler has a frame of its own as well.
enum { TRAP_ROOM = 7500, PATCHED_ROOM = 2400, FIRST_FAULT_ROOM = 11100, HANDLER_ROOM = 13700 + 300 };
enum { PAINT = 0xA5, SIGNALS = 20 };

// Leaf functions that use no stack themselves. X0 points to a vector of numbers that is followed by a page without
// access; they answer a number that does not depend on the vector length.
uint64_t add_lanes(const void* numbers);
uint64_t multiply_halves(const void* numbers);
uint64_t compare_wide(const void* numbers);
uint64_t gather_lanes(const void* numbers);
uint64_t load_past_end(const void* numbers);
uint64_t add_for_long(const void* numbers);
__asm__(
    ".text\n"
    ".arch armv8-a+sve+fp16\n"
    ".globl add_lanes, multiply_halves, compare_wide, gather_lanes, load_past_end, add_for_long, call_on\n"
    "add_lanes:\n"
    "  ptrue p0.s\n"
    "  ld1w {z0.s}, p0/z, [x0]\n"
    "  add z0.s, z0.s, #1\n"
    "  lastb w0, p0, z0.s\n"
    "  ret\n"
    "multiply_halves:\n"
    "  ptrue p0.h\n"
    "  fmov z0.h, #1.0\n"
    "  fmov z1.h, #3.0\n"
    "  fmla z0.h, p0/m, z1.h, z1.h\n"
    "  fsqrt z0.h, p0/m, z0.h\n"
    "  lastb w0, p0, z0.h\n"
    "  ret\n"
    "compare_wide:\n"  // of all forms the one that takes most
    "  ptrue p0.s\n"
    "  ld1w {z0.s}, p0/z, [x0]\n"
    "  mov z1.d, #76\n"
    "  cmphi p1.s, p0/z, z0.s, z1.d\n"
    "  cset w0, any\n"
    "  ret\n"
    "gather_lanes:\n"
    "  ptrue p0.s\n"
    "  mov z1.s, #0\n"
    "  ld1w {z0.s}, p0/z, [x0, z1.s, uxtw]\n"
    "  lastb w0, p0, z0.s\n"
    "  ret\n"
    "load_past_end:\n"  // the second vector's first word is there, as the first's last
    "  ptrue p0.s\n"
    "  incb x0\n"
    "  sub x0, x0, #4\n"
    "  setffr\n"
    "  ldff1w {z0.s}, p0/z, [x0]\n"
    "  rdffr p1.b\n"
    "  cntp x0, p0, p1.s\n"
    "  ret\n"
    "add_for_long:\n"
    "  ptrue p0.s\n"
    "  mov x9, #30000\n"
    "1:\n"
    "  ld1w {z0.s}, p0/z, [x0]\n"
    "  add z0.s, z0.s, #1\n"
    "  subs x9, x9, #1\n"
    "  b.ne 1b\n"
    "  lastb w0, p0, z0.s\n"
    "  ret\n");

// Calls a function with the stack pointer at `top`.
uint64_t call_on(void* top, uint64_t (*function)(const void*), const void* argument);
__asm__(
    ".text\n"
    "call_on:\n"
    "  stp x29, x30, [sp, #-16]!\n"
    "  mov x29, sp\n"
    "  mov sp, x0\n"
    "  mov x0, x2\n"
    "  blr x1\n"
    "  mov sp, x29\n"
    "  ldp x29, x30, [sp], #16\n"
    "  ret\n");

static const uint32_t* numbers;  // a vector, up to a page without access

static void make_numbers(void) {
  const size_t page = (size_t)sysconf(_SC_PAGESIZE);
  unsigned char* const pages = mmap(NULL, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  mprotect(pages + page, page, PROT_NONE);
  uint32_t* const vector = (uint32_t*)(pages + page) - vector_words();
  for (size_t i = 0; i < vector_words(); ++i) vector[i] = 77;
  numbers = vector;
}

static unsigned char* stack_end;  // of the thread's stack, above a page that can't be touched

static size_t painted_bytes_below(const unsigned char* top) {
  const unsigned char* lowest = stack_end;
  while (lowest < top && *lowest == PAINT) ++lowest;
  return (size_t)(top - lowest);
}

// Calls it with `room` bytes left; -1 when it has answered wrongly, else the bytes that were used.
static long bytes_used(size_t room, uint64_t (*function)(const void*), uint64_t wanted) {
  unsigned char* const top = stack_end + room / 16 * 16;
  memset(stack_end, PAINT, room / 16 * 16);
  return call_on(top, function, numbers) == wanted ? (long)painted_bytes_below(top) : -1;
}

static void use_up(const char* name, size_t room, uint64_t (*function)(const void*), uint64_t wanted) {
  const long used = bytes_used(room, function, wanted);
  fprintf(stderr, "%s: %ld bytes of %zu\n", name, used, room);
  check(name, used >= 0);
}

static volatile int signals;  // that came on the stack that is nearly used up

static void handler(int signal) {
  (void)signal;
  const unsigned char* const frame = (const unsigned char*)__builtin_frame_address(0);
  signals += frame > stack_end && frame < stack_end + HANDLER_ROOM;
}

static void change_mask(int how) {
  sigset_t alarm;
  sigemptyset(&alarm);
  sigaddset(&alarm, SIGALRM);
  pthread_sigmask(how, &alarm, NULL);
}

// Until a handler has run often on the same stack.
static void use_up_by_signals(void) {
  change_mask(SIG_UNBLOCK);
  const struct sigaction action = {.sa_handler = handler, .sa_flags = SA_RESTART};
  sigaction(SIGALRM, &action, NULL);
  const struct itimerval often = {.it_interval = {.tv_usec = 1000}, .it_value = {.tv_usec = 1000}}, never = {0};
  setitimer(ITIMER_REAL, &often, NULL);
  long most = 0, least = 0;
  while (signals < SIGNALS) {
    const long used = bytes_used(HANDLER_ROOM, add_for_long, 78);
    most = used > most ? used : most;
    least = used < least ? used : least;
  }
  setitimer(ITIMER_REAL, &never, NULL);
  fprintf(stderr, "signals: %ld bytes of %d\n", most, HANDLER_ROOM);
  check("signals", least >= 0);
}

// The first time a place may trap where later calls do not: both are to have room.
static void* run(void* argument) {
  const char* const choice = getenv("QUERN_PATCH");
  const bool trapped = choice && strcmp(choice, "off") == 0;
  for (int again = 0; again != 2; ++again) {
    const size_t room = again && !trapped ? PATCHED_ROOM : TRAP_ROOM;
    use_up("add", room, add_lanes, 78);
    use_up("halves", room, multiply_halves, 0x4253);
    use_up("wide", room, compare_wide, 1);
    use_up("gather", room, gather_lanes, 77);
    use_up("first fault", FIRST_FAULT_ROOM, load_past_end, 1);
  }
  use_up_by_signals();
  return argument;
}

int main(void) {
  make_numbers();
  const size_t page = (size_t)sysconf(_SC_PAGESIZE), size = (size_t)PTHREAD_STACK_MIN;
  unsigned char* const stack = mmap(NULL, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  mprotect(stack, page, PROT_NONE);
  stack_end = stack + page;
  change_mask(SIG_BLOCK);  // the signals are the other thread's
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_t thread;
  const bool runs = pthread_attr_setstack(&attributes, stack, size) == 0 &&
                    pthread_create(&thread, &attributes, run, NULL) == 0 && pthread_join(thread, NULL) == 0;
  check("the smallest stack", runs);
  return finish("used_up_stack");
}
