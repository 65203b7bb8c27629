// Reading exported variables from the dynamic symbol table of an ELF file.
#include "tools/shared_object.h"

namespace quern {

std::optional<int> shared_object::exported_int(std::string_view name) const {
  for (const elf_symbol& symbol : image_.symbols(SHT_DYNSYM)) {
    if (symbol.name != name || symbol.entry.st_shndx >= image_.sections().size()) continue;
    const Elf64_Shdr& home = image_.sections()[symbol.entry.st_shndx];
    if (home.sh_type == SHT_PROGBITS) return image_.at<int>(home.sh_offset + (symbol.entry.st_value - home.sh_addr));
  }
  return std::nullopt;
}

}  // namespace quern
