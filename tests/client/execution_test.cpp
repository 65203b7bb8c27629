// What rewritten blocks do when they run, with the client's own call-out: on a model of the processor, and on the
// processor itself where it is an AArch64.
#include <gtest/gtest.h>

#include "client_test.h"
#include "machine.h"
#include "sve/client/emulate_instruction.h"
#include "sve/handlers/placeholders.h"

namespace quern {
namespace {

using testing::ElementsAre;

struct processor {
  const char* name;
  run_block* run;
};

void PrintTo(const processor& p, std::ostream* out) { *out << p.name; }

constexpr processor processors[]{
    {"model", run_on_model},
#ifdef __aarch64__
    {"itself", run_on_processor},
#endif
};

struct emulated_thread : client_test {
  cpu_state& state = start_thread();

  ~emulated_thread() override { framework.thread_exit(framework.drcontext()); }
};

struct Execution : emulated_thread, testing::WithParamInterface<processor> {
  machine before = numbered_machine();
  machine after;

  void run_block(const native_effect& native = {}) {
    rewrite();
    after = before;
    GetParam().run(after, block, native);
  }

  // The machine after a block of these words.
  void run(std::initializer_list<std::uint32_t> words) {
    for (const std::uint32_t word : words) append(word);
    run_block();
  }
};

INSTANTIATE_TEST_SUITE_P(processors, Execution, testing::ValuesIn(processors), testing::PrintToStringParamName());

// An add of Z0 alone: nothing but Z0 changes, and in the registers not even that above bit 127.
TEST_P(Execution, AnInstructionChangesItsDestinationOnly) {
  std::memset(state.z, 0, sizeof state.z);
  state.z[0][VL_BYTES - 1] = 0x90;
  run({word_add_b});
  machine expected = before;
  for (unsigned char& byte : expected.q[0]) byte = static_cast<unsigned char>(2 * byte);
  EXPECT_EQ(after, expected);
  if (VL_BYTES > 16) {
    EXPECT_EQ(state.z[0][VL_BYTES - 1], 0x20);
  }
}

TEST_P(Execution, TheRegisterFileHoldsTheWholeMachineDuringTheCall) {
  run({word_add_b});
  for (std::size_t n = 0; n < 31; ++n) EXPECT_EQ(state.x[n], n == 28 ? before.stolen_x28 : before.x[n]) << n;
  EXPECT_EQ(state.sp, before.sp);
  EXPECT_EQ(state.nzcv, before.nzcv);
  EXPECT_EQ(state.fpsr, before.fpsr);
  EXPECT_EQ(state.fpcr, 0xA5A5A5A5u) << "FPCR is not read from the machine";
  for (std::size_t n = 1; n < 32; ++n) EXPECT_EQ(std::memcmp(state.z[n], before.q[n].data(), 16), 0) << n;
}

TEST_P(Execution, SourcesAreReadBeforeTheDestinationChanges) {
  run({word_add_d});
  std::uint64_t lane;
  std::memcpy(&lane, before.q[0].data(), 8);
  lane *= 2;
  EXPECT_EQ(std::memcmp(&lane, after.q[0].data(), 8), 0);
}

TEST_P(Execution, WritesOfX26X27AndX28ReachTheApplication) {
  run({word_rdvl_x26, word_rdvl_x27, word_rdvl_x28});
  machine expected = before;
  expected.x[26] = expected.x[27] = expected.stolen_x28 = VL_BYTES;
  EXPECT_EQ(after, expected);
}

TEST_P(Execution, X28IsTheApplicationsNotTheStolenRegister) {
  run({word_addvl_x0_x28});
  EXPECT_EQ(after.x[0], before.stolen_x28 + VL_BYTES);
}

TEST_P(Execution, AWriteOfSpMovesTheRealOne) {
  run({word_addvl_sp});
  machine expected = before;
  expected.sp -= VL_BYTES;
  EXPECT_EQ(after, expected);
}

// The upper bytes are not zeroed, as the processor's would be.
TEST_P(Execution, ANativeWriteOfAVectorRegisterKeepsTheBytesAboveIt) {
  std::memset(state.z[3], 0x55, VL_BYTES);
  append(0x4F03E6E3);  // movi v3.16b, #0x77
  append(word_add_b);
  run_block([](machine& m) { m.q[3].fill(0x77); });
  for (std::size_t i = 0; i < VL_BYTES; ++i) EXPECT_EQ(state.z[3][i], i < 16 ? 0x77 : 0x55) << i;
}

// Bits that every processor has: the others need not read back.
TEST_P(Execution, AWriteOfFpcrReachesBothTheMachineAndTheRegisterFile) {
  before.x[3] = 0x00C00000;
  before.x[21] = 0x01800000;
  before.x[22] = 0x03000000;
  const struct {
    reg_id_t source;
    std::uint64_t value;
  } cases[]{{DR_REG_X3, before.x[3]}, {DR_REG_X21, before.x[21]}, {DR_REG_X22, before.x[22]}, {DR_REG_XZR, 0}};
  for (const auto& [source, value] : cases) {
    framework.clear(block);
    append_msr(DR_REG_FPCR, source);
    run_block();
    machine expected = before;
    expected.fpcr = value;
    EXPECT_EQ(after, expected);
    EXPECT_EQ(state.fpcr, static_cast<std::uint32_t>(value));
  }
}

// Each register is written by the handler, so that none can keep its value by chance.
TEST_P(Execution, EveryRegisterThatTheHandlerWritesReachesTheApplication) {
  append(word_add_b);
  rewrite();
  instr_t* mov = block.first;
  while (mov->opcode != OP_mov_immediate) mov = mov->next;
  emulated_place place = *reinterpret_cast<const emulated_place*>(mov->srcs.at(0).value);
  mov->srcs.at(0).value = reinterpret_cast<std::int64_t>(&place);
  place.handler = +[](cpu_state* s, unsigned int) {
    for (std::uint64_t n = 0; n < 31; ++n) s->x[n] = 0x5A5A000000000000 + n;
    s->sp += 4096;
    s->nzcv = 0x50000000;
    s->fpsr = 0x13;
    for (std::size_t n = 0; n < 32; ++n) std::memset(s->z[n], static_cast<int>(0x80 + n), VL_BYTES);
    return DECODE_OK;
  };
  after = before;
  GetParam().run(after, block, {});
  machine expected = before;
  for (std::size_t n = 0; n < 31; ++n) (n == 28 ? expected.stolen_x28 : expected.x[n]) = 0x5A5A000000000000 + n;
  expected.sp += 4096;
  expected.nzcv = 0x50000000;
  expected.fpsr = 0x13;
  for (std::size_t n = 0; n < 32; ++n) expected.q[n].fill(static_cast<unsigned char>(0x80 + n));
  EXPECT_EQ(after, expected);
}

struct Emulation : emulated_thread {
  unsigned char* pc = application_word(word_add_b);

