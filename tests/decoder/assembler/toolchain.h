// The AArch64 assembler and disassembler as judges: what a word says, and whether base SVE has it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace quern::test {

// A folder for the two programs' files, removed with the object.
class scratch_folder {
 public:
  scratch_folder();
  ~scratch_folder();
  scratch_folder(const scratch_folder&) = delete;
  scratch_folder& operator=(const scratch_folder&) = delete;
  std::filesystem::path file(const char* name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// Each word as one line of assembly without aliases ("orr z0.d, z1.d, z1.d", never "mov"), or an empty string when no
// extension that the disassembler knows has it. One run of the disassembler.
std::vector<std::string> disassemble(std::span<const std::uint32_t> words);

// For each line, whether the assembler takes it for that architecture ("armv8.2-a+sve+bf16"). Empty lines are
// not taken. One run of the assembler.
std::vector<bool> assembles_for(const char* architecture, std::span<const std::string> lines);

inline std::vector<bool> assembles_as_base_sve(std::span<const std::string> lines) {
  return assembles_for("armv8-a+sve", lines);
}

}  // namespace quern::test
