// The blocks that the client makes, instruction by instruction.
#include "sve/client/block_rewriting.h"
#include "client_test.h"
#include "sve/client/emulate_instruction.h"
#include "sve/decoder/sve_utils.h"

namespace quern {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

using lines = std::vector<std::string>;

std::string number(std::size_t n) { return std::to_string(n); }
std::string field(std::size_t offset) { return "[x27, #" + number(offset) + "]"; }
std::string vector_field(std::size_t n) { return "q" + number(n) + ", " + field(320 + n * VL_BYTES); }
std::string pair_field(std::size_t n) { return "x" + number(n) + ", x" + number(n + 1) + ", " + field(8 * n); }

lines moves_to_state() {
  lines moves{"add x26, sp, #0, lsl, #0", "str x26, " + field(248)};
  for (std::size_t n = 0; n < 26; n += 2) moves.push_back("stp " + pair_field(n));
  moves.push_back("stp " + pair_field(29));
  for (std::size_t n = 0; n < 32; ++n) moves.push_back("str " + vector_field(n));
  moves.insert(moves.end(), {"mrs x26, nzcv", "str x26, " + field(264), "mrs x26, fpsr", "str w26, " + field(272)});
  return moves;
}

lines moves_from_state() {
  lines moves{"ldr w26, " + field(272), "msr fpsr, x26", "ldr x26, " + field(264), "msr nzcv, x26"};
  for (std::size_t n = 0; n < 32; ++n) moves.push_back("ldr " + vector_field(n));
  for (std::size_t n = 0; n < 26; n += 2) moves.push_back("ldp " + pair_field(n));
  moves.push_back("ldp " + pair_field(29));
  moves.insert(moves.end(), {"ldr x26, " + field(248), "add sp, x26, #0, lsl, #0"});
  return moves;
}

lines operator+(lines a, const lines& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

lines bracket() {
  return lines{"emulation_start", "save x26, slot 1", "save x27, slot 2",
               "get_stolen x27",  "save x27, slot 3", "read_tls x27"} +
         moves_to_state() + lines{"call", "read_tls x27"} + moves_from_state() +
         lines{"restore x27, slot 3", "set_stolen x27", "restore x27, slot 2", "restore x26, slot 1", "emulation_end"};
}

lines fpcr_prefix(const std::string& scratch, const std::string& low_half) {
  return {"save " + scratch + ", slot 3", "read_tls " + scratch, "str " + low_half + ", [" + scratch + ", #276]",
          "restore " + scratch + ", slot 3"};
}

struct BlockRewriting : client_test {
  BlockRewriting() { start(); }

  const instr_t* find(instr_t::meta kind) const {
    const instr_t* instr = block.first;
    while (instr != nullptr && instr->kind != kind) instr = instr->next;
    return instr;
  }
};

TEST_F(BlockRewriting, AnEmptyBlockStaysEmpty) {
  EXPECT_EQ(rewrite(), DR_EMIT_DEFAULT);
  EXPECT_EQ(block.first, nullptr);
}

TEST_F(BlockRewriting, ABlockOfLabelsStays) {
  append(word_nop);
  instr_t* const nop = block.first;
  drmgr_insert_emulation_end(framework.drcontext(), &block, nop);
  instrlist_remove(&block, nop);
  instr_destroy(framework.drcontext(), nop);
  EXPECT_EQ(rewrite(), DR_EMIT_DEFAULT);
  EXPECT_THAT(text(block), ElementsAre("emulation_end"));
}

TEST_F(BlockRewriting, OtherInstructionsStay) {
  append(word_nop);
  append(word_nop);
  EXPECT_EQ(rewrite(), DR_EMIT_DEFAULT);
  EXPECT_THAT(text(block), ElementsAre("native", "native"));
}

TEST_F(BlockRewriting, EachWayHas52Moves) {
  EXPECT_EQ(moves_to_state().size(), 52u);
  EXPECT_EQ(moves_from_state().size(), 52u);
}

TEST_F(BlockRewriting, AnEmulatedInstructionBecomesABracket) {
  append(word_nop);
  append(word_add_b);
  append(word_nop);
  EXPECT_EQ(rewrite(), DR_EMIT_DEFAULT);
  EXPECT_EQ(text(block), lines{"native"} + bracket() + lines{"native"});
}

TEST_F(BlockRewriting, TheWalkSurvivesALastInstructionThatIsReplaced) {
  append(word_add_b);
  rewrite();
  EXPECT_EQ(text(block), bracket());
}

TEST_F(BlockRewriting, InstructionsInARowHaveABracketEach) {
  append(word_add_b);
  append(word_add_d);
  rewrite();
  EXPECT_EQ(text(block), bracket() + bracket());
}

TEST_F(BlockRewriting, MovesAreTheApplicationsAndTranslateToTheReplacedInstruction) {
  append(word_add_b);
  unsigned char* const pc = block.first->translation;
  rewrite();
  int moves = 0;
  for (const instr_t* instr = block.first; instr != nullptr; instr = instr->next) {
    if (instr->kind != instr_t::not_meta) continue;
    EXPECT_EQ(instr->translation, pc) << text(*instr);
    ++moves;
  }
  EXPECT_EQ(moves, 104);
}

TEST_F(BlockRewriting, TheCallHasWordAddressAndHandler) {
  append(word_add_d);
  unsigned char* const pc = block.first->translation;
  rewrite();
  const instr_t& call = *find(instr_t::clean_call);
  EXPECT_EQ(call.callee, reinterpret_cast<void*>(emulate_instruction));
  ASSERT_EQ(call.srcs.size(), 3u);
  EXPECT_EQ(call.srcs[0].value, std::int64_t{word_add_d});
  EXPECT_EQ(call.srcs[1].value, reinterpret_cast<std::int64_t>(pc));
  EXPECT_EQ(call.srcs[2].value, reinterpret_cast<std::int64_t>(get_sve_handler(word_add_d)));
  EXPECT_EQ(call.srcs[0].size, OPSZ_4);
  EXPECT_EQ(call.srcs[1].size, OPSZ_8);
  EXPECT_EQ(call.srcs[2].size, OPSZ_8);
}

// The handler comes from the block's bytes; the call's word is read from the application's memory.
TEST_F(BlockRewriting, TheCallsWordIsReadAfresh) {
  append(word_add_d);
  unsigned char* const pc = block.first->translation;
  block.first->raw_bits = application_word(word_add_b);
  rewrite();
  const instr_t& call = *find(instr_t::clean_call);
  EXPECT_EQ(call.srcs[0].value, std::int64_t{word_add_d});
  EXPECT_EQ(call.srcs[1].value, reinterpret_cast<std::int64_t>(pc));
  EXPECT_EQ(call.srcs[2].value, reinterpret_cast<std::int64_t>(get_sve_handler(word_add_b)));
}

TEST_F(BlockRewriting, TheMarkerTellsOfTheReplacedInstruction) {
  append(word_add_b);
  unsigned char* const pc = block.first->translation;
  rewrite();
  const emulated_instr_t& record = find(instr_t::emulation_start)->emulated;
  EXPECT_EQ(record.size, 24u);
  EXPECT_EQ(record.pc, pc);
  EXPECT_EQ(record.instr->raw_bits, pc);
  EXPECT_EQ(record.instr->raw_length, 4u);
  EXPECT_TRUE(record.instr->raw_valid);
}

TEST_F(BlockRewriting, TheReplacedInstructionIsDestroyedAndTheMarkerIsTheFrameworks) {
  append(word_add_b);
  rewrite();
  framework.clear(block);
  EXPECT_EQ(framework.live_instructions(), 0u);
}

TEST_F(BlockRewriting, ABlockBuiltAgainHasTheSameShape) {
  const auto build = [&](bool translating) {
    framework.clear(block);
    for (const std::uint32_t word : {word_nop, word_add_b}) append(word);
    append_msr(DR_REG_FPCR, DR_REG_X22);
    append(word_add_d);
    rewrite(translating);
    return text(block);
  };
  EXPECT_EQ(build(false), build(true));
}

TEST_F(BlockRewriting, AnotherStolenRegisterAborts) {
  append(word_add_b);
  framework.stolen_register = DR_REG_X29;
  EXPECT_THROW(rewrite(), aborted);
  EXPECT_THAT(framework.error_stream,
              MatchesRegex("ASSERT FAILURE: .*:[0-9]+: dr_get_stolen_reg\\(\\) == DR_REG_X28 \\(\\)\n"));
}

TEST_F(BlockRewriting, ABlockWithoutEmulatedInstructionsTakesAnyStolenRegister) {
  append(word_nop);
  framework.stolen_register = DR_REG_X29;
  EXPECT_NO_THROW(rewrite());
}

// The two reads of a bracket and the one of an FPCR prefix.
TEST_F(BlockRewriting, AReadOfThreadLocalStorageThatFailsAborts) {
  for (const int failing : {0, 1, 2}) {
    framework.clear(block);
    append(word_add_b);
    append_msr(DR_REG_FPCR, DR_REG_X3);
    framework.error_stream.clear();
    framework.tls_reads = 0;
    framework.failing_tls_read = failing;
    EXPECT_THROW(rewrite(), aborted) << failing;
    EXPECT_EQ(framework.tls_reads, failing + 1);
    EXPECT_THAT(framework.error_stream, MatchesRegex("ASSERT FAILURE: .*:[0-9]+: false \\(\\)\n"));
  }
}

TEST_F(BlockRewriting, AWriteOfFpcrIsCopiedAndStays) {
  const struct {
    reg_id_t source;
    const char *scratch, *low_half;
  } cases[]{
      {DR_REG_X0, "x21", "w0"},   {DR_REG_X3, "x21", "w3"},   {DR_REG_X21, "x22", "w21"}, {DR_REG_X22, "x21", "w22"},
      {DR_REG_X28, "x21", "w28"}, {DR_REG_X30, "x21", "w30"}, {DR_REG_XZR, "x21", "wzr"},
  };
  for (const auto& [source, scratch, low_half] : cases) {
    framework.clear(block);
    append_msr(DR_REG_FPCR, source);
    unsigned char* const pc = block.first->translation;
    const std::string itself = text(*block.first);
    rewrite();
    EXPECT_EQ(text(block), fpcr_prefix(scratch, low_half) + lines{itself});
    EXPECT_EQ(block.first->next->next->translation, pc);
  }
}

TEST_F(BlockRewriting, WritesOfOtherSystemRegistersAndReadsOfFpcrStayAlone) {
  append_msr(DR_REG_NZCV, DR_REG_X3);
  append_msr(DR_REG_FPSR, DR_REG_X3);
  framework.append(block, application_word(word_nop), OP_mrs, {opnd_create_reg(DR_REG_X3)},
                   {opnd_create_reg(DR_REG_FPCR)});
  rewrite();
  EXPECT_THAT(text(block), ElementsAre("msr nzcv, x3", "msr fpsr, x3", "mrs x3, fpcr"));
}

TEST_F(BlockRewriting, AMixedBlock) {
  append(word_nop);
  append(word_add_b);
  append_msr(DR_REG_FPCR, DR_REG_X3);
  append(word_nop);
  rewrite();
  const lines write_of_fpcr = fpcr_prefix("x21", "w3") + lines{"msr fpcr, x3"};
  EXPECT_EQ(text(block), lines{"native"} + bracket() + write_of_fpcr + lines{"native"});
}

// The framework goes on at the first instruction that was cut off, with a new block.
TEST_F(BlockRewriting, ALongBlockIsCutAfterTheLastReplacementThatFits) {
  lines expected;
  for (int i = 0; i < max_replacements; ++i) {
    append(word_add_b);
    expected = expected + bracket();
  }
  const std::size_t kept_whole = text(block).size();
  for (int i = 0; i < 3; ++i) append(word_add_b);
  append(word_nop);
  rewrite();
  EXPECT_EQ(kept_whole, 16u);
  EXPECT_EQ(text(block), expected);
  framework.clear(block);
  EXPECT_EQ(framework.live_instructions(), 0u);
}

TEST_F(BlockRewriting, ABlockWithAsManyReplacementsAsFitIsWhole) {
  for (int i = 0; i < max_replacements; ++i) append(word_add_b);
  rewrite();
  int brackets = 0;
  for (const std::string& line : text(block)) brackets += line == "call";
  EXPECT_EQ(brackets, max_replacements);
}

}  // namespace
}  // namespace quern
