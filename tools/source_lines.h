// Lines of source by the debugging information of programs and libraries, which elfutils' libdw reads. That is looked
// for when the command runs, so that quern works without it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

struct Dwfl;  // libdw's

namespace quern {

class source_lines {
 public:
  explicit source_lines(const std::filesystem::path& path);
  ~source_lines();
  source_lines(const source_lines&) = delete;
  source_lines& operator=(const source_lines&) = delete;

  // "/src/saxpy.c:12" of an address in the file; empty where nothing tells.
  std::string at(std::uint64_t address) const;

  // Whether there is a libdw, and its header was there when this was built.
  static bool are_available();

 private:
  Dwfl* session_ = nullptr;
};

}  // namespace quern
