// A library with SVE code in its constructors and destructors.
#include "early.h"

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>

#include "../sve_code.h"

namespace {

bool constructor_works;

// After main nobody looks at a result any more.
void report(const char* name, bool works) {
  printf("%s: %s\n", name, works ? "ok" : "WRONG");
  fflush(stdout);
  if (!works) abort();
}

__attribute__((constructor(101))) void construct() { constructor_works = vectors_work(); }

__attribute__((destructor(101))) void destroy() { report("destructor function", vectors_work()); }

struct object {
  const bool works = vectors_work();

  ~object() {
    report("destructor of a static object", vectors_work());
    uint64_t lanes;
    __asm__("ptrue p3.h, vl7\n  cntp %0, p3, p3.h" : "=r"(lanes) : : "p3");
    report("  instructions that are new", lanes == 7);
  }
} const early;

void* run_thread(void* works) {
  *static_cast<bool*>(works) = vectors_work();
  return nullptr;
}

}  // namespace

// The resolver of an indirect function, which runs when the program first calls it.
static bool answer_yes() { return true; }
static bool answer_no() { return false; }
extern "C" bool (*choose_answer(void))() { return vectors_work() ? answer_yes : answer_no; }
bool resolver_works() __attribute__((ifunc("choose_answer")));

// Whether vectors work in a thread that the library starts.
bool thread_works() {
  bool works = false;
  pthread_t thread;
  if (pthread_create(&thread, nullptr, run_thread, &works) == 0) pthread_join(thread, nullptr);
  return works;
}

bool library_constructor_works() { return constructor_works; }
bool static_object_works() { return early.works; }