  // Standard error's text of one call with this handler, whose word differs from the one in the application's code.
  std::string emulate(sve_handler handler) {
    framework.slots[0] = 126;
    framework.slots[1] = 127;
    framework.slots[2] = 128;
    testing::internal::CaptureStderr();
    emulate_instruction(0x12345678, pc, handler);
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(Emulation, TheHandlerSeesTheSlotsTheAddressAndTheWord) {
  static cpu_state seen;
  static unsigned int seen_word;
  EXPECT_EQ(emulate([](cpu_state* s, unsigned int word) {
              seen = *s;
              seen_word = word;
              s->x[26] = 226;
              s->x[27] = 227;
              s->x[28] = 228;
              return DECODE_OK;
            }),
            "");
  EXPECT_EQ(seen.pc, pc);
  EXPECT_EQ(seen_word, 0x12345678u);
  EXPECT_THAT(std::vector(seen.x + 26, seen.x + 29), ElementsAre(126, 127, 128));
  EXPECT_THAT(framework.slots, ElementsAre(226, 227, 228));
  EXPECT_THAT(framework.calls, ElementsAre("dr_write_saved_reg(1)", "dr_write_saved_reg(2)", "dr_write_saved_reg(3)"));
}

// Each time, as nothing counts them outside of quern run.
TEST_F(Emulation, EachFailureIsReportedWhereNothingCountsThem) {
  const auto failing = [](cpu_state*, unsigned int) { return DECODE_UNIMPLEMENTED; };
  const std::string first = emulate(failing);
  EXPECT_NE(first, "");
  EXPECT_EQ(emulate(failing), first);
}

// The report has the word that is in memory now, not the one of the call.
TEST_F(Emulation, AFailureIsReportedAndTheSlotsAreWrittenBack) {
  char report[128];
  std::snprintf(report, sizeof report, "Error: failed to emulate SVE instruction 0x04200000 at PC %p\n",
                static_cast<void*>(pc));
  EXPECT_EQ(emulate([](cpu_state*, unsigned int) { return DECODE_UNIMPLEMENTED; }), report);
  EXPECT_THAT(framework.slots, ElementsAre(126, 127, 128));
  EXPECT_EQ(framework.calls.size(), 3u);
}

TEST_F(Emulation, APlaceholderReportsTwoLinesAndChangesNoRegister) {
  state.instr_word = 0xFFFFFFFF04200000;
  cpu_state expected = state;
  char report[256];
  std::snprintf(report, sizeof report,
                "Unimplemented instruction: [  %tx:\t 04200000\t sve_fabd_zpz  ]\n"
                "Error: failed to emulate SVE instruction 0x04200000 at PC %p\n",
                reinterpret_cast<std::ptrdiff_t>(pc), static_cast<void*>(pc));
  EXPECT_EQ(emulate([](cpu_state* s, unsigned int) { return sve_fabd_zpz(s); }), report);
  expected.pc = pc;
  expected.x[26] = 126;
  expected.x[27] = 127;
  expected.x[28] = 128;
  EXPECT_EQ(std::memcmp(&state, &expected, sizeof state), 0);
}

}  // namespace
}  // namespace quern
