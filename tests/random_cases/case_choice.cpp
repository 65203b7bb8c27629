// Which random cases a test runs.
#include "tests/random_cases/case_choice.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace quern {
namespace {

std::uint64_t number_from_environment(const std::string& name, std::uint64_t otherwise) {
  const char* const text = std::getenv(name.c_str());
  if (text == nullptr) return otherwise;
  char* end = nullptr;
  const std::uint64_t value = std::strtoull(text, &end, 0);
  if (end != text && *end == '\0') return value;
  std::fprintf(stderr, "%s is '%s'; it must be a number, for example 12 or 0x1F.\n", name.c_str(), text);
  std::exit(EXIT_FAILURE);
}

}  // namespace

case_choice choose_cases(const char* prefix, std::uint64_t default_count) {
  const std::string name = prefix;
  return {number_from_environment(name + "_SEED", 1), number_from_environment(name + "_CASES", default_count)};
}

}  // namespace quern
