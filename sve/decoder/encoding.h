// Instruction encodings, written as the published tables draw them, and the keys by which the decode maps find them.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

namespace quern {

// The 32 bits of a form, bit 31 first: '0' and '1' are fixed, a letter is a bit of the field of that name, '-' is a bit
// that the form ignores; blanks only divide. "00000100 zz 1 mmmmm 000 000 nnnnn ddddd" is ADD (vectors, unpredicated).
struct encoding {
  std::uint32_t mask = 0, value = 0;      // the fixed bits: which, and what
  std::uint32_t ignored = 0;              // the '-' bits
  std::array<std::uint32_t, 26> field{};  // the bits of each letter

  consteval encoding(const char* text) {  // NOLINT(google-explicit-constructor): rows give the drawing as text
    int bit = 32;
    for (; *text != '\0'; ++text) {
      if (*text == ' ') continue;
      if (bit-- == 0) throw "the drawing has more than 32 bits";
      const std::uint32_t b = std::uint32_t{1} << bit;
      if (*text == '0' || *text == '1') {
        mask |= b;
        value |= *text == '1' ? b : 0;
      } else if (*text == '-') {
        ignored |= b;
      } else if (*text >= 'a' && *text <= 'z') {
        bits_of(*text) |= b;
      } else {
        throw "the drawing has an unknown character";
      }
    }
    if (bit != 0) throw "the drawing has fewer than 32 bits";
  }

  constexpr std::uint32_t& bits_of(char letter) { return field[static_cast<std::size_t>(letter - 'a')]; }
  constexpr std::uint32_t bits_of(char letter) const { return field[static_cast<std::size_t>(letter - 'a')]; }

  // The same form with the field `letter` fixed at x, whose low bits go to the field's bits from the lowest up.
  constexpr encoding with(char letter, std::uint32_t x) const {
    encoding fixed = *this;
    std::uint32_t rest = bits_of(letter);
    if (rest == 0) throw "the drawing has no such field";
    fixed.mask |= rest;
    for (; rest != 0; rest &= rest - 1, x >>= 1) fixed.value |= (x & 1) != 0 ? rest & -rest : 0;
    if (x != 0) throw "the value is wider than the field";
    fixed.bits_of(letter) = 0;
    return fixed;
  }
};

// The bits of `word` in `mask`, pulled together: the field of a contiguous mask, or the concatenation of its runs.
constexpr std::uint32_t extract(std::uint32_t mask, std::uint32_t word) {
  std::uint32_t field = 0;
  int at = 0;
  while (mask != 0) {
    const int low = std::countr_zero(mask), width = std::countr_one(mask >> low);
    const std::uint32_t ones = width == 32 ? ~0u : (1u << width) - 1;
    field |= (word >> low & ones) << at;
    at += width;
    mask &= ~(ones << low);
  }
  return field;
}

// A map's key: the bit ranges that its name spells, "31_21__15_10", the first range most significant.
class key_bits {
 public:
  constexpr explicit key_bits(std::string_view name) {
    std::array<unsigned, 2 * max_ranges> number{};
    std::size_t count = 0;
    bool in_number = false;
    for (const char c : name) {
      if (c == '_') {
        in_number = false;
        continue;
      }
      if (!in_number) ++count;
      in_number = true;
      number[count - 1] = number[count - 1] * 10 + static_cast<unsigned>(c - '0');
    }
    for (std::size_t i = 0; i != count / 2; ++i) {
      const unsigned width = number[2 * i] - number[2 * i + 1] + 1;
      const std::uint32_t ones = width == 32 ? ~0u : (1u << width) - 1;
      range_[i] = {static_cast<std::uint8_t>(number[2 * i + 1]), static_cast<std::uint8_t>(width % 32), ones};
      mask_ |= ones << number[2 * i + 1];
    }
  }

  // The key of a word, a signed number since the maps are ordered as such: only the whole-word key can be negative.
  constexpr int of(std::uint32_t word) const {
    std::uint32_t key = 0;
    for (const range& r : range_) key = key << r.width | (word >> r.low & r.ones);
    return static_cast<int>(key);
  }

  // The key's bits in the word.
  constexpr std::uint32_t mask() const { return mask_; }

 private:
  static constexpr std::size_t max_ranges = 5;
  struct range {
    std::uint8_t low = 0, width = 0;  // width modulo 32: the whole-word key is one range, shifted onto nothing
    std::uint32_t ones = 0;
  };
  std::array<range, max_ranges> range_{};  // an unused range adds no bits
  std::uint32_t mask_ = 0;
};

}  // namespace quern
