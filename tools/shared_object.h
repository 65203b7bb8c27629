// A shared object as a file: what can be told of it without loading it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quern {

// A 64-bit little-endian ELF file, read whole. A file that is none, or damaged, exports nothing.
class shared_object {
 public:
  explicit shared_object(const std::filesystem::path& path);

  // The initial value of an exported variable of type int.
  std::optional<int> exported_int(std::string_view name) const;

  bool contains(std::string_view text) const { return bytes_.find(text) != std::string::npos; }

 private:
  template <typename T>
  std::optional<T> at(std::uint64_t offset) const;

  std::string bytes_;
};

}  // namespace quern
