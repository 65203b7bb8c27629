// Counted accesses as text for people, in 80 columns.
#pragma once

#include <cstddef>
#include <string>

#include "tools/stats_table.h"

namespace quern {

void print_stats_text(const stats_table& table, stats_key by, std::size_t top);

// A row's name, and its source, cut in the midst to `width` letters.
std::string row_text(const stats_row& row, std::size_t width);

std::uint64_t bytes_of(const access_stats& stats);

}  // namespace quern
