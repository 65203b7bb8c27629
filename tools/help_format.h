// The help of the commands at 80 columns.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace quern {

// Breaks the lines that are too long: those of a list are set in to its second column.
class help_format : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

}  // namespace quern
