// The states that routines are tried on, and how two are compared.
#include "tests/harness/agreement.h"

#include <cstddef>
#include <cstring>
#include <sstream>

#include "tests/random_cases/random_registers.h"

namespace quern {
namespace {

constexpr const char* lanes_names[] = {"no lane", "all lanes", "every other lane", "random lanes"};

bool is_on(lanes_on active, std::size_t lane, random_source& random) {
  switch (active) {
    case lanes_on::none: return false;
    case lanes_on::all: return true;
    case lanes_on::alternate: return lane % 2 == 1;
    case lanes_on::random: break;
  }
  return random.one_in(2);
}

// Makes lanes of a predicate active; all bits that carry no meaning are random.
void set_predicate(random_source& random, unsigned char* p, std::uint32_t size, lanes_on active) {
  for (int i = 0; i != VL_BYTES; ++i) p[i] = static_cast<unsigned char>(random.next());
  for (std::size_t i = 0; i != count_of(size); ++i)
    p[i << size] = static_cast<unsigned char>((p[i << size] & 0xFE) | (is_on(active, i, random) ? 1 : 0));
}

std::uint64_t edge_value(random_source& random, unsigned width) {
  const std::uint64_t sign = std::uint64_t{1} << (width - 1);
  const std::array<std::uint64_t, 14> values{0,     1,         2,    7,        255,      256,   width - 1,
                                             width, width + 1, sign, sign - 1, sign + 1, ~0ull, ~1ull};
  return random.pick(values);
}

void put_edge_values(random_source& random, unsigned char* z, std::uint32_t size) {
  for (std::size_t i = 0; i != count_of(size); ++i)
    if (random.one_in(2)) set_element(z, size, i, edge_value(random, element_width(size)));
}

sample make_sample(random_source& random, std::uint32_t size, lanes_on active, bool edges) {
  sample s{size, active, {}};
  fill_registers(random, size, false, s.state);
  for (const int p : {0, 1, 2}) set_predicate(random, s.state.p[p], size, active);
  for (int z = 0; edges && z != 4; ++z) put_edge_values(random, s.state.z[z], size);
  return s;
}

std::vector<sample> make_samples() {
  random_source random(20);
  std::vector<sample> all;
  for (std::uint32_t size = size_b; size <= size_d; ++size)
    for (const lanes_on active : {lanes_on::none, lanes_on::all, lanes_on::alternate, lanes_on::random})
      for (const bool edges : {false, true}) all.push_back(make_sample(random, size, active, edges));
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

const cpu_state& random_state(std::uint32_t size, lanes_on active) {
  return samples()[(size * std::size(lanes_names) + static_cast<std::size_t>(active)) * 2 + 1].state;
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

std::string describe(std::string_view name, const sample& s, const registers& r) {
  std::ostringstream out;
  out << name << ", size " << size_letter(s.size) << ", " << lanes_names[static_cast<std::size_t>(s.active)] << ", d "
      << r.d << " g " << r.g << " n " << r.n << " m " << r.m;
  return out.str();
}

void define_flags(cpu_state& s, const flags_of& governing, const flags_of& result) {
  bool seen = false, n = false, z = true, c = true;
  for (std::size_t i = 0; i != governing.size(); ++i) {
    if (!governing[i]) continue;
    if (!seen) n = result[i];
    seen = true;
    if (result[i]) z = false;
    c = !result[i];
  }
  s.nzcv = s.nzcv % (std::uint64_t{1} << 28) + (s.nzcv >> 32 << 32) + n * (std::uint64_t{1} << 31) +
           z * (std::uint64_t{1} << 30) + c * (std::uint64_t{1} << 29);
}

}  // namespace quern
