// What the headers of a module's file tell.
#include "tools/module_code.h"

#include <algorithm>

#include "utils/build_id.h"

namespace quern {

std::uint64_t module_code::address_in_file(std::uint64_t address, std::uint64_t begin) const {
  std::uint64_t first = ~std::uint64_t{0};
  for (const Elf64_Phdr& segment : image_.segments())
    if (segment.p_type == PT_LOAD) first = std::min(first, segment.p_vaddr - segment.p_offset);
  return address - begin + (first != ~std::uint64_t{0} ? first : 0);
}

std::string_view module_code::build_id() const {
  for (const Elf64_Phdr& segment : image_.segments()) {
    if (segment.p_type != PT_NOTE) continue;
    const std::string_view found = find_build_id(image_.bytes(segment.p_offset, segment.p_filesz), segment.p_align);
    if (!found.empty()) return found;
  }
  return {};
}

}  // namespace quern
