// System calls by the SVC instruction, so that not even errno is touched.
#pragma once

#include <sys/syscall.h>

namespace quern::kernel {

// Answers what the kernel does: 0 or more, or a negated error number.
inline long call(long number, long a = 0, long b = 0, long c = 0, long d = 0, long e = 0, long f = 0) {
  register long x8 asm("x8") = number;
  register long x0 asm("x0") = a;
  register long x1 asm("x1") = b;
  register long x2 asm("x2") = c;
  register long x3 asm("x3") = d;
  register long x4 asm("x4") = e;
  register long x5 asm("x5") = f;
  asm volatile("svc #0" : "+r"(x0) : "r"(x8), "r"(x1), "r"(x2), "r"(x3), "r"(x4), "r"(x5) : "memory", "cc");
  return x0;
}

template <typename T>
long argument(T* pointer) {
  return reinterpret_cast<long>(pointer);
}

}  // namespace quern::kernel
