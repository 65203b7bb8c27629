// Counted accesses for programs: CSV and JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/stats_table.h"

namespace quern {

void print_stats_csv(const stats_table& table, stats_key by, std::size_t top);
void print_stats_json(const stats_table& table, stats_key by, std::size_t top);

// A field of CSV, quoted where it must be.
std::string csv_field(const std::string& text);

nlohmann::ordered_json json_of(const access_stats& stats);
nlohmann::ordered_json json_name(const stats_row& row, stats_key by);

// As JSON text; what is no UTF-8 is replaced.
std::string json_text(const nlohmann::ordered_json& value);

}  // namespace quern
