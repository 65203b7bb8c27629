// Runs the assembler and the disassembler, and reads what they say.
#include "toolchain.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace quern::test {
namespace {

// Runs a command of the shell and hands on each line that it prints, without the line's end.
void for_each_line_of(const std::string& command, const std::function<void(std::string_view)>& take) {
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run: " + command);
  char* line = nullptr;
  std::size_t capacity = 0;
  for (ssize_t size; (size = getline(&line, &capacity, pipe)) > 0;) {
    std::string_view text(line, static_cast<std::size_t>(size));
    if (text.ends_with('\n')) text.remove_suffix(1);
    take(text);
  }
  std::free(line);
  if (pclose(pipe) == -1) throw std::runtime_error("lost: " + command);
}

// "   1c:\t04200000 \tadd\tz0.b, z0.b, z0.b" is one instruction; its text has blanks for tabs and no remarks.
std::string instruction_of(std::string_view columns) {
  if (columns.starts_with(".inst")) return {};
  std::string text(columns.substr(0, columns.find("//")));
  while (text.ends_with(' ') || text.ends_with('\t')) text.pop_back();
  for (char& c : text)
    if (c == '\t') c = ' ';
  return text;
}

}  // namespace

scratch_folder::scratch_folder() {
  std::string pattern = std::filesystem::temp_directory_path() / "quern-assembler-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a folder like " + pattern);
  path_ = pattern;
}

scratch_folder::~scratch_folder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> disassemble(std::span<const std::uint32_t> words) {
  const scratch_folder folder;
  const auto path = folder.file("words.bin");
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(words.size_bytes()));

  std::vector<std::string> lines;
  lines.reserve(words.size());
  const auto take = [&](std::string_view line) {
    const std::size_t word_at = line.find(":\t"), text_at = line.find('\t', word_at + 2);
    if (word_at == std::string_view::npos || text_at == std::string_view::npos) return;
    const auto word = std::strtoul(std::string(line.substr(word_at + 2, 8)).c_str(), nullptr, 16);
    if (lines.size() == words.size() || word != words[lines.size()])
      throw std::runtime_error("the disassembler lost its place: " + std::string(line));
    lines.push_back(instruction_of(line.substr(text_at + 1)));
  };
  for_each_line_of("'" QUERN_OBJDUMP "' -D -z -b binary -m aarch64 -EL -M no-aliases '" + path.string() + "'", take);
  if (lines.size() != words.size()) throw std::runtime_error("the disassembler ('" QUERN_OBJDUMP "') stopped early");
  return lines;
}

std::vector<bool> assembles_for(const char* architecture, std::span<const std::string> lines) {
  const scratch_folder folder;
  const auto path = folder.file("lines.s");
  {
    std::ofstream source(path);
    for (const std::string& line : lines) source << line << '\n';
  }

  std::vector<bool> taken;
  for (const std::string& line : lines) taken.push_back(!line.empty());
  const auto take = [&](std::string_view message) {  // "FILE:LINE: Error: ..."; warnings are no matter
    if (!message.starts_with(path.string() + ":") || message.find(": Error: ") == std::string_view::npos) return;
    const auto line = std::strtoul(std::string(message.substr(path.string().size() + 1, 12)).c_str(), nullptr, 10);
    if (line == 0 || line > taken.size()) throw std::runtime_error("the assembler says: " + std::string(message));
    taken[line - 1] = false;
  };
  const auto object = folder.file("lines.o").string();
  for_each_line_of(
      std::string("'" QUERN_AS "' -march=") + architecture + " -o '" + object + "' '" + path.string() + "' 2>&1", take);
  return taken;
}

}  // namespace quern::test
