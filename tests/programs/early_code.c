// SVE code before main and after it: in the constructors, static objects and resolvers of a library, and in functions
// that the program has run before all constructors.
#include "libraries/early.h"
#include "program.h"
#include "sve_code.h"

static bool works_at_first, works_in_constructor;

static void run_at_first(void) { works_at_first = vectors_work(); }
__attribute__((section(".preinit_array"), used)) static void (*const first_function)(void) = run_at_first;

__attribute__((constructor)) static void construct(void) { works_in_constructor = vectors_work(); }

__attribute__((destructor)) static void destroy(void) { printf("destructor: %s\n", vectors_work() ? "ok" : "WRONG"); }

int main(void) {
  check("before all constructors", works_at_first);
  check("a library's constructor", library_constructor_works());
  check("a library's static object", static_object_works());
  check("a resolver", resolver_works());
  check("the program's constructor", works_in_constructor);
  return finish("early_code");
}
