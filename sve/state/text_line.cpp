// Lines of text made without the C library's formatting.
#include "sve/state/text_line.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace quern {

text_line& text_line::put(std::string_view text) {
  size_ += text.copy(text_ + size_, sizeof text_ - 1 - size_);
  text_[size_] = '\0';
  return *this;
}

text_line& text_line::put_hex(std::uint64_t value, int least_digits) {
  char digits[16];
  int count = 0;
  for (; count < least_digits || value != 0; value >>= 4) digits[count++] = "0123456789abcdef"[value & 15];
  std::reverse(digits, digits + count);
  return put({digits, static_cast<std::size_t>(count)});
}

void text_line::print() const {
  const int kept = errno;
  for (std::size_t done = 0; done != size_;) {
    const ssize_t written = write(STDERR_FILENO, text_ + done, size_ - done);
    if (written > 0) done += static_cast<std::size_t>(written);
    if (written == 0 || (written < 0 && errno != EINTR)) break;  // nobody is there to be told
  }
  errno = kept;
}

}  // namespace quern
