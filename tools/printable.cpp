// Telling text from what is none.
#include "tools/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdint>

namespace quern {
namespace {

constexpr bool is_continuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// How many bytes the text's first character takes, or 0 if it is none that may be shown.
std::size_t shown_bytes(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return lead >= 0x20 && lead != 0x7F ? 1 : 0;
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC0 || lead > 0xF4 || text.size() < size) return 0;
  std::uint32_t code = lead & (0xFFu >> (size + 1));
  for (std::size_t i = 1; i != size; ++i) {
    if (!is_continuation(byte(i))) return 0;
    code = code << 6 | (byte(i) & 0x3Fu);
  }
  constexpr std::uint32_t least[] = {0xA0, 0x800, 0x10000};  // below the first are control characters
  const bool is_surrogate = code >= 0xD800 && code < 0xE000;
  return code >= least[size - 2] && code <= 0x10FFFF && !is_surrogate ? size : 0;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t size = shown_bytes(text);
    if (size != 0)
      shown += text.substr(0, size);
    else
      shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(text.front()));
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return shown;
}

}  // namespace quern
