// The code of a program or library, as it lies in its file, and the names of its places.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "tools/elf_image.h"

namespace quern {

class program_code {
 public:
  // The image must outlive it.
  explicit program_code(const elf_image& image);

  // Calls take(address, word) for each word of code, in the order of the file. Data that lies within is passed over
  // where the symbols tell of it.
  void for_each_word(const std::function<void(std::uint64_t, std::uint32_t)>& take) const;

  // "main+0x1c", or "0x4007d0" where no symbol tells.
  std::string place(std::uint64_t address) const;

  // The function that an address is in, with its name as C++ has it.
  struct function_name {
    std::string name;
    std::uint64_t start;
  };
  std::optional<function_name> function_at(std::uint64_t address) const;

  // The variable that an address is in.
  struct variable {
    std::string name;
    std::uint64_t start, size;
  };
  std::optional<variable> variable_at(std::uint64_t address) const;

  // All that there are.
  void for_each_function(const std::function<void(const std::string& name)>& take) const;

  bool has_symbols() const { return !functions_.empty(); }

 private:
  struct range {
    std::uint64_t address, offset, size;
  };
  struct named {
    std::uint64_t size;
    std::string_view name;
  };

  void add_symbols(std::uint32_t kind);
  bool is_data(std::uint64_t address) const;

  const elf_image* image_;
  std::vector<range> ranges_;
  std::map<std::uint64_t, named> functions_, variables_;
  std::map<std::uint64_t, bool> data_begins_;  // from here on there is data, or code again
};

}  // namespace quern
