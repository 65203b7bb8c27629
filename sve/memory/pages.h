// Pages of application memory: their bytes are accessible all or not at all.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quern {

// Whatever the host's page size, no host has smaller pages.
inline constexpr std::uint64_t smallest_page = 4096;

inline constexpr std::uint64_t page_of(std::uint64_t address) { return address & ~(smallest_page - 1); }

// Bytes from `address` to the end of its page.
inline constexpr std::size_t left_in_page(std::uint64_t address) {
  return smallest_page - (address - page_of(address));
}

// Whether so many bytes from `address` on lie in one page.
inline constexpr bool is_in_page(std::uint64_t address, std::size_t bytes) {
  return address - page_of(address) <= smallest_page - bytes;
}

}  // namespace quern
