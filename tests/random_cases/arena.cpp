// The memory that test cases' loads and stores touch.
#include "tests/random_cases/arena.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace quern {
namespace {

constexpr std::uintptr_t reserved_at = 0x50000000;
constexpr std::size_t guard_bytes = 0x10000;  // a multiple of every page size in use

void require(bool done, const char* what) {
  if (done) return;
  std::perror(what);
  std::fprintf(stderr, "The test cases need the addresses from 0x%zx on; run on a system that leaves them free.\n",
               static_cast<std::size_t>(reserved_at));
  std::exit(EXIT_FAILURE);
}

unsigned char* map_arena() {
  void* const at = reinterpret_cast<void*>(reserved_at);
  const void* const got =
      mmap(at, 4 * guard_bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE, -1, 0);
  require(got == at, "cannot map the arena");
  unsigned char* const bytes = static_cast<unsigned char*>(at) + guard_bytes;
  const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t size = std::max(page, std::size_t{arena_bytes});
  require(mprotect(bytes, size, PROT_READ | PROT_WRITE) == 0, "cannot open the arena");
  require(mprotect(bytes + size, page, PROT_READ) == 0, "cannot open the page after the arena");
  return bytes;
}

}  // namespace

unsigned char* arena() {
  static unsigned char* const bytes = map_arena();
  return bytes;
}

}  // namespace quern
