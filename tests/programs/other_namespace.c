// A library of SVE code in a namespace of its own, where it has a C library of its own.
#include <dlfcn.h>

#include "program.h"
#include "sve_code.h"

static bool answer(void* library, const char* function) {
  bool (*const asked)(void) = dlsym(library, function);
  return asked && asked();
}

int main(void) {
  void* const library = dlmopen(LM_ID_NEWLM, "libearly.so", RTLD_NOW);
  check("loaded", library != NULL);
  if (!library) return finish(dlerror());
  check("its constructor", answer(library, "library_constructor_works"));
  check("its static object", answer(library, "static_object_works"));
  check("its resolver", answer(library, "resolver_works"));
  check("its thread", answer(library, "thread_works"));
  check("the program", vectors_work());
  return finish("other_namespace");
}
