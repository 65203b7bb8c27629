// A write barrier as garbage collectors have it: eight threads store by SVE into pages that another thread keeps
// protecting, and a SIGSEGV handler that itself uses SVE lifts the protection. No store may be lost or doubled.
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <stdatomic.h>
#include <sys/mman.h>

#include "program.h"
#include "sve_code.h"

enum { THREADS = 8, ROUNDS = 6, PAGE = 4096, WORDS = PAGE / sizeof(uint32_t), PAGES_EACH = 2 };

static uint32_t (*pages)[WORDS];
static atomic_int rounds, protections, faults, wrong_in_handler;

static void lift(int signal, siginfo_t* info, void* context) {
  (void)signal;
  (void)context;
  if (!vectors_work()) ++wrong_in_handler;
  ++faults;
  mprotect((void*)((uintptr_t)info->si_addr & -(uintptr_t)PAGE), PAGE, PROT_READ | PROT_WRITE);
}

// Protects all pages again whenever half of the threads have got on by a round, so that the others are amid their
// stores.
static void* protect(void* argument) {
  for (int before = 0; before < THREADS * ROUNDS; before += THREADS / 2) {
    while (rounds < before) sched_yield();
    mprotect(pages, THREADS * PAGES_EACH * PAGE, PROT_READ);
    ++protections;
  }
  return argument;
}

static VECTOR void add_to_all(uint32_t* a, size_t n, uint32_t number) {
  for (size_t i = 0; i < n; ++i) a[i] += number * (uint32_t)i + 1;
}

static SCALAR bool holds(const uint32_t* a, size_t n, uint32_t number, uint32_t rounds) {
  for (size_t i = 0; i < n; ++i) {
    if (a[i] != (number * (uint32_t)i + 1) * rounds) return false;
  }
  return true;
}

static void* write_pages(void* argument) {
  const uint32_t number = *(const uint32_t*)argument;
  uint32_t* const mine = pages[number * PAGES_EACH];
  bool right = true;
  for (uint32_t round = 1; round <= ROUNDS; ++round) {
    while (protections < (int)round) sched_yield();
    add_to_all(mine, PAGES_EACH * WORDS, number);
    right = right && holds(mine, PAGES_EACH * WORDS, number, round);
    ++rounds;
  }
  return right ? argument : NULL;
}

int main(void) {
  pages = mmap(NULL, THREADS * PAGES_EACH * PAGE, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  struct sigaction action = {.sa_sigaction = lift, .sa_flags = SA_SIGINFO};
  sigaction(SIGSEGV, &action, NULL);
  pthread_t barrier, threads[THREADS];
  uint32_t numbers[THREADS];
  pthread_create(&barrier, NULL, protect, NULL);
  for (uint32_t i = 0; i < THREADS; ++i) {
    numbers[i] = i;
    pthread_create(&threads[i], NULL, write_pages, &numbers[i]);
  }
  for (int i = 0; i < THREADS; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    check("thread's pages", result == &numbers[i]);
  }
  pthread_join(barrier, NULL);
  check("pages were protected again and again", faults >= ROUNDS * PAGES_EACH);
  check("vectors in the handler", wrong_in_handler == 0);
  return finish("write_barrier");
}
