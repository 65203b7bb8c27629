// Eight threads compute by SVE and check what comes out, while signals of all kinds interrupt them, whose handlers
// compute too: sent ones, a timer's, and those of faults, which mend what was missing or jump away. Each thread has two
// tasks, between which a handler switches.
//   stress [SECONDS]
// Memory may not grow meanwhile. What there was of each is told on standard error.
#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum {
  THREADS = 8,
  TASKS = 2,
  PAGE = 4096,
  WORDS = PAGE / 4,
  USED = 150,
  STACK_BYTES = 1 << 20,
  VECTORS = 32,
  PREDICATES = 17
};
enum { LONGEST_VECTOR = 256, MOST_GROWTH = 256 };  // bytes, and pages of memory

struct task {
  ucontext_t context;
  sigjmp_buf back;
  volatile bool jumps;  // out of the handler of its next fault, instead of having it mended
  uint32_t* pages;      // two, and one of a file
  uint32_t* file_page;
  int file;
  uint32_t seed;
};

struct worker {
  struct task tasks[TASKS];
  struct task* current;
  pthread_t thread;
};

static struct worker workers[THREADS];
static _Thread_local struct worker* me;
static atomic_bool stop;
static atomic_int wrong;
static atomic_long rounds, sent_signals, ticks, switches, mended, jumped;

static const char* volatile last_wrong = "nothing";

static void demand(const char* what, bool holds) {
  if (holds) return;
  ++wrong;
  last_wrong = what;
}

// --- What the handlers do.

// Short, as it is to leave time for the rest a thousand times a second.
static void tick(int signal) {
  static const uint32_t ones[LONGEST_VECTOR / 4] = {[0 ... LONGEST_VECTOR / 4 - 1] = 1};
  (void)signal;
  ++ticks;
  demand("a sum in the timer's handler", loaded_sum(ones) == vector_words());
}

static void check_sums(int signal) {
  (void)signal;
  ++sent_signals;
  demand("a sum in a handler", vectors_work());
}

static void switch_tasks(int signal) {
  check_sums(signal);
  if (stop) return;
  struct task* const from = me->current;
  struct task* const to = from == me->tasks ? me->tasks + 1 : me->tasks;
  me->current = to;
  ++switches;
  swapcontext(&from->context, &to->context);
  demand("a sum in a handler after a switch", vectors_work());
}

static void on_trap(int signal, siginfo_t* info, void* context) {
  if (info->si_code <= 0) return check_sums(signal);
  struct task* const task = me->current;
  demand("a sum in a fault's handler", vectors_work());
  if (task->jumps) {
    ++jumped;
    siglongjmp(task->back, 1);
  }
  ++mended;
  if (signal == SIGILL) {
    ((ucontext_t*)context)->uc_mcontext.pc += 4;
  } else if (signal == SIGBUS) {
    demand("a file's length", ftruncate(task->file, PAGE) == 0);
  } else {
    mprotect((void*)((uintptr_t)info->si_addr & -(uintptr_t)PAGE), PAGE, PROT_READ | PROT_WRITE);
  }
}

static void set_handlers(void) {
  struct sigaction action = {.sa_handler = tick, .sa_flags = SA_RESTART};
  sigaction(SIGALRM, &action, NULL);
  action.sa_handler = switch_tasks;
  sigaction(SIGUSR1, &action, NULL);
  action.sa_sigaction = on_trap;
  action.sa_flags |= SA_SIGINFO;
  sigaction(SIGSEGV, &action, NULL);
  sigaction(SIGBUS, &action, NULL);
  sigaction(SIGILL, &action, NULL);
}

// --- What the tasks do.

struct registers {
  uint32_t z[VECTORS][LONGEST_VECTOR / 4];
  uint8_t p[PREDICATES][LONGEST_VECTOR / 8];  // the last is FFR
};

