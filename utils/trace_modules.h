// The programs and libraries that a trace lists: what its code addresses are to be named by.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "utils/trace_format.h"

namespace quern {

struct trace_module {
  std::uint64_t begin = 0, end = 0;             // where the file's first byte was, and the end of its last segment
  std::uint64_t first_count = 0;                // of the record at which it was found
  std::uint64_t end_count = ~std::uint64_t{0};  // of the record at which it was found to be gone
  std::uint64_t time = 0;                       // at which it was found: nanoseconds since 1970
  std::string path;                             // as the kernel gives it; ends in " (deleted)" when it was
  std::string build_id;                         // its bytes; empty if the file had none
};

class trace_modules {
 public:
  // Takes the entries of a chunk, in the order of chunks. False when there is something that is no entry; the bytes may
  // end within one if they are not all that were written.
  bool take(std::string_view bytes, bool is_all);

  // In the order in which they were found.
  const std::vector<trace_module>& all() const { return modules_; }

  // The number, in all(), of the module that the address was in at the record of that count; all().size() if in none.
  // Where that one was found only later, that one.
  std::size_t find(std::uint64_t address, std::uint64_t count) const;

 private:
  bool add(const module_entry& entry, std::string_view rest);

  std::vector<trace_module> modules_;
  std::vector<std::uint32_t> numbers_;  // of the modules, in the file
};

}  // namespace quern
