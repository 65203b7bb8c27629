// Reading of /proc/self/maps without the C library.
#include "sve/trap/host/memory_map.h"

#include <fcntl.h>

#include "sve/trap/host/system_call.h"

namespace quern {
namespace {

class maps_file {
 public:
  maps_file() : file_(kernel::call(SYS_openat, AT_FDCWD, kernel::argument("/proc/self/maps"), O_RDONLY | O_CLOEXEC)) {}
  ~maps_file() {
    if (file_ >= 0) kernel::call(SYS_close, file_);
  }
  maps_file(const maps_file&) = delete;
  maps_file& operator=(const maps_file&) = delete;

  // The next character, or 0 at the end.
  char next() {
    if (at_ == bytes_) {
      bytes_ = file_ < 0 ? 0 : kernel::call(SYS_read, file_, kernel::argument(buffer_), sizeof buffer_);
      at_ = 0;
      if (bytes_ <= 0) return bytes_ = 0, '\0';
    }
    return buffer_[at_++];
  }

  // A number to the first character that is no digit of it, which is taken too.
  std::uint64_t number(unsigned radix) {
    std::uint64_t value = 0;
    for (;;) {
      const char c = next();
      const auto digit = static_cast<unsigned>(c >= 'a' ? c - 'a' + 10 : c <= '9' ? c - '0' : -1);
      if (digit >= radix) return value;
      value = value * radix + digit;
    }
  }

  // Goes to the start of the next line; false when there is none.
  bool next_line() {
    char c;
    while ((c = next()) != '\n' && c != 0) {}
    return c != 0;
  }

 private:
  static inline char buffer_[4096];
  const long file_;
  long at_ = 0, bytes_ = 0;
};

}  // namespace

// "5500000000-5500002000 r-xp 00000000 fd:01 1234   /bin/program"
mapping find_mapping(const void* address) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  maps_file maps;
  do {
    const std::uint64_t start = maps.number(16);
    const std::uint64_t end = maps.number(16);
    if (wanted < start || wanted >= end) continue;
    mapping found{};
    found.start = start;
    found.end = end;
    found.readable = maps.next() == 'r';
    found.writable = maps.next() == 'w';
    found.executable = maps.next() == 'x';
    found.shared = maps.next() == 's';
    maps.next();
    maps.number(16);  // the offset; then the device's two numbers
    maps.number(16);
    maps.number(16);
    found.of_file = maps.number(10) != 0;
    return found;
  } while (maps.next_line());
  return {};
}

}  // namespace quern
