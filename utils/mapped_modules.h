// The programs and libraries whose code is mapped into this process, as the kernel lists them. No heap, no lock, no
// call into the dynamic linker: signal handlers may look while another thread is in dlopen().
#pragma once

#include <climits>
#include <cstdint>
#include <string_view>

#include "utils/build_id.h"

namespace quern {

struct mapped_module {
  std::uint64_t begin = 0, end = 0;  // where the file's first byte is, and the end of what its segments take
  std::uint64_t inode = 0;
  std::string_view path, build_id;  // until the next call
};

struct address_range {
  std::uint64_t begin = 0, end = 0;
  bool has(std::uint64_t address) const { return address >= begin && address < end; }
};

// One walk through the list. Of its size: to be kept off the application's stack.
class mapped_modules {
 public:
  // Begins anew; `place` is an address to be looked for under way. False when there is no list.
  bool open(std::uint64_t place);
  // The next module in the order of addresses.
  bool next(mapped_module& module);
  void close();
  // After all modules: the range about the place, wherever that is: a module's, else a mapping's, else a hole between
  // two of these.
  const address_range& around() const { return around_; }

 private:
  struct mapping {
    address_range range;
    std::uint64_t offset = 0, inode = 0;
    bool is_code = false;
    std::string_view path;
  };

  bool next_mapping(mapping& found);
  bool fill();
  void look_at(const address_range& range);
  bool belongs(const mapping& found);
  void begin_module(const mapping& found);
  void read_file();
  void read_build_id(int file, const Elf64_Phdr& segment);

  int file_ = -1;
  std::uint64_t place_ = 0;
  address_range around_;
  mapped_module module_;                                      // the file that was last seen from its beginning
  bool is_read_ = false, is_elf_ = false, is_given_ = false;  // whether its file was looked at, and next() answered it
  std::size_t read_ = 0, taken_ = 0;
  char lines_[2 * PATH_MAX]{};
  char path_[PATH_MAX]{};
  char notes_[1024]{};
};

}  // namespace quern
