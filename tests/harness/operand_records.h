// Operand records as thunks make them.
#pragma once

#include <cstdint>

#include "sve/state/operands.h"

namespace quern {

constexpr aarch64_z_reg z_reg(std::uint32_t num, std::uint32_t size) { return {num, size, z_none, z_none}; }
constexpr aarch64_p_reg p_reg(std::uint32_t num, std::uint32_t size_or_qualifier) {
  return {num, size_or_qualifier, p_none, p_none};
}
constexpr aarch64_i_reg x_reg(std::uint32_t num) { return {num, size_x, i_none, i_none}; }
constexpr aarch64_i_reg w_reg(std::uint32_t num) { return {num, size_w, i_none, i_none}; }
constexpr aarch64_i_rsp_reg x_or_sp(std::uint32_t num) { return {num, size_x}; }

// Qualifiers that governing predicates can come with. Handlers that serve both merging and zeroing look for zeroing
// alone: under any other code inactive lanes keep their old value.
inline constexpr std::uint32_t every_qualifier[] = {p_zeroing, p_merging, p_unqualified, p_none, 0};

// Destination and source at once.
constexpr aarch64_z_reg z_both(std::uint32_t num, std::uint32_t size) { return {num, z_none, size, size}; }
constexpr aarch64_p_reg p_both(std::uint32_t num, std::uint32_t size) { return {num, p_none, size, size}; }
constexpr aarch64_i_reg x_both(std::uint32_t num) { return {num, i_none, size_x, size_x}; }
constexpr aarch64_i_reg w_both(std::uint32_t num) { return {num, i_none, size_w, size_w}; }

}  // namespace quern
