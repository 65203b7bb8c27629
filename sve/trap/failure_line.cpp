// "Error: failed to emulate SVE instruction 0x%08x at PC %p\n"
#include "sve/trap/failure_line.h"

#include <string_view>

namespace quern {
namespace {

char* put(char* at, std::string_view text) { return at + text.copy(at, text.size()); }

char* put_hex(char* at, std::uint64_t value, int least_digits) {
  int digits = least_digits;
  while (digits < 16 && value >> (4 * digits) != 0) ++digits;
  for (int i = digits; i-- != 0;) *at++ = "0123456789abcdef"[value >> (4 * i) & 15];
  return at;
}

}  // namespace

failure_line::failure_line(std::uint32_t word, const void* pc) {
  char* at = put(text, "Error: failed to emulate SVE instruction 0x");
  at = put_hex(at, word, 8);
  at = put(at, " at PC 0x");
  at = put_hex(at, reinterpret_cast<std::uintptr_t>(pc), 1);
  *put(at, "\n") = '\0';
}

}  // namespace quern
