// Takes the place of the C library's square roots in the test program.
#include "tests/handlers/floating_point/libc_roots.h"

namespace {

std::vector<float> singles;
std::vector<double> doubles;

}  // namespace

extern "C" float sqrtf(float x) noexcept {
  singles.push_back(x);
  return 42;
}

extern "C" double sqrt(double x) noexcept {
  doubles.push_back(x);
  return 42;
}

namespace quern {

libc_roots::libc_roots() {
  singles.clear();
  doubles.clear();
}
std::vector<float> libc_roots::of_singles() const { return singles; }
std::vector<double> libc_roots::of_doubles() const { return doubles; }

}  // namespace quern
