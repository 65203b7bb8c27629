// The program headers of the object that this is linked into.
#include "sve/trap/patch/constant_memory.h"

#include <elf.h>

#include <span>

#include "sve/memory/current_access.h"

// Where the linker puts the object's beginning.
extern "C" [[gnu::visibility("hidden")]] const Elf64_Ehdr quern_own_header asm("__ehdr_start");

namespace quern {

bool is_constant_memory(std::uint64_t address, std::size_t bytes) {
  if (address == reinterpret_cast<std::uint64_t>(&accesses_are_noted) && bytes == sizeof accesses_are_noted)
    return true;
  const auto begin = reinterpret_cast<std::uint64_t>(&quern_own_header);
  const auto* const headers = reinterpret_cast<const Elf64_Phdr*>(begin + quern_own_header.e_phoff);
  for (const Elf64_Phdr& h : std::span(headers, quern_own_header.e_phnum)) {
    const std::uint64_t start = begin + h.p_vaddr;
    const bool holds = address >= start && address + bytes <= start + h.p_memsz;
    if (h.p_type == PT_GNU_RELRO && holds) return true;
  }
  return false;
}

}  // namespace quern
