// The encodings that the framework's double has for the client's instructions, against the disassembler.
#include <string>
#include <string_view>
#include <utility>

#include "../../decoder/assembler/toolchain.h"
#include "client_test.h"

namespace quern {
namespace {

// An instruction's text as the disassembler spells it: no offset of 0, an addition's amount without its shift.
std::string spelt(const instr_t& instr) {
  constexpr std::pair<std::string_view, std::string_view> spellings[] = {{", #0]", "]"}, {"#0, lsl, #0", "#0x0"}};
  std::string words = text(instr);
  for (const auto& [ours, theirs] : spellings) {
    if (const std::size_t at = words.find(ours); at != std::string::npos) words.replace(at, ours.size(), theirs);
  }
  return words;
}

using Encoding = client_test;

// Every instruction of a bracket and of the shared code, and of the prefixes of a write of FPCR from every register
// that has one of its own.
TEST_F(Encoding, TheDisassemblerReadsWhatWasMeant) {
  start_thread();
  append(word_add_b);
  for (const reg_id_t source : {DR_REG_X0, DR_REG_X21, DR_REG_X22, DR_REG_X30, DR_REG_XZR})
    append_msr(DR_REG_FPCR, source);
  rewrite();
  std::vector<std::uint32_t> words;
  std::vector<std::string> expected;
  for (const instrlist_t* list : {&block, &framework.shared_code})
    for (const instr_t* instr = list->first; instr != nullptr; instr = instr->next) {
      if (instr->kind > instr_t::own_code || instr->opcode == OP_mov_immediate) continue;
      words.push_back(encoding(*instr));
      expected.push_back(spelt(*instr));
    }
  EXPECT_EQ(words.size(), 2 + 104u + 5 + 5 * 2);
  EXPECT_EQ(test::disassemble(words), expected);
  framework.thread_exit(framework.drcontext());
}

}  // namespace
}  // namespace quern
