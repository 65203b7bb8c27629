// Reading exported variables from the dynamic symbol table of an ELF file.
#include "tools/shared_object.h"

#include <elf.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace quern {

shared_object::shared_object(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  bytes_.assign(std::istreambuf_iterator<char>(file), {});
}

template <typename T>
std::optional<T> shared_object::at(std::uint64_t offset) const {
  if (offset > bytes_.size() || bytes_.size() - offset < sizeof(T)) return std::nullopt;
  T value;
  std::memcpy(&value, bytes_.data() + offset, sizeof value);
  return value;
}

std::optional<int> shared_object::exported_int(std::string_view name) const {
  const auto header = at<Elf64_Ehdr>(0);
  if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64)
    return std::nullopt;
  std::vector<Elf64_Shdr> sections;
  for (std::uint64_t i = 0; i != header->e_shnum; ++i) {
    const auto section = at<Elf64_Shdr>(header->e_shoff + i * sizeof(Elf64_Shdr));
    if (!section) return std::nullopt;
    sections.push_back(*section);
  }
  for (const Elf64_Shdr& table : sections) {
    if (table.sh_type != SHT_DYNSYM || table.sh_link >= sections.size()) continue;
    const std::uint64_t names = sections[table.sh_link].sh_offset;
    for (std::uint64_t offset = 0; offset < table.sh_size; offset += sizeof(Elf64_Sym)) {
      const auto symbol = at<Elf64_Sym>(table.sh_offset + offset);
      if (!symbol) return std::nullopt;
      const std::uint64_t text = names + symbol->st_name;
      if (text >= bytes_.size() || bytes_.c_str() + text != name || symbol->st_shndx >= sections.size()) continue;
      const Elf64_Shdr& home = sections[symbol->st_shndx];
      if (home.sh_type == SHT_PROGBITS) return at<int>(home.sh_offset + (symbol->st_value - home.sh_addr));
    }
  }
  return std::nullopt;
}

}  // namespace quern
