// The bar is shown where someone looks, after a second, and leaves nothing behind.
#include "tools/progress_bar.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace quern::test {
namespace {

using namespace std::chrono_literals;

class ProgressBar : public testing::Test {
 protected:
  ProgressBar() : out(open_memstream(&text, &size)) {}
  ~ProgressBar() override {
    std::fclose(out);
    std::free(text);
  }
  std::string taken() {
    std::fflush(out);
    const std::string all(text, size);
    const std::string fresh = all.substr(seen);
    seen = all.size();
    return fresh;
  }
  static std::string bar(int filled, const std::string& percent) {
    return "\r[" + std::string(static_cast<std::size_t>(filled), '#') +
           std::string(static_cast<std::size_t>(50 - filled), ' ') + "] " + percent + " %";
  }
  char* text = nullptr;
  std::size_t size = 0, seen = 0;
  std::FILE* out;
  progress_bar::clock::time_point time{};
  std::function<progress_bar::clock::time_point()> now = [this] { return time; };
};

TEST_F(ProgressBar, IsShownAfterASecondAndErasedAtTheEndOfTheLastPass) {
  progress_bar shown(out, true, 2, now);
  time += 999ms;
  shown.show(0, 0.5);
  EXPECT_EQ(taken(), "");
  time += 1ms;
  shown.show(0, 0.5);
  EXPECT_EQ(taken(), bar(12, " 25"));
  shown.show(0, 1);
  EXPECT_EQ(taken(), "") << "not ten times a second";
  time += 100ms;
  shown.show(0, 1);
  EXPECT_EQ(taken(), bar(25, " 50"));
  shown.show(1, 1);
  EXPECT_EQ(taken(), "\r\033[K");
  shown.show(1, 1);
  EXPECT_EQ(taken(), "");
}

TEST_F(ProgressBar, AnErrorLeavesNoBar) {
  {
    progress_bar shown(out, true, 1, now);
    time += 2s;
    shown.show(0, 0.1);
    EXPECT_EQ(taken(), bar(5, " 10"));
  }
  EXPECT_EQ(taken(), "\r\033[K");
}

TEST_F(ProgressBar, NothingIsPrintedWhereNobodyLooks) {
  {
    progress_bar unseen(out, false, 1, now);
    time += 10s;
    unseen.show(0, 0.5);
  }
  EXPECT_EQ(taken(), "");
}

}  // namespace
}  // namespace quern::test
