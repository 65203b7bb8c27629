// Options of commands whose value is a number.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/trace_filter.h"
#include "tools/user_error.h"

namespace quern {

// Adds an option whose value is such a number. (CLI11 takes "-1" for the greatest.)
template <class Number>
void add_number_option(CLI::App& command, const std::string& name, Number& number, const std::string& what) {
  const auto take = [name, &number](const std::string& text) {
    const std::optional<std::uint64_t> value = parse_number(text);
    if (!value) throw user_error{name + ": '" + text + "' is no number", status_usage};
    number = *value;
  };
  command.add_option_function<std::string>(name, take, what)->type_name("NUMBER");
}

}  // namespace quern
