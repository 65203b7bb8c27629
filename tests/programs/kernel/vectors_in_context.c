// A handler finds the interrupted code's Z, P and FFR in the context that it is given, and what it changes there is
// what the code goes on with; the low ends of Z are those of the floating-point record.
#include <asm/sigcontext.h>
#include <signal.h>
#include <string.h>
#include <sys/mman.h>
#include <ucontext.h>

#include "program.h"
#include "sve_code.h"

enum { LONGEST = 256 };
static struct {
  int count;
  size_t vector_bytes;
  bool low_ends_agree;
  uint8_t z9[LONGEST], p3[LONGEST / 8], ffr[LONGEST / 8];
} seen;

static uint8_t* find(uint8_t* at, uint32_t magic) {
  for (;;) {
    struct _aarch64_ctx head;
    memcpy(&head, at, sizeof head);
    if (head.magic == magic) return at;
    if (head.magic == 0) return NULL;
    at += head.size;
  }
}

// The record stands in the frame if it is small enough, else behind it.
static uint8_t* find_vectors(ucontext_t* context) {
  uint8_t* const records = (uint8_t*)context->uc_mcontext.__reserved;
  uint8_t* const vectors = find(records, SVE_MAGIC);
  if (vectors) return vectors;
  struct extra_context* const extra = (struct extra_context*)find(records, EXTRA_MAGIC);
  return extra ? find((uint8_t*)extra->datap, SVE_MAGIC) : NULL;
}

static void look_and_change(ucontext_t* context) {
  uint8_t* const record = find_vectors(context);
  struct fpsimd_context* const fp =
      (struct fpsimd_context*)find((uint8_t*)context->uc_mcontext.__reserved, FPSIMD_MAGIC);
  if (!record) return;
  const struct sve_context* const head = (const struct sve_context*)record;
  const size_t quadwords = head->vl / 16;
  ++seen.count;
  seen.vector_bytes = head->vl;
  uint8_t* const z9 = record + SVE_SIG_ZREG_OFFSET(quadwords, 9);
  memcpy(seen.z9, z9, head->vl);
  memcpy(seen.p3, record + SVE_SIG_PREG_OFFSET(quadwords, 3), head->vl / 8);
  memcpy(seen.ffr, record + SVE_SIG_FFR_OFFSET(quadwords), head->vl / 8);
  seen.low_ends_agree = memcmp(z9, &fp->vregs[9], 16) == 0;
  memset(z9, 0x77, head->vl);
  memset(&fp->vregs[9], 0x66, 16);
  memset(record + SVE_SIG_PREG_OFFSET(quadwords, 3), 0x11, head->vl / 8);
  memset(record + SVE_SIG_FFR_OFFSET(quadwords), 0x01, head->vl / 8);
}

static void handler(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  look_and_change(context);
  if (!vectors_work()) ++failed_checks;
  ((ucontext_t*)context)->uc_mcontext.pc += 4;
}

typedef struct {
  uint8_t z9[LONGEST], p3[LONGEST / 8], ffr[LONGEST / 8];
} registers;

// Fills z9, p3 and FFR, is interrupted by an instruction that uses p0 or x0, and stores what is there then. (Not by a
// system call, over which the kernel keeps no vectors.)
#define INTERRUPTED_BY(name, instruction)                                                                    \
  static void name(const void* page, registers* after) {                                                     \
    __asm__ volatile(                                                                                        \
        "mov x0, %[page]\n index z9.b, #5, #3\n ptrue p3.b, vl7\n ptrue p2.h\n setffr\n wrffr p2.b\n ptrue " \
        "p0.b\n" instruction "\n str z9, [%[z]]\n str p3, [%[p]]\n rdffr p1.b\n str p1, [%[ffr]]\n"          \
        :                                                                                                    \
        : [page] "r"(page), [z] "r"(after->z9), [p] "r"(after->p3), [ffr] "r"(after->ffr)                    \
        : "x0", "x1", "z9", "z10", "p0", "p1", "p2", "p3", "memory");                                        \
  }
INTERRUPTED_BY(vector_load, "ld1b {z10.b}, p0/z, [x0]")
INTERRUPTED_BY(plain_load, "ldrb w1, [x0]")
INTERRUPTED_BY(breakpoint, "brk #0")
INTERRUPTED_BY(undefined, "udf #0")

static bool all_are(const uint8_t* bytes, size_t count, uint8_t value) {
  for (size_t i = 0; i < count; ++i) {
    if (bytes[i] != value) return false;
  }
  return true;
}

static bool saw_what_was(size_t vector_bytes) {
  for (size_t i = 0; i < vector_bytes; ++i) {
    if (seen.z9[i] != (uint8_t)(5 + 3 * i)) return false;
  }
  return seen.p3[0] == 0x7F && all_are(seen.p3 + 1, vector_bytes / 8 - 1, 0) &&
         all_are(seen.ffr, vector_bytes / 8, 0x55);
}

static bool has_what_was_put(const registers* r, size_t vector_bytes) {
  return all_are(r->z9, 16, 0x66) && all_are(r->z9 + 16, vector_bytes - 16, 0x77) &&
         all_are(r->p3, vector_bytes / 8, 0x11) && all_are(r->ffr, vector_bytes / 8, 0x01);
}

int main(void) {
  static const struct {
    const char* name;
    void (*run)(const void*, registers*);
    int signal;
  } cases[] = {{"fault of a vector load", vector_load, SIGSEGV},
               {"fault of a plain load", plain_load, SIGSEGV},
               {"breakpoint", breakpoint, SIGTRAP},
               {"undefined instruction", undefined, SIGILL}};
  void* const page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  const size_t vector_bytes = 4 * vector_words();
  for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
    const struct sigaction action = {.sa_sigaction = handler, .sa_flags = SA_SIGINFO};
    sigaction(cases[i].signal, &action, NULL);
    registers after;
    memset(&seen, 0, sizeof seen);
    cases[i].run(page, &after);
    check(cases[i].name, seen.count == 1 && seen.vector_bytes == vector_bytes);
    check("  is shown the registers", saw_what_was(vector_bytes) && seen.low_ends_agree);
    check("  goes on with the changed ones", has_what_was_put(&after, vector_bytes));
  }
  return finish("vectors_in_context");
}
