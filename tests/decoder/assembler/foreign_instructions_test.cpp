// Are the instructions that are not emulated called by their names? The disassembler says what they are.
#include "tools/foreign_instructions.h"

#include <gtest/gtest.h>

#include <map>

#include "sampling.h"
#include "sve/decoder/sve_utils.h"
#include "sve/decoder/vector_space.h"
#include "toolchain.h"

namespace quern::test {
namespace {

std::string mnemonic_of(const std::string& line) { return line.substr(0, line.find(' ')); }

// Each form's words are that instruction or undefined, and of each form there are some.
TEST(ForeignInstructions, EachFormIsTheInstructionThatItIsCalled) {
  word_source random(2);
  for (const foreign_instruction& form : foreign_instructions()) {
    auto words = words_of_pattern(form.mask, form.value, 40, random);
    std::erase_if(words, [](std::uint32_t word) { return get_sve_handler(word) != nullptr; });
    const auto lines = disassemble(words);
    std::size_t defined = 0;
    for (std::size_t i = 0; i != words.size(); ++i) {
      if (lines[i].empty()) continue;
      ++defined;
      EXPECT_EQ(mnemonic_of(lines[i]), form.mnemonic) << std::hex << words[i] << ": " << lines[i];
    }
    EXPECT_GT(defined, 0u) << "no word that is not emulated is " << form.mnemonic;
  }
}

// What is not emulated and is defined has a name, the disassembler's.
TEST(ForeignInstructions, EachDefinedVectorWordThatIsNotEmulatedHasItsName) {
  word_source random(9);
  std::vector<std::uint32_t> words;
  while (words.size() != 500'000) {
    const auto word = static_cast<std::uint32_t>(random());
    if (is_vector_word(word) && get_sve_handler(word) == nullptr) words.push_back(word);
  }
  const auto lines = disassemble(words);
  std::size_t named = 0, disagreements = 0;
  for (std::size_t i = 0; i != words.size(); ++i) {
    if (lines[i].empty()) continue;
    const foreign_instruction* const form = find_foreign(words[i]);
    ++named;
    if (form != nullptr && form->mnemonic == mnemonic_of(lines[i])) continue;
    if (++disagreements > 20) continue;
    ADD_FAILURE() << std::hex << words[i] << " is " << lines[i] << ", not "
                  << (form == nullptr ? "unknown" : form->mnemonic);
  }
  EXPECT_EQ(disagreements, 0u);
  EXPECT_GT(named, words.size() / 20);
}

// The assembler takes a form with its extension.
TEST(ForeignInstructions, EachFormBelongsToItsExtension) {
  const std::map<std::string_view, std::string> assembler_names{
      {"SVE2", "sve2"},       {"SVE2-AES", "sve2-aes"},         {"SVE2-SHA3", "sve2-sha3"}, {"SVE2-SM4", "sve2-sm4"},
      {"BF16", "sve+bf16"},   {"SVE2-BITPERM", "sve2-bitperm"}, {"I8MM", "sve+i8mm"},       {"F32MM", "sve+f32mm"},
      {"F64MM", "sve+f64mm"}, {"SME", "sme+sme-f64+sme-i64"},
  };
  word_source random(4);
  std::map<std::string_view, std::vector<std::uint32_t>> words;
  for (const foreign_instruction& form : foreign_instructions())
    for (const std::uint32_t word : words_of_pattern(form.mask, form.value, 10, random))
      if (get_sve_handler(word) == nullptr && find_foreign(word) == &form) words[form.extension].push_back(word);
  for (const auto& [extension, some] : words) {
    auto lines = disassemble(some);
    std::erase_if(lines, [](const std::string& line) { return line.empty(); });
    const auto taken = assembles_for(("armv8.2-a+" + assembler_names.at(extension)).c_str(), lines);
    for (std::size_t i = 0; i != lines.size(); ++i) EXPECT_TRUE(taken[i]) << lines[i] << " is not of " << extension;
  }
}

}  // namespace
}  // namespace quern::test
