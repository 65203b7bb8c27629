// An ELF file as it lies on disk.
#pragma once

#include <elf.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quern {

struct elf_symbol {
  std::string_view name;
  Elf64_Sym entry;
};

// A 64-bit little-endian ELF file, read whole. One that is none, or damaged, has less in it or nothing.
class elf_image {
 public:
  explicit elf_image(const std::filesystem::path& path);

  const std::vector<Elf64_Phdr>& segments() const { return segments_; }
  const std::vector<Elf64_Shdr>& sections() const { return sections_; }
  std::string_view bytes() const { return bytes_; }

  // The bytes of the file from the offset on, cut to what the file has.
  std::string_view bytes(std::uint64_t offset, std::uint64_t size) const;

  // Of the tables of that kind, SHT_SYMTAB or SHT_DYNSYM. The names live as long as the image.
  std::vector<elf_symbol> symbols(std::uint32_t kind) const;

  template <typename T>
  std::optional<T> at(std::uint64_t offset) const {
    const std::string_view found = bytes(offset, sizeof(T));
    if (found.size() != sizeof(T)) return std::nullopt;
    T value;
    std::memcpy(&value, found.data(), sizeof value);
    return value;
  }

 private:
  template <typename T>
  std::vector<T> table(std::uint64_t offset, std::uint64_t count) const;

  std::string bytes_;
  std::vector<Elf64_Phdr> segments_;
  std::vector<Elf64_Shdr> sections_;
};

}  // namespace quern
