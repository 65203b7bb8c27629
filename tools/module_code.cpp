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

std::optional<std::uint32_t> module_code::word_at(std::uint64_t address) const {
  const auto header = image_.at<Elf64_Ehdr>(0);
  if (!header || header->e_machine != EM_AARCH64) return std::nullopt;
  for (const Elf64_Phdr& segment : image_.segments()) {
    const std::uint64_t offset = address - segment.p_vaddr;
    const bool has_word = segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0 && address >= segment.p_vaddr &&
                          segment.p_filesz >= sizeof(std::uint32_t) &&
                          offset <= segment.p_filesz - sizeof(std::uint32_t);
    if (has_word) return image_.at<std::uint32_t>(segment.p_offset + offset);
  }
  return std::nullopt;
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
