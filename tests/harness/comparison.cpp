// Differences between two register files, and between two memories.
#include "tests/harness/comparison.h"

#include <algorithm>
#include <bit>
#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace quern {
namespace {

std::string number(std::uint64_t value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*" PRIx64, digits, value);
  return text;
}

// Notes differences of two things that have names.
struct noter {
  side_names sides;
  std::vector<difference>& found;

  void note(part where, const std::string& what, std::uint64_t a, std::uint64_t b, int digits) const {
    found.push_back(
        {where, what + ": " + sides.first + " " + number(a, digits) + ", " + sides.second + " " + number(b, digits)});
  }
  void compare(part where, const char* name, std::uint64_t a, std::uint64_t b, int digits) const {
    if (a != b) note(where, name, a, b, digits);
  }
};

void note_lane(const noter& notes, int n, const unsigned char* first, const unsigned char* second, std::uint32_t size) {
  const std::size_t bytes = std::size_t{1} << size;
  std::size_t at = 0;
  while (std::memcmp(first + at, second + at, bytes) == 0) at += bytes;
  std::uint64_t a = 0, b = 0;
  std::memcpy(&a, first + at, bytes);
  std::memcpy(&b, second + at, bytes);
  const std::string lane = aarch64_z_reg::zname[static_cast<std::size_t>(n)] + std::string(".") + "bhsd"[size] + "[" +
                           std::to_string(at / bytes) + "]";
  notes.note(part::z, lane, a, b, static_cast<int>(2 * bytes));
}

constexpr int ffr_number = 16;  // after P15

std::string predicate_name(int n) {
  return n == ffr_number ? "ffr" : aarch64_p_reg::pname[static_cast<std::size_t>(n)];
}

constexpr std::uint64_t bit_0_of_bytes = 0x0101010101010101;

// The first of VL_BYTES bytes in which one of the bits of `mask` differs, or VL_BYTES.
int first_difference(const unsigned char* a, const unsigned char* b, std::uint64_t mask) {
  for (int at = 0; at != VL_BYTES; at += 8) {
    std::uint64_t eight_a, eight_b;
    std::memcpy(&eight_a, a + at, 8);
    std::memcpy(&eight_b, b + at, 8);
    if (const std::uint64_t differing = (eight_a ^ eight_b) & mask; differing != 0)
      return at + std::countr_zero(differing) / 8;
  }
  return VL_BYTES;
}

std::string predicate_byte(int n, int at) { return predicate_name(n) + "[" + std::to_string(at) + "]"; }

bool compare_predicate(const noter& notes, int n, const unsigned char* a, const unsigned char* b) {
  const int at = first_difference(a, b, bit_0_of_bytes);
  if (at == VL_BYTES) return true;
  notes.note(n == ffr_number ? part::ffr : part::p, predicate_byte(n, at), a[at], b[at], 2);
  return false;
}

}  // namespace

std::vector<difference> compare_states(const cpu_state& a, const cpu_state& b, std::uint32_t size, side_names sides) {
  std::vector<difference> found;
  const noter notes{sides, found};
  const auto [x, y] = std::mismatch(std::begin(a.x), std::end(a.x), b.x);
  if (x != std::end(a.x)) notes.note(part::x, aarch64_i_reg::xname[static_cast<std::size_t>(x - a.x)], *x, *y, 16);
  notes.compare(part::sp, "sp", a.sp, b.sp, 16);
  notes.compare(part::nzcv, "nzcv", a.nzcv, b.nzcv, 16);
  notes.compare(part::fpsr, "fpsr", a.fpsr, b.fpsr, 8);
  for (int n = 0; n != 32; ++n) {
    if (std::memcmp(a.z[n], b.z[n], VL_BYTES) == 0) continue;
    note_lane(notes, n, a.z[n], b.z[n], std::min(size, size_d));
    break;
  }
  for (int n = 0; n != 16; ++n)
    if (!compare_predicate(notes, n, a.p[n], b.p[n])) break;
  compare_predicate(notes, ffr_number, a.ffr, b.ffr);
  notes.compare(part::other, "fpcr", a.fpcr, b.fpcr, 8);
  notes.compare(part::other, "pc", reinterpret_cast<std::uintptr_t>(a.pc), reinterpret_cast<std::uintptr_t>(b.pc), 16);
  return found;
}

void compare_memory(const unsigned char* first, const unsigned char* second, std::int64_t bytes, side_names sides,
                    std::vector<difference>& found) {
  if (std::memcmp(first, second, static_cast<std::size_t>(bytes)) == 0) return;
  const auto [a, b] = std::mismatch(first, first + bytes, second);
  noter{sides, found}.note(part::memory, "arena byte " + std::to_string(a - first), *a, *b, 2);
}

void check_predicate_bytes(const cpu_state& state, std::vector<difference>& found) {
  static constexpr unsigned char zeros[VL_BYTES]{};
  for (int n = 0; n <= ffr_number; ++n) {
    const unsigned char* const bytes = n == ffr_number ? state.ffr : state.p[n];
    const int at = first_difference(bytes, zeros, ~bit_0_of_bytes);
    if (at == VL_BYTES) continue;
    found.push_back({n == ffr_number ? part::ffr : part::p,
                     predicate_byte(n, at) + ": " + number(bytes[at], 2) + ", neither 0 nor 1"});
    return;
  }
}

}  // namespace quern
