// Writing into the program's code, such that its mappings stay whole.
#include "sve/trap/host/program_code.h"

#include <sys/mman.h>

#include <array>
#include <atomic>

#include "sve/memory/guest_memory.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/host/system_call.h"

namespace quern {
namespace {

// A mapping that has been written to, known by the word that was written first: if it is there still, so is the
// mapping.
struct written_code {
  std::uint64_t start, end;
  const unsigned char* place;
  std::uint32_t word;
};
constinit std::array<written_code, 32> written{};
constinit std::size_t oldest = 0;

bool is_written(const mapping& code) {
  for (const written_code& w : written)
    if (w.place && w.start == code.start && w.end == code.end && code.readable && word_at(w.place) == w.word)
      return true;
  return false;
}

bool set_rights(std::uint64_t start, std::uint64_t end, int rights) {
  return kernel::call(SYS_mprotect, static_cast<long>(start), static_cast<long>(end - start), rights) == 0;
}

int rights_of(const mapping& code) {
  return (code.readable ? PROT_READ : 0) | (code.writable ? PROT_WRITE : 0) | (code.executable ? PROT_EXEC : 0);
}

bool write_in(std::uint64_t start, std::uint64_t end, unsigned char* place, std::uint32_t word, int rights) {
  if (!set_rights(start, end, PROT_READ | PROT_WRITE | PROT_EXEC)) return false;
  std::atomic_ref(*reinterpret_cast<std::uint32_t*>(place)).store(word, std::memory_order_relaxed);
  step_caches(place, place + sizeof word);
  set_rights(start, end, rights);
  return true;
}

}  // namespace

// The kernel charges the process for what has been writable, and such pages and others are never one mapping. So all of
// it is writable for the first word, and one page for each later one: else each page would be a mapping of its own, of
// which there may be 65,530, which all stand in /proc/self/maps, and which mremap takes one by one only.
bool write_code_word(unsigned char* place, std::uint32_t word, const mapping& code) {
  const int rights = rights_of(code);
  if (!is_written(code) && write_in(code.start, code.end, place, word, rights)) {
    written[oldest++ % written.size()] = {code.start, code.end, place, word};
    return true;
  }
  const std::uint64_t bytes = page_size, page = reinterpret_cast<std::uintptr_t>(place) & -bytes;
  return write_in(page, page + bytes, place, word, rights);
}

}  // namespace quern
