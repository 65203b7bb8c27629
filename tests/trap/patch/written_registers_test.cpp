// The registers that whole functions write: code laid out word by word.
#include "sve/trap/patch/written_registers.h"

#include <gtest/gtest.h>

#include <vector>

#include "sve/trap/patch/instructions.h"

namespace quern {
namespace {

using aarch64::b;
using aarch64::word;

constexpr std::uint32_t bit(int n) { return std::uint32_t{1} << n; }
constexpr std::uint32_t link = bit(30);

// ADD Xn, Xn, #1, and NOT Vn.16B, Vn.16B, which write the register alone.
constexpr word to_x(word n) { return aarch64::add_x({n}, {n}, 1); }
constexpr word to_v(word n) { return 0x6E205800 | n << 5 | n; }
constexpr word bl(std::int64_t distance) { return b(distance) | 0x80000000; }
constexpr word cbz_x0(std::int64_t distance) { return 0xB4000000 | aarch64::scaled(distance, 4, 19) << 5; }
constexpr word ret = 0xD65F03C0, br_x3 = 0xD61F0060, blr_x3 = 0xD63F0060, unknown = 0;

written_registers written_in(const std::vector<word>& code) {
  return written_by(reinterpret_cast<const unsigned char*>(code.data()));
}

struct function {
  const char* text;
  std::vector<word> code;
  written_registers wanted;
};

const function functions[] = {
    {"a plain way", {to_x(3), to_v(4), ret}, {bit(3), bit(4)}},
    {"nothing behind the end", {to_x(3), ret, to_x(5)}, {bit(3), 0}},
    {"both ways of a condition", {cbz_x0(12), to_x(3), ret, to_x(5), ret}, {bit(3) | bit(5), 0}},
    {"a jump forward", {b(8), unknown, to_x(5), ret}, {bit(5), 0}},
    {"a loop ends", {to_x(3), cbz_x0(-4), to_v(7), ret}, {bit(3), bit(7)}},
    {"a loop without an end ends too", {to_x(3), b(-4)}, {bit(3), 0}},
    {"a call, and what follows it", {bl(12), to_x(3), ret, to_v(9), ret}, {bit(3) | link, bit(9)}},
    {"a call of itself", {to_x(3), bl(-4), ret}, {bit(3) | link, 0}},
    {"a jump in the place of a last call", {to_x(3), b(8), unknown, to_v(9), ret}, {bit(3), bit(9)}},
    {"a trap ends a way", {cbz_x0(8), 0xD4207D00, to_x(5), ret}, {bit(5), 0}},
    {"a register that is brought back", {aarch64::stp_x({19}, {20}, {31}, 0), to_x(19), ret}, {bit(19), 0}},
    {"a function that keeps registers",
     {bl(12), to_x(3), ret, keeps_registers_word, to_v(9), blr_x3, ret},
     {bit(0) | bit(3) | bit(16) | bit(17) | link, 0}},
    {"a call by a register", {blr_x3, ret}, all_registers},
    {"a jump by a register", {to_x(3), br_x3}, all_registers},
    {"an unknown instruction", {unknown, ret}, all_registers},
    {"an unknown instruction on one way only", {cbz_x0(8), ret, unknown}, all_registers},
};

TEST(WrittenBy, FollowsAllWaysOfTheCode) {
  for (const function& f : functions) {
    const written_registers found = written_in(f.code);
    EXPECT_EQ(found.x, f.wanted.x) << f.text;
    EXPECT_EQ(found.v, f.wanted.v) << f.text;
  }
}

TEST(WrittenBy, GivesUpOnCodeTooLong) {
  std::vector<word> code(10000, to_x(3));
  code.push_back(ret);
  EXPECT_EQ(written_in(code), all_registers);
  code[1000] = ret;
  EXPECT_EQ(written_in(code).x, bit(3)) << "and is as good as before for the next";
}

TEST(WrittenBy, GivesUpOnTooManyOpenWays) {
  std::vector<word> code(1000, cbz_x0(2000 * 4));
  for (std::size_t i = 0; i != code.size(); ++i) code[i] = cbz_x0(static_cast<std::int64_t>(2000 + i) * 4);
  code.resize(5000, ret);
  EXPECT_EQ(written_in(code), all_registers);
}

// ADRP X16; LDR X17, [X16, ...]; ADD X16, ...; BR X17, with the slot in the page of the stub's own code.
struct stub_page {
  alignas(4096) word code[8];
  const unsigned char* slot;
};

word in_page(word instruction, std::size_t offset, std::size_t unit) {
  return instruction | static_cast<word>(offset / unit) << 10;
}

TEST(WrittenBy, FollowsTheStubOfAnotherLibrary) {
  const std::vector<word> target = {to_v(9), ret};
  static stub_page page;
  const auto slot = reinterpret_cast<const unsigned char*>(target.data());
  page = {{0xD503245F, 0x90000010, in_page(0xF9400211, offsetof(stub_page, slot), 8),
           in_page(0x91000210, offsetof(stub_page, slot), 1), 0xD61F0220},
          slot};
  const written_registers found = written_by(reinterpret_cast<const unsigned char*>(page.code));
  EXPECT_EQ(found.x, bit(16) | bit(17));
  EXPECT_EQ(found.v, bit(9));
  page.code[4] = 0xD61F0200;
  EXPECT_EQ(written_by(reinterpret_cast<const unsigned char*>(page.code)), all_registers) << "br x16";
}

}  // namespace
}  // namespace quern
