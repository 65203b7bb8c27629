// The code of a program or library, as it lies in its file, and the names of its places.
#include "tools/program_code.h"

#include <cxxabi.h>
#include <fmt/core.h>

#include <cstdlib>
#include <memory>

namespace quern {
namespace {

std::string demangled(const std::string& name) {
  const std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, nullptr),
                                                    std::free);
  return text != nullptr ? text.get() : name;
}

// The entry of the greatest key that is not above; end() if all are.
template <typename Value>
auto at_or_below(const std::map<std::uint64_t, Value>& map, std::uint64_t key) {
  const auto above = map.upper_bound(key);
  return above == map.begin() ? map.end() : std::prev(above);
}

}  // namespace

program_code::program_code(const elf_image& image) : image_(&image) {
  for (const Elf64_Shdr& section : image.sections())
    if ((section.sh_flags & SHF_EXECINSTR) && section.sh_type == SHT_PROGBITS)
      ranges_.push_back({section.sh_addr, section.sh_offset, section.sh_size});
  if (ranges_.empty())  // the section headers were stripped
    for (const Elf64_Phdr& segment : image.segments())
      if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X))
        ranges_.push_back({segment.p_vaddr, segment.p_offset, segment.p_filesz});
  add_symbols(SHT_SYMTAB);
  if (functions_.empty()) add_symbols(SHT_DYNSYM);
}

void program_code::add_symbols(std::uint32_t kind) {
  for (const elf_symbol& symbol : image_->symbols(kind)) {
    const Elf64_Sym& entry = symbol.entry;
    // Where data begins in code, and where code goes on, the compiler puts $d and $x, with or without a ".suffix".
    if (symbol.name.starts_with("$d") || symbol.name.starts_with("$x"))
      data_begins_[entry.st_value] = symbol.name[1] == 'd';
    else if (ELF64_ST_TYPE(entry.st_info) == STT_FUNC && entry.st_shndx != SHN_UNDEF)
      functions_.insert_or_assign(entry.st_value, named{entry.st_size, symbol.name});
    else if (ELF64_ST_TYPE(entry.st_info) == STT_OBJECT && entry.st_shndx != SHN_UNDEF && entry.st_size != 0)
      variables_.insert_or_assign(entry.st_value, named{entry.st_size, symbol.name});
  }
}

bool program_code::is_data(std::uint64_t address) const {
  const auto found = at_or_below(data_begins_, address);
  return found != data_begins_.end() && found->second;
}

void program_code::for_each_word(const std::function<void(std::uint64_t, std::uint32_t)>& take) const {
  for (const range& code : ranges_)
    for (std::uint64_t at = 0; at + sizeof(std::uint32_t) <= code.size; at += sizeof(std::uint32_t)) {
      const auto word = image_->at<std::uint32_t>(code.offset + at);
      if (word && !is_data(code.address + at)) take(code.address + at, *word);
    }
}

std::optional<program_code::function_name> program_code::function_at(std::uint64_t address) const {
  const auto found = at_or_below(functions_, address);
  if (found == functions_.end()) return std::nullopt;
  const auto& [start, symbol] = *found;
  if (symbol.size != 0 && address - start >= symbol.size) return std::nullopt;
  return function_name{demangled(std::string(symbol.name)), start};
}

std::optional<program_code::variable> program_code::variable_at(std::uint64_t address) const {
  const auto found = at_or_below(variables_, address);
  if (found == variables_.end() || address - found->first >= found->second.size) return std::nullopt;
  return variable{demangled(std::string(found->second.name)), found->first, found->second.size};
}

void program_code::for_each_function(const std::function<void(const std::string& name)>& take) const {
  for (const auto& [start, symbol] : functions_) take(demangled(std::string(symbol.name)));
}

std::string program_code::place(std::uint64_t address) const {
  const std::optional<function_name> found = function_at(address);
  return found ? fmt::format("{}+{:#x}", found->name, address - found->start) : fmt::format("{:#x}", address);
}

}  // namespace quern
