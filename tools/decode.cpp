// quern decode WORD...: what the decoder makes of instruction words.
#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <vector>

#include "tools/assembly/assembly_form.h"
#include "tools/commands.h"
#include "tools/instruction_form.h"

namespace quern {
namespace {

// As much of a text as shows what it is.
std::string beginning(std::string_view text) {
  constexpr std::size_t enough = 40;
  return text.size() <= enough ? std::string(text) : std::string(text.substr(0, enough)) + "...";
}

std::uint32_t parse_word(std::string_view text) {
  std::string_view digits = text;
  if (digits.starts_with("0x") || digits.starts_with("0X")) digits.remove_prefix(2);
  std::uint32_t word = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), word, 16);
  if (digits.empty() || error != std::errc{} || end != digits.data() + digits.size())
    throw user_error{fmt::format("'{}' is not an instruction word: give 1 to 8 hexadecimal digits, as in 04220020 or "
                                 "0x04220020",
                                 beginning(text)),
                     status_usage};
  return word;
}

// The words of the command line, "-" standing for those of standard input.
std::vector<std::uint32_t> words_of(const std::vector<std::string>& arguments) {
  std::vector<std::uint32_t> words;
  for (const std::string& argument : arguments) {
    if (argument != "-") {
      words.push_back(parse_word(argument));
      continue;
    }
    for (std::string text; std::cin >> text;) words.push_back(parse_word(text));
    if (std::ferror(stdin) != 0) throw user_error{fmt::format("can't read standard input: {}", std::strerror(errno))};
  }
  return words;
}

void print_form(std::uint32_t word, const decode_map& map, const decode_row& row) {
  const auto line = [](std::string_view what, std::string_view text) { fmt::print("  {:<10}{}\n", what, text); };
  fmt::print("{:08x}\n", word);
  line("assembly", assembly_of(row, word));
  line("thunk", row.name.view());
  line("map", map.name);
  line("key", fmt::format("{:#x}", static_cast<std::uint32_t>(row.key)));
  line("route", fmt::format("{}{}", route_name(row), moves_fpsr(row) ? ", moves FPSR" : ""));
  line("handler", handler_name(row).empty() ? "none: it does nothing" : handler_name(row));
  for (const operand& op : row.operands) line(op.name, format_operand(op, row.size, word));
}

// Whether the word is an emulated instruction.
bool print_word(std::uint32_t word) {
  const decoded_word decoded = decode_word(word);
  if (decoded.row != nullptr)
    print_form(word, *decoded.map, *decoded.row);
  else
    fmt::print("{:08x}\n  not an emulated instruction\n", word);
  return decoded.row != nullptr;
}

}  // namespace

void add_decode_command(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("decode", "Show what instruction words are, and how they are emulated");
  command->footer("The exit status is 1 if a word is not an emulated instruction.");
  const auto arguments = std::make_shared<std::vector<std::string>>();
  command->add_option("WORD", *arguments, "Instruction words in hexadecimal; - reads them from standard input")
      ->required();
  command->callback([arguments, &status] {
    for (const std::uint32_t word : words_of(*arguments))
      if (!print_word(word)) status = 1;
  });
}

}  // namespace quern
