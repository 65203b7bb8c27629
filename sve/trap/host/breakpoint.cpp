// The program's file has the words that a debugger overwrites in memory.
#include "sve/trap/host/breakpoint.h"

#include <link.h>

#include <cstring>

#include "sve/trap/host/kernel.h"

namespace quern {
namespace {

struct search {
  std::uintptr_t address;
  std::uint32_t word;
};

// Takes the word from this object's file, if one of its segments has the address; 1 ends the search.
int look_in_object(dl_phdr_info* object, std::size_t, void* argument) {
  search& wanted = *static_cast<search*>(argument);
  for (int i = 0; i != object->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = object->dlpi_phdr[i];
    const std::uintptr_t offset = wanted.address - object->dlpi_addr - segment.p_vaddr;
    if (segment.p_type != PT_LOAD || offset >= segment.p_filesz) continue;
    const char* const path = *object->dlpi_name ? object->dlpi_name : "/proc/self/exe";
    std::uint32_t word;
    if (kernel::read_file(path, segment.p_offset + offset, &word, sizeof word) == sizeof word) wanted.word = word;
    return 1;
  }
  return 0;
}

}  // namespace

std::uint32_t word_beneath_breakpoint(const unsigned char* pc) {
  search wanted{reinterpret_cast<std::uintptr_t>(pc), 0};
  std::memcpy(&wanted.word, pc, sizeof wanted.word);
  dl_iterate_phdr(look_in_object, &wanted);
  return wanted.word;
}

}  // namespace quern
