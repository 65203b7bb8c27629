// A line of text for standard error that is made on the stack and written whole, by nothing but write(2): the C
// library's formatting and streams are not for signal handlers, where the emulator may run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quern {

// Text that does not fit in 192 characters, the end of the line included, is cut off.
class text_line {
 public:
  text_line& put(std::string_view text);
  // In hexadecimal, with zeros before it up to `least_digits` digits (1 to 16).
  text_line& put_hex(std::uint64_t value, int least_digits = 1);

  // Ends with a zero byte.
  const char* c_str() const { return text_; }
  // Writes the line to standard error, in one call where the kernel takes it in one. Keeps errno.
  void print() const;

 private:
  char text_[192 + 1]{};
  std::size_t size_ = 0;
};

}  // namespace quern
