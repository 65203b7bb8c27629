// Gathers whose destination is their own vector of offsets or addresses fault midway: the handler mends the page, and
// the instruction runs again as if nothing had happened; or it goes on behind the instruction, whose destination is
// then as it was before.
#include <signal.h>
#include <string.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"

enum { MAX_LANES = 64 };
typedef union {
  uint64_t doublewords[MAX_LANES / 2];
  uint32_t words[MAX_LANES];
} vector;

// Runs the gather with the vector as its offsets and its destination.
#define GATHER(name, element, instruction)                                                     \
  static void name(const void* base, vector* z) {                                              \
    __asm__ volatile("ptrue p0." element "\n  ldr z0, [%1]\n  " instruction "\n  str z0, [%1]" \
                     :                                                                         \
                     : "r"(base), "r"(z)                                                       \
                     : "z0", "p0", "memory");                                                  \
  }
GATHER(by_offset, "d", "ld1d {z0.d}, p0/z, [%0, z0.d]")
GATHER(by_index, "d", "ld1d {z0.d}, p0/z, [%0, z0.d, lsl #3]")
GATHER(by_address, "d", "ld1d {z0.d}, p0/z, [z0.d]")
GATHER(by_word_index, "s", "ld1w {z0.s}, p0/z, [%0, z0.s, uxtw #2]")
GATHER(bytes_by_word_offset, "d", "ld1sb {z0.d}, p0/z, [%0, z0.d, sxtw]")

static uint8_t* pages;  // two, the second of which is closed
static size_t page_size;
static volatile int faults;
static volatile bool skipping;

static void on_fault(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  if (++faults > 1 || skipping) ((ucontext_t*)context)->uc_mcontext.pc += 4;
  mprotect(pages, 2 * page_size, PROT_READ | PROT_WRITE);
}

static size_t vector_bytes(void) {
  size_t bytes;
  __asm__("cntb %0" : "=r"(bytes));
  return bytes;
}

typedef struct {
  const char* name;
  void (*run)(const void* base, vector* z);
  size_t lane_bytes, element_bytes;
  uint64_t scale, base;  // of an offset; added to it in the vector
} gather;

// Where lane i's element is: in the second page for every other lane of the vector's upper half. So lanes that only SVE
// has are written before the fault, not only those that a signal frame holds too.
static size_t offset_of(size_t i, const gather* g) {
  const bool upper = i >= vector_bytes() / g->lane_bytes / 2;
  return (upper && i % 2 == 1 ? page_size : 0) + i * 37 % 61 * (g->scale > 1 ? g->scale : g->element_bytes);
}

static vector offsets_of(const gather* g) {
  vector z = {0};
  for (size_t i = 0; i < vector_bytes() / g->lane_bytes; ++i) {
    const uint64_t offset = offset_of(i, g) / g->scale + g->base;
    if (g->lane_bytes == 8) z.doublewords[i] = offset;
    if (g->lane_bytes == 4) z.words[i] = (uint32_t)offset;
  }
  return z;
}

static vector elements_of(const gather* g) {
  vector z = {0};
  for (size_t i = 0; i < vector_bytes() / g->lane_bytes; ++i) {
    const uint8_t* const element = pages + offset_of(i, g);
    if (g->element_bytes == 1) z.doublewords[i] = (uint64_t)(int64_t)(int8_t)*element;
    if (g->element_bytes == 4) memcpy(&z.words[i], element, 4);
    if (g->element_bytes == 8) memcpy(&z.doublewords[i], element, 8);
  }
  return z;
}

// Whether the gather, which faults once, leaves what it should.
static bool leaves(const gather* g, bool skipped) {
  const vector wanted = skipped ? offsets_of(g) : elements_of(g);
  vector z = offsets_of(g);
  faults = 0;
  skipping = skipped;
  mprotect(pages + page_size, page_size, PROT_NONE);
  g->run(pages, &z);
  return faults == 1 && same_bytes(&z, &wanted, vector_bytes());
}

int main(void) {
  page_size = (size_t)sysconf(_SC_PAGESIZE);
  pages = mmap(NULL, 2 * page_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  fill_random(pages, 2 * page_size);
  struct sigaction action = {.sa_sigaction = on_fault, .sa_flags = SA_SIGINFO};
  sigaction(SIGSEGV, &action, NULL);

  const gather gathers[] = {{"by offset", by_offset, 8, 8, 1, 0},
                            {"by index", by_index, 8, 8, 8, 0},
                            {"by address", by_address, 8, 8, 1, (uintptr_t)pages},
                            {"by word index", by_word_index, 4, 4, 4, 0},
                            {"bytes by word offset", bytes_by_word_offset, 8, 1, 1, 0}};
  for (size_t i = 0; i < sizeof gathers / sizeof *gathers; ++i) {
    check(gathers[i].name, leaves(&gathers[i], false));
    check("  skipped", leaves(&gathers[i], true));
  }
  return finish("gather_in_place");
}
