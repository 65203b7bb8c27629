// A shared object as a file: what can be told of it without loading it.
#pragma once

#include <optional>
#include <string_view>

#include "tools/elf_image.h"

namespace quern {

class shared_object {
 public:
  explicit shared_object(const std::filesystem::path& path) : image_(path) {}

  // The initial value of an exported variable of type int.
  std::optional<int> exported_int(std::string_view name) const;

  bool contains(std::string_view text) const { return image_.bytes().find(text) != std::string_view::npos; }

 private:
  elf_image image_;
};

}  // namespace quern
