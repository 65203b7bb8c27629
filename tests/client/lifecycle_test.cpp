// The client's life: start, threads, end, and what it says when an assumption is broken.
#include <unistd.h>

#include <csignal>

#include "client_test.h"
#include "sve/memory/guest_memory.h"
#include "sve/state/vector_length.h"
#include "tests/support/caught_fault.h"
#include "tests/support/mapped_pages.h"

namespace quern {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

using Lifecycle = client_test;

TEST_F(Lifecycle, StartsInOrder) {
  start();
  EXPECT_THAT(
      framework.calls,
      ElementsAre("dr_set_client_name(Zel SVE emulation client)", "drmgr_init", "drmgr_register_thread_init_event",
                  "drmgr_register_thread_exit_event", "dr_register_exit_event", "dr_register_fork_init_event",
                  "drmgr_register_bb_app2app_event(emulate_instruction, 0)", "drmgr_register_kernel_xfer_event",
                  "drmgr_register_signal_event", "drmgr_register_tls_field", "sve_init(0, an_application)",
                  "dr_log(null, 0xFFFFFF, 1, SVE client initializing\n)"));
  EXPECT_EQ(framework.error_stream, "");
}

TEST_F(Lifecycle, TellsTheTraceTheVectorLength) {
  start();
  EXPECT_EQ(framework.told_vector_bytes, std::uint32_t{VL_BYTES});
}

TEST_F(Lifecycle, EndsInOrder) {
  start();
  framework.calls.clear();
  framework.process_exit();
  EXPECT_THAT(framework.calls, ElementsAre("dr_log(null, 0xFFFFFF, 1, SVE client exiting\n)", "sve_exit",
                                           "drmgr_unregister_bb_app2app_event", "drreg_exit", "drmgr_exit"));
}

TEST_F(Lifecycle, AForkedChildHasATraceOfItsOwn) {
  start();
  framework.calls.clear();
  framework.process_fork(framework.drcontext());
  EXPECT_THAT(framework.calls, ElementsAre("quern_trace_forked"));
}

TEST_F(Lifecycle, TwoDashesEndTheArguments) {
  EXPECT_NO_THROW(start({"--"}));
  EXPECT_NO_THROW(start({"--", "-x"}));
  EXPECT_EQ(framework.error_stream, "");
}

TEST_F(Lifecycle, AnyOtherArgumentIsAUsageError) {
  for (const char* argument : {"-x", "x", "---", ""}) {
    framework.error_stream.clear();
    framework.calls.clear();
    EXPECT_THROW(start({argument, "--"}), aborted);
    EXPECT_EQ(framework.error_stream,
              std::string{"SVE emulation client usage error: Unknown option: "} + argument + "\n");
    EXPECT_THAT(framework.calls, ElementsAre(HasSubstr("dr_set_client_name")));
  }
}

// Each check of the start, the last call that it lets through, and the text that it is reported with.
TEST_F(Lifecycle, AFailedStartIsReportedAndAborts) {
  for (const char* call : {"drmgr_init", "drmgr_register_bb_app2app_event", "drmgr_register_kernel_xfer_event",
                           "drmgr_register_signal_event", "drmgr_register_tls_field", "sve_init"}) {
    SCOPED_TRACE(call);
    framework.error_stream.clear();
    framework.calls.clear();
    framework.failing = {call};
    EXPECT_THROW(start(), aborted);
    EXPECT_THAT(framework.calls.back(), HasSubstr(call));
    EXPECT_THAT(framework.error_stream,
                MatchesRegex("ASSERT FAILURE: .*sve/client/sve_client\\.cpp:[0-9]+: false \\(\\)\n"));
  }
}

TEST_F(Lifecycle, AThreadHasARegisterFileUntilItEnds) {
  start_thread();
  EXPECT_GE(framework.live_bytes, sizeof(cpu_state));
  framework.thread_exit(framework.drcontext());
  EXPECT_EQ(framework.live_bytes, 0u);
}

// Wherever the framework's heap has room.
TEST_F(Lifecycle, ARegisterFileBeginsACacheLine) {
  start();
  for (std::size_t offset = 0; offset != 64; offset += 16) {
    framework.heap_offset = offset;
    framework.thread_init(framework.drcontext());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(framework.tls_field) % 64, 0u) << offset;
    framework.thread_exit(framework.drcontext());
    EXPECT_EQ(framework.live_bytes, 0u);
  }
}

// The register file is as the framework's heap gave it.
TEST_F(Lifecycle, ARegisterFileIsNotInitialised) {
  const cpu_state& state = start_thread();
  EXPECT_EQ(state.fpcr, 0xA5A5A5A5u);
  EXPECT_EQ(state.ffr[VL_BYTES - 1], 0xA5);
  framework.thread_exit(framework.drcontext());
}

