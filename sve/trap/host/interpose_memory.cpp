// mremap, mprotect and pkey_mprotect, by the C library's names and by syscall(): patched places may move by them, or
// may be written afterwards.
#include <sys/mman.h>

#include <cstdarg>

#include "sve/trap/host/export.h"
#include "sve/trap/host/patch.h"
#include "sve/trap/host/system_call.h"

using namespace quern;

// Takes the arguments of syscall().
extern "C" __attribute__((visibility("hidden"), used)) long quern_change_memory(long number, unsigned char* begin,
                                                                                std::size_t bytes, long third,
                                                                                long fourth, long fifth) {
  const bool leaves_words = number != SYS_mremap && !(third & PROT_WRITE);
  const long result = leaves_words ? kernel::call(number, kernel::argument(begin), long(bytes), third, fourth)
                                   : call_with_own_words(number, begin, bytes, third, fourth, fifth);
  return result < 0 && result > -4096 ? result_of(static_cast<int>(-result)) : result;
}

// (With MREMAP_DONTUNMAP alone an address is a wish, which not every C library passes on.)
QUERN_EXPORT void* mremap(void* from, std::size_t bytes, std::size_t new_bytes, int flags, ...) noexcept {
  va_list rest;
  va_start(rest, flags);
  const long to = flags & MREMAP_FIXED ? kernel::argument(va_arg(rest, void*)) : 0;
  va_end(rest);
  auto* const begin = static_cast<unsigned char*>(from);
  return reinterpret_cast<void*>(quern_change_memory(SYS_mremap, begin, bytes, long(new_bytes), flags, to));
}

QUERN_EXPORT int mprotect(void* begin, std::size_t bytes, int rights) noexcept {
  return int(quern_change_memory(SYS_mprotect, static_cast<unsigned char*>(begin), bytes, rights, 0, 0));
}

QUERN_EXPORT int pkey_mprotect(void* begin, std::size_t bytes, int rights, int key) noexcept {
  const long number = key == -1 ? SYS_mprotect : SYS_pkey_mprotect;
  return int(quern_change_memory(number, static_cast<unsigned char*>(begin), bytes, rights, key, 0));
}
