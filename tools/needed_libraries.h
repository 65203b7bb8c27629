// The shared libraries that a program is linked with, found as the dynamic linker finds them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quern {

struct needed_library {
  std::string name;                 // as the file that needs it has it: "libm.so.6"
  std::filesystem::path needed_by;  // the first that does
  std::filesystem::path file;       // empty if it is not found
};

// Those that the file needs, and those that these need, each name once, nearest first. Looked for in the folders that
// the files name (RPATH, RUNPATH, with $ORIGIN), in those of LD_LIBRARY_PATH, and in the usual ones of AArch64 Linux:
// each below `root` first if that is not empty. The linker's own list, ld.so.cache, is not read.
std::vector<needed_library> needed_libraries(const std::filesystem::path& program, const std::filesystem::path& root);

}  // namespace quern
