// Differences between two register files, and between two memories.
#include "tests/differential/comparison.h"

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

std::string both(const std::string& what, std::uint64_t processor, std::uint64_t emulator, int digits) {
  return what + ": processor " + number(processor, digits) + ", emulator " + number(emulator, digits);
}

void compare_value(part where, const char* name, std::uint64_t processor, std::uint64_t emulator, int digits,
                   std::vector<difference>& found) {
  if (processor != emulator) found.push_back({where, both(name, processor, emulator, digits)});
}

std::string vector_difference(int n, const unsigned char* processor, const unsigned char* emulator,
                              std::uint32_t size) {
  const std::size_t bytes = std::size_t{1} << size;
  std::size_t at = 0;
  while (std::memcmp(processor + at, emulator + at, bytes) == 0) at += bytes;
  std::uint64_t a = 0, b = 0;
  std::memcpy(&a, processor + at, bytes);
  std::memcpy(&b, emulator + at, bytes);
  const std::string lane = aarch64_z_reg::zname[static_cast<std::size_t>(n)] + std::string(".") + "bhsd"[size] + "[" +
                           std::to_string(at / bytes) + "]";
  return both(lane, a, b, static_cast<int>(2 * bytes));
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

bool compare_predicate(int n, const unsigned char* processor, const unsigned char* emulator,
                       std::vector<difference>& found) {
  const int at = first_difference(processor, emulator, bit_0_of_bytes);
  if (at == VL_BYTES) return true;
  found.push_back(
      {n == ffr_number ? part::ffr : part::p, both(predicate_byte(n, at), processor[at] & 1u, emulator[at], 2)});
  return false;
}

}  // namespace

std::vector<difference> compare_states(const cpu_state& processor, const cpu_state& emulator, std::uint32_t size) {
  std::vector<difference> found;
  const auto [x, y] = std::mismatch(std::begin(processor.x), std::end(processor.x), emulator.x);
  if (x != std::end(processor.x))
    compare_value(part::x, aarch64_i_reg::xname[static_cast<std::size_t>(x - processor.x)], *x, *y, 16, found);
  compare_value(part::sp, "sp", processor.sp, emulator.sp, 16, found);
  compare_value(part::nzcv, "nzcv", processor.nzcv, emulator.nzcv, 16, found);
  compare_value(part::fpsr, "fpsr", processor.fpsr, emulator.fpsr, 8, found);
  for (int n = 0; n != 32; ++n) {
    if (std::memcmp(processor.z[n], emulator.z[n], VL_BYTES) == 0) continue;
    found.push_back({part::z, vector_difference(n, processor.z[n], emulator.z[n], std::min(size, size_d))});
    break;
  }
  for (int n = 0; n != 16; ++n)
    if (!compare_predicate(n, processor.p[n], emulator.p[n], found)) break;
  compare_predicate(ffr_number, processor.ffr, emulator.ffr, found);
  compare_value(part::other, "fpcr", processor.fpcr, emulator.fpcr, 8, found);
  compare_value(part::other, "pc", reinterpret_cast<std::uintptr_t>(processor.pc),
                reinterpret_cast<std::uintptr_t>(emulator.pc), 16, found);
  return found;
}

void compare_memory(const unsigned char* processor, const unsigned char* emulator, std::int64_t bytes,
                    std::vector<difference>& found) {
  if (std::memcmp(processor, emulator, static_cast<std::size_t>(bytes)) == 0) return;
  const auto [a, b] = std::mismatch(processor, processor + bytes, emulator);
  found.push_back({part::memory, both("arena byte " + std::to_string(a - processor), *a, *b, 2)});
}

void check_predicate_bytes(const cpu_state& emulator, std::vector<difference>& found) {
  static constexpr unsigned char zeros[VL_BYTES]{};
  for (int n = 0; n <= ffr_number; ++n) {
    const unsigned char* const bytes = n == ffr_number ? emulator.ffr : emulator.p[n];
    const int at = first_difference(bytes, zeros, ~bit_0_of_bytes);
    if (at == VL_BYTES) continue;
    found.push_back({n == ffr_number ? part::ffr : part::p,
                     predicate_byte(n, at) + ": emulator " + number(bytes[at], 2) + ", neither 0 nor 1"});
    return;
  }
}

}  // namespace quern
