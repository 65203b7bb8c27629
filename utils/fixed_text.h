// Text of bounded length, built without the heap or stdio, so that signal handlers can build paths and messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quern {

template <std::size_t Capacity>
class fixed_text {
 public:
  // Appends what fits; complete() turns false if not all did.
  fixed_text& operator<<(std::string_view text) {
    const std::size_t taken = text.size() < Capacity - size_ ? text.size() : Capacity - size_;
    std::memcpy(text_ + size_, text.data(), taken);
    size_ += taken;
    text_[size_] = 0;
    complete_ = complete_ && taken == text.size();
    return *this;
  }
  fixed_text& operator<<(std::uint64_t number) {
    char digits[20];
    char* first = digits + sizeof digits;
    do *--first = static_cast<char>('0' + number % 10);
    while ((number /= 10) != 0);
    return *this << std::string_view(first, static_cast<std::size_t>(digits + sizeof digits - first));
  }
  void clear() {
    size_ = 0;
    text_[0] = 0;
    complete_ = true;
  }
  bool complete() const { return complete_; }
  std::string_view view() const { return {text_, size_}; }
  const char* c_str() const { return text_; }

 private:
  char text_[Capacity + 1]{};
  std::size_t size_ = 0;
  bool complete_ = true;
};

}  // namespace quern