TEST_F(Lifecycle, AThreadWhoseFieldCannotBeSetAborts) {
  start();
  framework.failing = {"drmgr_set_tls_field"};
  EXPECT_THROW(framework.thread_init(framework.drcontext()), aborted);
  EXPECT_THAT(framework.error_stream, MatchesRegex("ASSERT FAILURE: .*:[0-9]+: false \\(\\)\n"));
  framework.thread_exit(framework.drcontext());
}

TEST_F(Lifecycle, AThreadThatEndsWithANullFieldAborts) {
  start();
  EXPECT_THROW(framework.thread_exit(framework.drcontext()), aborted);
  EXPECT_THAT(framework.error_stream, MatchesRegex("ASSERT FAILURE: .*:[0-9]+: data != __null \\(\\)\n"));
}

TEST_F(Lifecycle, AnEndThatCannotUnregisterSkipsDrreg) {
  start();
  framework.calls.clear();
  framework.failing = {"drmgr_unregister_bb_app2app_event"};
  EXPECT_THROW(framework.process_exit(), aborted);
  EXPECT_EQ(framework.calls.back(), "drmgr_unregister_bb_app2app_event");
  EXPECT_THAT(framework.error_stream, MatchesRegex("ASSERT FAILURE: .*:[0-9]+: false \\(\\)\n"));
}

TEST_F(Lifecycle, AnEndOfDrregThatFailsAborts) {
  start();
  framework.failing = {"drreg_exit"};
  EXPECT_THROW(framework.process_exit(), aborted);
  EXPECT_EQ(framework.calls.back(), "drreg_exit");
  EXPECT_THAT(framework.error_stream, MatchesRegex("ASSERT FAILURE: .*:[0-9]+: false \\(\\)\n"));
}

TEST_F(Lifecycle, MemoryIsAskedOfTheFramework) {
  start();
  EXPECT_EQ(page_size, dr_page_size());
  std::uint64_t value = 0x1122334455667788;
  const auto address = reinterpret_cast<unsigned long>(&value);

  bool fault = false;
  EXPECT_EQ(ReadMemLib8(address, 0, &fault, nullptr), value);
  EXPECT_FALSE(fault);
  EXPECT_TRUE(addr_is_readable(reinterpret_cast<volatile char*>(&value)));

  framework.failing = {"dr_safe_read"};
  EXPECT_EQ(ReadMemLib8(address, 0, &fault, nullptr), 0u);
  EXPECT_TRUE(fault);
  EXPECT_FALSE(addr_is_readable(reinterpret_cast<volatile char*>(&value)));
}

// A page that may be read, yet can't: nothing is behind it.
TEST_F(Lifecycle, ABusErrorIsSurvivedByGuardedReadsOnly) {
  start();
  const mapped_pages pages{page::closed};
  framework.failing = {"dr_safe_read"};
  framework.page_protection = DR_MEMPROT_READ;
  bool fault = false;
  EXPECT_EQ(caught_fault([&] { ReadMemLib1(pages.address(0), 0, &fault, nullptr); }), std::nullopt);
  EXPECT_TRUE(fault);
  EXPECT_EQ(caught_fault([&] { addr_is_readable(reinterpret_cast<volatile char*>(pages.address(0))); }),
            pages.address(0));
}

// The handler that stands from load time on, when the application gets a signal with this code.
void handle(int number, int code) {
  struct sigaction action;
  sigaction(number, nullptr, &action);
  siginfo_t info{};
  info.si_code = code;
  action.sa_sigaction(number, &info, nullptr);
}

constexpr auto message = "^zivra's SVESigHandler caught signal SIG(SEGV|BUS) from the process";

TEST(FatalSignalDeathTest, IsSentAgainWhenItWasSent) {
  for (const int number : {SIGSEGV, SIGBUS}) {
    EXPECT_EXIT(raise(number), testing::KilledBySignal(number), message);
    for (const int code : {SI_USER, SI_QUEUE, SI_TKILL})
      EXPECT_EXIT(handle(number, code), testing::KilledBySignal(number), message);
  }
}

// A fault comes again by itself, with what the kernel has to say of it.
TEST(FatalSignalDeathTest, IsLeftToTheInstructionWhenItWasAFault) {
  for (const int code : std::initializer_list<int>{SEGV_MAPERR, SEGV_ACCERR, SI_KERNEL})
    EXPECT_EXIT((handle(SIGSEGV, code), _exit(0)), testing::ExitedWithCode(0), message);
}

}  // namespace
}  // namespace quern
