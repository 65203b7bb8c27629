// Respelling of assembly.
#include "canonical.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace quern::test {
namespace {

void replace_end(std::string& text, std::string_view end, std::string_view by) {
  if (text.ends_with(end)) text.replace(text.size() - end.size(), end.size(), by);
}

// "z3.h" at `at`: the register's number, its suffix, and where it ends; number -1 if there is no vector register there.
struct vector_name {
  int number = -1;
  std::string suffix;
  std::size_t end = 0;
};
vector_name vector_at(const std::string& text, std::size_t at) {
  if (text[at] != 'z' || std::isdigit(static_cast<unsigned char>(text[at + 1])) == 0) return {};
  std::size_t end = at + 1;
  while (end != text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) ++end;
  const int number = std::atoi(text.c_str() + at + 1);
  const std::size_t suffix_end = std::min(text.find_first_of(",-}", end), text.size());
  return {number, text.substr(end, suffix_end - end), suffix_end};
}

// "{z30.h-z1.h}" becomes "{z30.h, z31.h, z0.h, z1.h}".
void write_out_range(std::string& text) {
  const std::size_t open = text.find('{'), dash = text.find('-', open);
  if (open == std::string::npos || dash == std::string::npos || dash > text.find('}', open)) return;
  const vector_name first = vector_at(text, open + 1), last = vector_at(text, dash + 1);
  if (first.number < 0 || last.number < 0 || first.suffix != last.suffix) return;
  std::string list;
  for (int number = (first.number + 1) % 32;; number = (number + 1) % 32) {
    list += ", z" + std::to_string(number) + first.suffix;
    if (number == last.number) break;
  }
  text.replace(dash, last.end - dash, list);
}

// A number after '#' as the shortest text that tells it: whole ones in decimal, others as a double's 17 digits.
void respell_numbers(std::string& text) {
  for (std::size_t at = text.find('#'); at != std::string::npos; at = text.find('#', at + 1)) {
    const std::size_t end = std::min(text.find_first_of(",]", at), text.size());
    const std::string number = text.substr(at + 1, end - at - 1);
    char respelt[40];
    if (number.find('.') != std::string::npos)
      std::snprintf(respelt, sizeof respelt, "%.17gf", std::strtod(number.c_str(), nullptr));
    else if (number.starts_with("0x"))
      std::snprintf(respelt, sizeof respelt, "%llu", std::strtoull(number.c_str(), nullptr, 16));
    else
      std::snprintf(respelt, sizeof respelt, "%lld", std::strtoll(number.c_str(), nullptr, 10));
    text.replace(at + 1, end - at - 1, respelt);
  }
}

// A bit mask repeats its element: "and z0.h, z0.h, #0xff" becomes "and z0.d, z0.d, #0x00ff00ff00ff00ff". The text
// shows the smallest element that repeats, while the word has the mask in 64 bits.
bool widen_bit_mask(std::string& text) {
  const std::string_view mnemonic = std::string_view(text).substr(0, text.find(' '));
  const std::size_t number_at = text.find('#');
  if (mnemonic != "and" && mnemonic != "orr" && mnemonic != "eor" && mnemonic != "dupm") return false;
  if (number_at == std::string::npos) return false;
  const std::size_t dot = text.find('.');
  const unsigned width = 8u << std::string_view("bhsd").find(text[dot + 1]);
  auto mask = std::strtoull(text.c_str() + number_at + 1, nullptr, 0);
  for (unsigned filled = width; filled < 64; filled *= 2) mask |= mask << filled;
  text.replace(number_at + 1, std::string::npos, std::to_string(mask));
  for (std::size_t at = dot; at < number_at; at = text.find('.', at + 1)) text[at + 1] = 'd';
  return true;
}

}  // namespace

std::string canonical(std::string_view assembly) {
  std::string text(assembly);
  write_out_range(text);
  if (!widen_bit_mask(text)) respell_numbers(text);
  replace_end(text, ", #0, mul vl]", "]");
  replace_end(text, ", #0]", "]");
  replace_end(text, ", mul #1", "");
  replace_end(text, ", all", "");
  return text;
}

}  // namespace quern::test
