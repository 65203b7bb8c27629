// An ELF file as it lies on disk.
#include "tools/elf_image.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace quern {

elf_image::elf_image(const std::filesystem::path& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return;  // the path may be one that a damaged trace gives
  std::ifstream file(path, std::ios::binary);
  bytes_.assign(std::istreambuf_iterator<char>(file), {});
  const auto header = at<Elf64_Ehdr>(0);
  if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64 ||
      header->e_ident[EI_DATA] != ELFDATA2LSB)
    return;
  segments_ = table<Elf64_Phdr>(header->e_phoff, header->e_phnum);
  sections_ = table<Elf64_Shdr>(header->e_shoff, header->e_shnum);
}

template <typename T>
std::vector<T> elf_image::table(std::uint64_t offset, std::uint64_t count) const {
  std::vector<T> entries;
  for (std::uint64_t i = 0; i != count; ++i) {
    const auto entry = at<T>(offset + i * sizeof(T));
    if (!entry) break;
    entries.push_back(*entry);
  }
  return entries;
}

std::string_view elf_image::bytes(std::uint64_t offset, std::uint64_t size) const {
  if (offset > bytes_.size()) return {};
  return std::string_view(bytes_).substr(offset, size);
}

std::vector<elf_symbol> elf_image::symbols(std::uint32_t kind) const {
  std::vector<elf_symbol> found;
  for (const Elf64_Shdr& section : sections_) {
    if (section.sh_type != kind || section.sh_link >= sections_.size()) continue;
    const std::string_view names = bytes(sections_[section.sh_link].sh_offset, sections_[section.sh_link].sh_size);
    for (const Elf64_Sym& entry : table<Elf64_Sym>(section.sh_offset, section.sh_size / sizeof(Elf64_Sym))) {
      const std::string_view rest = names.substr(std::min<std::size_t>(entry.st_name, names.size()));
      found.push_back({rest.substr(0, rest.find('\0')), entry});
    }
  }
  return found;
}

}  // namespace quern
