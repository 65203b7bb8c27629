// quern decode WORD...: what the decoder makes of instruction words.
#include <fmt/core.h>

#include <memory>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "tools/commands.h"

namespace quern {
namespace {

std::uint32_t parse_word(const std::string& text) {
  std::size_t end = 0;
  unsigned long value = 0;
  try {
    value = std::stoul(text, &end, 16);
  } catch (const std::exception&) {
    end = 0;
  }
  if (end == 0 || end != text.size() || text[0] == '-' || value > 0xFFFFFFFF)
    throw user_error{fmt::format("'{}' is not an instruction word: give up to 8 hexadecimal digits", text)};
  return static_cast<std::uint32_t>(value);
}

void print_word(std::uint32_t word) {
  const decoded_word decoded = decode_word(word);
  if (decoded.row == nullptr)
    fmt::print("{:08x}  not emulated\n", word);
  else
    fmt::print("{:08x}  {}  {}  {}\n", word, decoded.row->name.view(), decoded.map->name, decoded.row->handler);
}

}  // namespace

void add_decode_command(CLI::App& app, int&) {
  CLI::App* command = app.add_subcommand("decode", "Show what an instruction word is");
  const auto words = std::make_shared<std::vector<std::string>>();
  command->add_option("WORD", *words, "Instruction words in hexadecimal")->required();
  command->callback([words] {
    for (const std::string& text : *words) print_word(parse_word(text));
  });
}

}  // namespace quern
