// The states that handlers are tried on, and how two are compared.
#include "tests/handlers/agreement.h"

#include <cstddef>
#include <sstream>

namespace quern {
namespace {

using rule = bool (*)(std::size_t element, random_source& random);

constexpr struct {
  const char* name;
  rule active;
} rules[] = {
    {"all false", [](std::size_t, random_source&) { return false; }},
    {"all true", [](std::size_t, random_source&) { return true; }},
    {"alternating", [](std::size_t i, random_source&) { return i % 2 == 1; }},
    {"random", [](std::size_t, random_source& random) { return random.one_in(2); }},
};

// Makes the elements of a predicate active by the rule; all bits that carry no meaning are random.
void set_predicate(random_source& random, unsigned char* p, std::uint32_t size, rule active) {
  for (int i = 0; i != VL_BYTES; ++i) p[i] = static_cast<unsigned char>(random.next());
  for (std::size_t i = 0; i != count_of(size); ++i)
    p[i << size] = static_cast<unsigned char>((p[i << size] & 0xFE) | (active(i, random) ? 1 : 0));
}

std::vector<sample> make_samples() {
  random_source random(20);
  std::vector<sample> all;
  for (std::uint32_t size = size_b; size <= size_d; ++size)
    for (const auto& [name, active] : rules)
      for (int repeat = 0; repeat != 2; ++repeat) {
        sample& s = all.emplace_back(sample{name, size, {}});
        fill_registers(random, size, false, s.state);
        for (const int p : {1, 2}) set_predicate(random, s.state.p[p], size, active);
      }
  return all;
}

// Adds to `out`, if it is still empty, the first place where two arrays differ.
template <class Array>
void compare(std::ostringstream& out, const char* name, std::size_t number, const Array& actual,
             const Array& expected) {
  for (std::size_t i = 0; out.tellp() == 0 && i != std::size(actual); ++i)
    if (actual[i] != expected[i])
      out << name << number << "[" << i << "] is " << +actual[i] << ", not " << +expected[i];
}

}  // namespace

const std::vector<sample>& samples() {
  static const std::vector<sample> all = make_samples();
  return all;
}

std::string difference(const cpu_state& actual, const cpu_state& expected) {
  // The usual case, quickly. Padding may differ: the fields decide.
  if (std::memcmp(&actual, &expected, offsetof(cpu_state, instr_word) + sizeof actual.instr_word) == 0) return "";
  std::ostringstream out;
  const auto scalars = [](const cpu_state& s) {
    return std::array<std::uint64_t, 6>{s.sp,   s.nzcv,       s.fpsr,
                                        s.fpcr, s.instr_word, reinterpret_cast<std::uint64_t>(s.pc)};
  };
  compare(out, "sp nzcv fpsr fpcr instr_word pc ", 0, scalars(actual), scalars(expected));
  compare(out, "x", 0, actual.x, expected.x);
  for (std::size_t i = 0; i != 16; ++i) compare(out, "p", i, actual.p[i], expected.p[i]);
  for (std::size_t i = 0; i != 32; ++i) compare(out, "z", i, actual.z[i], expected.z[i]);
  compare(out, "ffr", 0, actual.ffr, expected.ffr);
  return out.str();
}

}  // namespace quern