// Fills all registers, waits to be interrupted, and stores them: z<n>.s[i] = seed + i * (n - 16).
static void fill_and_wait(uint32_t seed, uint32_t wait, struct registers* stored) {
  uint8_t* z = (uint8_t*)stored->z;
  uint8_t* p = (uint8_t*)stored->p;
  __asm__ volatile(
      ".irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, "
      "28, 29, 30, 31\n"
      "  index z\\n\\().s, %w[seed], #(\\n - 16)\n"
      ".endr\n"
      "ptrue p0.s, mul3\n wrffr p0.b\n ptrue p0.b\n"
      "ptrue p1.b, vl1\n ptrue p2.b, vl2\n ptrue p3.b, vl3\n ptrue p4.b, vl4\n ptrue p5.h, vl5\n"
      "ptrue p6.h, vl6\n ptrue p7.h, vl7\n ptrue p8.h, vl8\n ptrue p9.s, vl16\n ptrue p10.s, vl32\n"
      "ptrue p11.d, vl1\n ptrue p12.d, vl2\n ptrue p13.d, pow2\n ptrue p14.d, mul4\n ptrue p15.h, mul3\n"
      "0: subs %w[wait], %w[wait], #1\n b.ne 0b\n"
      ".irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, "
      "28, 29, 30, 31\n"
      "  st1w {z\\n\\().s}, p0, [%[z]]\n  add %[z], %[z], %[z_bytes]\n"
      ".endr\n"
      ".irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15\n"
      "  str p\\n, [%[p]]\n  add %[p], %[p], %[p_bytes]\n"
      ".endr\n"
      "rdffr p1.b\n str p1, [%[p]]\n"
      : [z] "+r"(z), [p] "+r"(p), [wait] "+r"(wait)
      : [seed] "r"(seed), [z_bytes] "i"(sizeof stored->z[0]), [p_bytes] "i"(sizeof stored->p[0])
      : "z0", "z1", "z2", "z3", "z4", "z5", "z6", "z7", "z8", "z9", "z10", "z11", "z12", "z13", "z14", "z15", "z16",
        "z17", "z18", "z19", "z20", "z21", "z22", "z23", "z24", "z25", "z26", "z27", "z28", "z29", "z30", "z31", "p0",
        "p1", "p2", "p3", "p4", "p5", "p6", "p7", "p8", "p9", "p10", "p11", "p12", "p13", "p14", "p15", "cc", "memory");
}

static struct registers undisturbed;

static SCALAR bool registers_hold(uint32_t seed) {
  struct registers stored = {0};
  fill_and_wait(seed, 20000, &stored);
  bool right = same_bytes(stored.p, undisturbed.p, sizeof stored.p);
  for (uint32_t n = 0; n < VECTORS; ++n) {
    for (uint32_t i = 0; i < vector_words(); ++i) right = right && stored.z[n][i] == seed + i * (n - 16);
  }
  return right;
}

static VECTOR void add_to_all(uint32_t* a, size_t n, uint32_t number) {
  for (size_t i = 0; i < n; ++i) a[i] += number;
}

static SCALAR uint32_t scalar_sum(const uint32_t* a, size_t n) {
  uint32_t total = 0;
  for (size_t i = 0; i < n; ++i) total += a[i];
  return total;
}

// The sum of a vector of words, half of them from the first page's end and half from the second page, by a load whose
// destination is its own offsets.
static uint32_t gathered_sum(const uint32_t* middle) {
  uint64_t sum;
  const int64_t half = (int64_t)vector_words() / 2;
  __asm__ volatile(
      "ptrue p0.s\n index z0.s, %w[first], #1\n"
      "ld1w {z0.s}, p0/z, [%[middle], z0.s, sxtw #2]\n"
      "uaddv d0, p0, z0.s\n fmov %[sum], d0\n"
      : [sum] "=r"(sum)
      : [first] "r"(-half), [middle] "r"(middle)
      : "z0", "p0", "memory");
  return (uint32_t)sum;
}

static void mended_accesses(struct task* task) {
  uint32_t* const middle = task->pages + WORDS;
  const size_t half = vector_words() / 2;
  const uint32_t sum = scalar_sum(middle - USED / 2, USED), part = scalar_sum(middle - half, 2 * half);
  mprotect(middle, PAGE, PROT_NONE);
  demand("a gathered sum", gathered_sum(middle) == part);
  mprotect(task->pages, 2 * PAGE, PROT_READ);
  add_to_all(middle - USED / 2, USED, task->seed);
  mprotect(task->pages, 2 * PAGE, PROT_NONE);
  demand("a sum of stored words", vector_sum(middle - USED / 2, USED) == sum + USED * task->seed);
  demand("a file's length", ftruncate(task->file, 0) == 0);
  demand("a sum of a file", loaded_sum(task->file_page) == 0);
  __asm__ volatile(".inst 0");
}

static void left_accesses(struct task* task) {
  task->jumps = true;
  mprotect(task->pages, PAGE, PROT_NONE);
  if (sigsetjmp(task->back, 1) == 0) {
    loaded_sum(task->pages);
    demand("a jump out of SIGSEGV", false);
  }
  mprotect(task->pages, PAGE, PROT_READ | PROT_WRITE);
  demand("a file's length", ftruncate(task->file, 0) == 0);
  if (sigsetjmp(task->back, 1) == 0) {
    loaded_sum(task->file_page);
    demand("a jump out of SIGBUS", false);
  }
  task->jumps = false;
}

