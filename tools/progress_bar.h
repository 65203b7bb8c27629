// A bar on standard error that tells how far a command has come, if it takes more than a second and someone looks.
#pragma once

#include <chrono>
#include <cstdio>
#include <functional>

namespace quern {

class progress_bar {
 public:
  using clock = std::chrono::steady_clock;

  // `is_watched`: whether `out` is a terminal, on which nothing else is printed meanwhile.
  progress_bar(std::FILE* out, bool is_watched, unsigned passes, std::function<clock::time_point()> now = clock::now);
  ~progress_bar() { erase(); }
  progress_bar(const progress_bar&) = delete;
  progress_bar& operator=(const progress_bar&) = delete;

  // How much of a pass is done, from 0 to 1. The end of the last erases the bar.
  void show(unsigned pass, double done);

 private:
  void erase();

  std::FILE* out_;
  bool is_watched_;
  unsigned passes_;
  std::function<clock::time_point()> now_;
  clock::time_point next_;
  bool is_shown_ = false;
};

}  // namespace quern
