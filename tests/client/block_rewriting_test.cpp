// The blocks that the client makes, instruction by instruction.
#include "sve/client/block_rewriting.h"
#include "client_test.h"
#include "sve/client/thread_state.h"
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
  return {"emulation_start",    "save x26, slot 1", "save x27, slot 2",    "save x30, slot 3", "mov x26, immediate",
          "ldr x27, [x26, #0]", "blr x27",          "restore x27, slot 2", "emulation_end"};
}

lines shared_code_text() {
  const std::string place = field(offsetof(thread_block, place)), back = field(offsetof(thread_block, return_address));
  return lines{"read_tls x27",        "str x26, " + place, "str x30, " + back,
               "restore x30, slot 3", "get_stolen x26",    "save x26, slot 3"} +
         moves_to_state() + lines{"ldr x0, " + place, "call", "read_tls x27"} + moves_from_state() +
         lines{"restore x26, slot 3", "set_stolen x26", "restore x26, slot 1", "ldr x27, " + back, "br x27"};
}

lines fpcr_prefix(const std::string& scratch, const std::string& low_half) {
  return {"save " + scratch + ", slot 3", "read_tls " + scratch, "str " + low_half + ", [" + scratch + ", #276]",
          "restore " + scratch + ", slot 3"};
}

struct BlockRewriting : client_test {
  BlockRewriting() { start(); }

  // What the block's first bracket gives to the shared code.
  const emulated_place& place() const {
    const instr_t* instr = block.first;
    while (instr->opcode != OP_mov_immediate) instr = instr->next;
    return *reinterpret_cast<const emulated_place*>(instr->srcs.at(0).value);
  }
};

TEST_F(BlockRewriting, TheSharedCodeMovesAllRegistersThereAndBack) {
  start_thread();
  EXPECT_EQ(text(framework.shared_code), shared_code_text());
  for (const instr_t* instr = framework.shared_code.first; instr != nullptr; instr = instr->next)
    EXPECT_NE(instr->kind, instr_t::not_meta) << text(*instr);
  framework.thread_exit(framework.drcontext());
}

TEST_F(BlockRewriting, ThereIsOneSharedCodeForAllThreads) {
  start_thread();
  const app_pc first = shared_code;
  EXPECT_EQ(first, framework.code_memory);
  framework.thread_exit(framework.drcontext());
  framework.thread_init(framework.drcontext());
  EXPECT_EQ(shared_code, first);
  append(word_add_b);
  rewrite();
  EXPECT_EQ(place().shared_code, first);
  framework.clear(block);
  framework.thread_exit(framework.drcontext());
  framework.process_exit();
  EXPECT_EQ(framework.code_memory, nullptr);
  EXPECT_EQ(framework.live_bytes, 0u);
}

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

// The framework does not look into it, but for the load, by which it knows the place of the word.
TEST_F(BlockRewriting, ABracketHasOneInstructionOfTheApplicationsLevel) {
  append(word_add_b);
  const app_pc pc = block.first->translation;
  rewrite();
  for (const instr_t* instr = block.first; instr != nullptr; instr = instr->next) {
    const bool is_load = instr->opcode == OP_ldr;
    EXPECT_EQ(instr->kind == instr_t::not_meta, is_load) << text(*instr);
    EXPECT_EQ(instr->translation, is_load ? pc : nullptr) << text(*instr);
  }
}

TEST_F(BlockRewriting, APlaceHasWordAddressAndHandler) {
  append(word_add_d);
  unsigned char* const pc = block.first->translation;
  rewrite();
  EXPECT_EQ(place().word, word_add_d);
  EXPECT_EQ(place().pc, pc);
  EXPECT_EQ(place().handler, get_sve_handler(word_add_d));
}

// Each differs from the first in one thing; the address of the record is part of the block's shape.
TEST_F(BlockRewriting, APlaceHasOneRecord) {
  unsigned char code[2 * 4096 * 4];
  const sve_handler add = get_sve_handler(word_add_b), other = get_sve_handler(word_add_d);
  const emulated_place first{nullptr, word_add_b, code, add, nullptr};
  const emulated_place* const record = record_of(first);
  for (const emulated_place& different : {emulated_place{nullptr, word_add_d, code, add, nullptr},
                                          emulated_place{nullptr, word_add_b, code + 4, add, nullptr},
                                          emulated_place{nullptr, word_add_b, code + 4096 * 4, add, nullptr},
                                          emulated_place{nullptr, word_add_b, code, other, nullptr}}) {
    const emulated_place* const found = record_of(different);
    EXPECT_NE(found, record);
    EXPECT_TRUE(found->is_same(different));
    EXPECT_EQ(record_of(different), found);
  }
  EXPECT_EQ(record_of(first), record);
}

// The handler comes from the block's bytes; the place's word is read from the application's memory.
TEST_F(BlockRewriting, APlacesWordIsReadAfresh) {
  append(word_add_d);
  unsigned char* const pc = block.first->translation;
  block.first->raw_bits = application_word(word_add_b);
  rewrite();
  EXPECT_EQ(place().word, word_add_d);
  EXPECT_EQ(place().pc, pc);
  EXPECT_EQ(place().handler, get_sve_handler(word_add_b));
}

TEST_F(BlockRewriting, TheMarkerTellsOfTheReplacedInstruction) {
  append(word_add_b);
  unsigned char* const pc = block.first->translation;
  rewrite();
  const emulated_instr_t& record = block.first->emulated;
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

// The two reads of the shared code and the one of an FPCR prefix.
TEST_F(BlockRewriting, AReadOfThreadLocalStorageThatFailsAborts) {
  append_msr(DR_REG_FPCR, DR_REG_X3);
  for (const int failing : {0, 1, 2}) {
    framework.error_stream.clear();
    framework.tls_reads = 0;
    framework.failing_tls_read = failing;
    const auto start_and_rewrite = [&] {
      start_thread();
      rewrite();
    };
    EXPECT_THROW(start_and_rewrite(), aborted) << failing;
    EXPECT_EQ(framework.tls_reads, failing + 1);
    EXPECT_THAT(framework.error_stream, MatchesRegex("ASSERT FAILURE: .*:[0-9]+: false \\(\\)\n"));
    framework.thread_exit(framework.drcontext());
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

// What tells the framework where that is: the last instruction of the application's level.
TEST_F(BlockRewriting, ABlockThatWasCutGoesOnBehindItsLastReplacement) {
  append(word_nop);
  for (int i = 0; i < max_replacements + 1; ++i) append(word_add_b);
  const app_pc place = block.last->previous->raw_bits;
  rewrite();
  const instr_t* last = block.last;
  while (last != nullptr && last->kind != instr_t::not_meta) last = last->previous;
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->translation, place);
}

TEST_F(BlockRewriting, ABlockWithAsManyReplacementsAsFitIsWhole) {
  for (int i = 0; i < max_replacements; ++i) append(word_add_b);
  rewrite();
  int brackets = 0;
  for (const std::string& line : text(block)) brackets += line == "blr x27";
  EXPECT_EQ(brackets, max_replacements);
}

}  // namespace
}  // namespace quern