static void compute(struct task* task) {
  while (!stop) {
    ++task->seed;
    demand("registers", registers_hold(task->seed));
    mended_accesses(task);
    left_accesses(task);
    demand("a sum", vectors_work());
    ++rounds;
  }
}

// --- Threads, and who disturbs them.

static void change_mask(int how, int signal) {
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, signal);
  pthread_sigmask(how, &one, NULL);
}

// Begins and ends with SIGUSR1 blocked, as do all contexts that a handler switches to.
static void run_second_task(void) {
  change_mask(SIG_UNBLOCK, SIGUSR1);
  compute(&me->tasks[1]);
  change_mask(SIG_BLOCK, SIGUSR1);
  me->current = me->tasks;
  setcontext(&me->tasks[0].context);
}

static void* run(void* worker) {
  me = worker;
  struct task* const second = &me->tasks[1];
  getcontext(&second->context);
  second->context.uc_stack = (stack_t){.ss_sp = malloc(STACK_BYTES), .ss_size = STACK_BYTES};
  makecontext(&second->context, run_second_task, 0);
  change_mask(SIG_UNBLOCK, SIGUSR1);
  compute(&me->tasks[0]);
  change_mask(SIG_BLOCK, SIGUSR1);
  return NULL;
}

static void start_worker(struct worker* worker, uint32_t number) {
  for (uint32_t i = 0; i < TASKS; ++i) {
    struct task* const task = &worker->tasks[i];
    task->seed = number * TASKS + i;
    task->pages = mmap(NULL, 2 * PAGE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    for (uint32_t word = 0; word < 2 * WORDS; ++word) task->pages[word] = word * task->seed + 1;
    task->file = memfd_create("stress", MFD_CLOEXEC);
    task->file_page = mmap(NULL, PAGE, PROT_READ | PROT_WRITE, MAP_SHARED, task->file, 0);
  }
  worker->current = worker->tasks;
  pthread_create(&worker->thread, NULL, run, worker);
}

static long resident_pages(void) {
  long all = 0, resident = 0;
  FILE* const file = fopen("/proc/self/statm", "r");
  if (!file || fscanf(file, "%ld %ld", &all, &resident) != 2) abort();
  fclose(file);
  return resident;
}

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

static bool all_came(void) {
  return rounds >= THREADS && sent_signals >= THREADS && switches >= THREADS && ticks && mended && jumped;
}

// Sends signals to all threads for a time, and on until there was enough of all.
static void disturb(double seconds) {
  static const int kinds[] = {SIGUSR1, SIGSEGV, SIGILL, SIGBUS};
  for (const double end = now() + seconds; now() < end || !all_came(); usleep(2000)) {
    const uint32_t random = next_random();
    pthread_kill(workers[random % THREADS].thread, kinds[random / THREADS % 4]);
  }
}

int main(int count, char** arguments) {
  const double seconds = count > 1 ? atof(arguments[1]) : 3;
  fill_and_wait(0, 1, &undisturbed);
  set_handlers();
  change_mask(SIG_BLOCK, SIGUSR1);  // the threads begin with that
  for (uint32_t i = 0; i < THREADS; ++i) start_worker(&workers[i], i);
  change_mask(SIG_BLOCK, SIGALRM);
  const struct itimerval often = {.it_interval = {.tv_usec = 1000}, .it_value = {.tv_usec = 1000}};
  setitimer(ITIMER_REAL, &often, NULL);

  disturb(seconds / 4);
  const long pages_before = resident_pages();
  disturb(seconds * 3 / 4);
  const long pages_after = resident_pages();
  stop = true;
  for (int i = 0; i < THREADS; ++i) pthread_join(workers[i].thread, NULL);

  fprintf(stderr, "%ld rounds, %ld sent signals, %ld ticks, %ld switches, %ld mended faults, %ld jumps\n", rounds,
          sent_signals, ticks, switches, mended, jumped);
  fprintf(stderr, "%ld pages of memory in use after a quarter of %g s, %ld at their end, %d wrong, the last %s\n",
          pages_before, seconds, pages_after, wrong, last_wrong);
  check("sums", wrong == 0);
  check("memory", pages_after - pages_before <= MOST_GROWTH);
  return finish("stress");
}
