// A program or library that was in a process's memory: its file, and the names of its places.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "tools/elf_image.h"
#include "tools/program_code.h"

namespace quern {

class module_code {
 public:
  explicit module_code(const std::filesystem::path& path) : image_(path), code_(image_) {}
  module_code(const module_code&) = delete;
  module_code& operator=(const module_code&) = delete;

  const program_code& code() const { return code_; }
  bool is_readable() const { return !image_.segments().empty(); }

  // The file's address of what lay at `address` when the file's first byte lay at `begin`.
  std::uint64_t address_in_file(std::uint64_t address, std::uint64_t begin) const;

  // The instruction at an address of the file; nothing where the file has no code for AArch64 there.
  std::optional<std::uint32_t> word_at(std::uint64_t address) const;

  // Its bytes; empty where the file has none.
  std::string_view build_id() const;

 private:
  elf_image image_;
  program_code code_;
};

}  // namespace quern
