// mremap, by the C library's name and by syscall(): patched places may move with it.
#include <sys/mman.h>

#include <cstdarg>

#include "sve/trap/host/export.h"
#include "sve/trap/host/patch.h"

using namespace quern;

extern "C" __attribute__((visibility("hidden"), used)) long quern_move_memory(long, void* from, std::size_t bytes,
                                                                              std::size_t new_bytes, int flags,
                                                                              void* to) {
  const long result = move_memory(static_cast<unsigned char*>(from), bytes, new_bytes, flags, to);
  return result < 0 && result > -4096 ? result_of(static_cast<int>(-result)) : result;
}

// (With MREMAP_DONTUNMAP alone an address is a wish, which not every C library passes on.)
QUERN_EXPORT void* mremap(void* from, std::size_t bytes, std::size_t new_bytes, int flags, ...) noexcept {
  va_list rest;
  va_start(rest, flags);
  void* const to = flags & MREMAP_FIXED ? va_arg(rest, void*) : nullptr;
  va_end(rest);
  return reinterpret_cast<void*>(quern_move_memory(0, from, bytes, new_bytes, flags, to));
}
