#include "tests/handlers/lane_judge.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <sstream>

namespace quern {
namespace {

std::mt19937_64& generator() {
  static std::mt19937_64 engine{20240229};
  return engine;
}

std::size_t lanes_of(std::uint32_t size) { return VL_BYTES >> size; }

std::uint64_t edge_value(unsigned width) {
  const std::uint64_t sign = std::uint64_t{1} << (width - 1);
  const std::uint64_t values[] = {0,     1,         2,    7,        255,      256,   width - 1,
                                  width, width + 1, sign, sign - 1, sign + 1, ~0ull, ~1ull};
  return values[generator()() % std::size(values)];
}

bool wanted(lanes_on predicate, std::size_t lane) {
  switch (predicate) {
    case lanes_on::none: return false;
    case lanes_on::all: return true;
    case lanes_on::alternate: return lane % 2 == 0;
    case lanes_on::random: break;
  }
  return (generator()() & 1) != 0;
}

std::string describe(std::string_view name, std::uint32_t size, lanes_on predicate, const lane_registers& r) {
  static constexpr const char* kind[] = {"no lane", "all lanes", "every other lane", "random lanes"};
  std::ostringstream text;
  text << name << " ." << size_letter(size) << ", " << kind[static_cast<int>(predicate)] << ", z" << r.d << " z" << r.n
       << " z" << r.m;
  return text.str();
}

void judge_lanes_once(const lane_case& c, std::uint32_t size, lanes_on predicate, const lane_registers& r) {
  cpu_state& state = random_state(size, predicate);
  static cpu_state before, expected;
  before = expected = state;
  for (std::size_t i = 0; i != lanes_of(size); ++i) {
    const auto old = [&](unsigned num) { return element(before.z[num], size, i); };
    if (!c.predicated || lane_active(before.p[0], size, i)) {
      set_element(expected.z[r.d], size, i, c.lane(element_width(size), old(r.d), old(r.n), old(r.m)));
    } else if (c.zeroing) {
      set_element(expected.z[r.d], size, i, 0);
    }
  }
  c.call(state, size, r);
  EXPECT_EQ(difference(state, expected), "") << describe(c.name, size, predicate, r);
}

}  // namespace

std::uint64_t element(const unsigned char* bytes, std::uint32_t size, std::size_t i) {
  std::uint64_t value = 0;
  for (std::size_t b = 0; b != std::size_t{1} << size; ++b) value |= std::uint64_t{bytes[(i << size) + b]} << 8 * b;
  return value;
}

void set_element(unsigned char* bytes, std::uint32_t size, std::size_t i, std::uint64_t value) {
  for (std::size_t b = 0; b != std::size_t{1} << size; ++b)
    bytes[(i << size) + b] = static_cast<unsigned char>(value >> 8 * b);
}

void fill(cpu_state& state, unsigned num, std::uint32_t size, std::uint64_t value) {
  for (std::size_t i = 0; i != lanes_of(size); ++i) set_element(state.z[num], size, i, value);
}

bool lane_active(const unsigned char* predicate, std::uint32_t size, std::size_t i) {
  return predicate[i << size] % 2 == 1;
}

cpu_state& random_state(std::uint32_t size, lanes_on predicate) {
  static cpu_state state;
  auto* const bytes = reinterpret_cast<unsigned char*>(&state);
  for (std::size_t i = 0; i < sizeof state; i += 8) {
    const std::uint64_t rubbish = generator()();
    std::memcpy(bytes + i, &rubbish, std::min<std::size_t>(8, sizeof state - i));
  }
  for (auto& z : state.z) {
    for (std::size_t i = 0; i != lanes_of(size); ++i) {
      if (generator()() % 2 == 0) set_element(z, size, i, edge_value(element_width(size)));
    }
  }
  for (std::size_t i = 0; i != lanes_of(size); ++i) {
    unsigned char& counts = state.p[0][i << size];
    counts = static_cast<unsigned char>((counts & 0xFE) | (wanted(predicate, i) ? 1 : 0));
  }
  return state;
}

void judge_lanes(const lane_case& c) {
  static constexpr lane_registers equalities[] = {{1, 2, 3}, {1, 1, 3}, {1, 2, 1}, {1, 2, 2}, {31, 31, 31}};
  for (const char letter : c.sizes) {
    const auto size = static_cast<std::uint32_t>(std::string_view("bhsd").find(letter));
    for (const lanes_on predicate : every_predicate) {
      if (!c.predicated && predicate != lanes_on::random) continue;
      for (const lane_registers& r : equalities) judge_lanes_once(c, size, predicate, r);
    }
  }
}

void judge_reduction(const reduction_case& c) {
  for (std::uint32_t size = size_b; size <= size_d; ++size) {
    for (const lanes_on predicate : every_predicate) {
      for (const lane_registers& r : {lane_registers{1, 2, 2}, lane_registers{2, 2, 2}}) {
        cpu_state& state = random_state(size, predicate);
        const unsigned width = element_width(size), result_width = c.result_width == 0 ? width : c.result_width;
        std::uint64_t folded = c.start(width);
        for (std::size_t i = 0; i != lanes_of(size); ++i) {
          if (lane_active(state.p[0], size, i)) folded = c.fold(width, folded, element(state.z[r.n], size, i));
        }
        static cpu_state expected;
        expected = state;
        std::memset(expected.z[r.d], 0, VL_BYTES);
        set_element(expected.z[r.d], size_d, 0, low_bits(result_width, folded));
        EXPECT_EQ(c.handler(&state, r.d, p_reg(0, p_unqualified), z_reg(r.n, size)), DECODE_OK);
        EXPECT_EQ(difference(state, expected), "") << describe(c.name, size, predicate, r);
      }
    }
  }
}

}  // namespace quern
