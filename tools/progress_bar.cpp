// Drawing the bar.
#include "tools/progress_bar.h"

#include <fmt/core.h>

#include <string>

namespace quern {

using namespace std::chrono_literals;

progress_bar::progress_bar(std::FILE* out, bool is_watched, unsigned passes, std::function<clock::time_point()> now)
    : out_(out), is_watched_(is_watched), passes_(passes), now_(std::move(now)), next_(now_() + 1s) {}

void progress_bar::show(unsigned pass, double done) {
  if (!is_watched_) return;
  const double all = (pass + done) / passes_;
  if (all >= 1) return erase();
  const clock::time_point time = now_();
  if (time < next_) return;
  next_ = time + 100ms;
  is_shown_ = true;
  constexpr std::size_t width = 50;
  const auto filled = static_cast<std::size_t>(all * width);
  fmt::print(out_, "\r[{}{}] {:>3.0f} %", std::string(filled, '#'), std::string(width - filled, ' '), all * 100);
  std::fflush(out_);
}

void progress_bar::erase() {
  if (is_shown_) std::fputs("\r\033[K", out_);
  std::fflush(out_);
  is_shown_ = false;
}

}  // namespace quern
