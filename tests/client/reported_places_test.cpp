// What the client tells quern run: the places of instructions, emulated or not, and where a fault may have ended the
// program.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "client_test.h"
#include "sve/client/emulate_instruction.h"
#include "sve/decoder/sve_utils.h"
#include "sve/report/place_report.h"

namespace quern {
namespace {

constexpr std::uint32_t word_sqdmlalb = 0x44826020;  // of SVE2
constexpr std::uint32_t word_udf = 0, word_svc = 0xD4000001;

// A report as quern run makes it, and a client that finds it.
struct ReportedPlaces : client_test {
  place_report* report = nullptr;

  ReportedPlaces() {
    std::string path = testing::TempDir() + "report.XXXXXX";
    const int file = mkstemp(path.data());
    EXPECT_EQ(ftruncate(file, sizeof *report), 0);
    report = static_cast<place_report*>(mmap(nullptr, sizeof *report, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
    close(file);
    setenv(place_report_variable, path.c_str(), 1);
    start_thread();
    unlink(path.c_str());
  }
  ~ReportedPlaces() override {
    framework.thread_exit(framework.drcontext());
    unsetenv(place_report_variable);
    start();  // without a report, for the tests that follow
    munmap(report, sizeof *report);
    EXPECT_EQ(framework.live_modules, 0);
  }

  const reported_place* only_place() const {
    const reported_place* found = nullptr;
    for (const reported_place& place : report->places) {
      if (place.key == 0) continue;
      if (found != nullptr) return nullptr;
      found = &place;
    }
    return found;
  }

  void emulate(unsigned char* pc, std::uint32_t word) { emulate_instruction(word, pc, get_sve_handler(word)); }

  void signal(int number, unsigned char* pc) {
    dr_mcontext_t context{.pc = pc};
    dr_siginfo_t info{number, framework.drcontext(), &context};
    EXPECT_EQ(framework.signal(framework.drcontext(), &info), DR_SIGNAL_DELIVER);
  }
};

TEST_F(ReportedPlaces, CountEmulatedInstructionsIfAskedTo) {
  unsigned char* const pc = application_word(word_add_b);
  emulate(pc, word_add_b);
  EXPECT_EQ(only_place(), nullptr);
  report->counts_emulated = true;
  for (int i = 0; i != 3; ++i) emulate(pc, word_add_b);
  const reported_place* const place = only_place();
  ASSERT_NE(place, nullptr);
  EXPECT_EQ(place->count, 3u);
  EXPECT_EQ(place->word, word_add_b);
  EXPECT_EQ(place->offset, reinterpret_cast<std::uint64_t>(pc));
  EXPECT_EQ(place->module, 0);
  EXPECT_TRUE(place->is_emulated);
}

// The program's own path is empty.
TEST_F(ReportedPlaces, AreToldByTheirModules) {
  report->counts_emulated = true;
  unsigned char* const first = application_word(word_add_b);
  unsigned char* const second = application_word(word_add_d);
  framework.modules = {{first - 64, first + 4, "/bin/program"}, {second, second + 4, "/lib/library.so"}};
  emulate(first, word_add_b);
  emulate(second, word_add_d);
  std::map<std::uint64_t, std::string> paths;  // by the places' offsets
  for (const reported_place& place : report->places)
    if (place.key != 0) paths[place.offset] = report->modules[place.module - 1].path;
  EXPECT_THAT(paths, testing::ElementsAre(testing::Pair(0, "/lib/library.so"), testing::Pair(64, "")));
}

TEST_F(ReportedPlaces, CountWordsThatCannotBeEmulated) {
  unsigned char* const pc = application_word(word_sqdmlalb);
  for (int i = 0; i != 2; ++i) signal(SIGILL, pc);
  const reported_place* const place = only_place();
  ASSERT_NE(place, nullptr);
  EXPECT_EQ(place->count, 2u);
  EXPECT_EQ(place->word, word_sqdmlalb);
  EXPECT_FALSE(place->is_emulated);
}

// The line that tells it is printed at a place's first; with --stats it counts as not emulated all the same.
TEST_F(ReportedPlaces, TellOfAFailedEmulationOnceAPlace) {
  const auto failing = [](cpu_state*, unsigned int) { return DECODE_UNIMPLEMENTED; };
  unsigned char* const pc = application_word(word_add_b);
  char line[128];
  std::snprintf(line, sizeof line, "Error: failed to emulate SVE instruction 0x%08x at PC %p\n", word_add_b,
                static_cast<void*>(pc));
  for (const bool counts_emulated : {false, true}) {
    report->counts_emulated = counts_emulated;
    testing::internal::CaptureStderr();
    for (int i = 0; i != 3; ++i) emulate_instruction(word_add_b, pc, failing);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), counts_emulated ? "" : line);
  }
  const reported_place* const place = only_place();
  ASSERT_NE(place, nullptr);
  EXPECT_EQ(place->count, 6u);
  EXPECT_EQ(place->word, word_add_b);
  EXPECT_FALSE(place->is_emulated);
  unsigned char* const other = application_word(word_add_d);
  testing::internal::CaptureStderr();
  emulate_instruction(word_add_d, other, failing);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

// Of another process that has come first, and whose number has the same low bits.
TEST_F(ReportedPlaces, AreApartInProcessesWhoseNumbersEndAlike) {
  report->counts_emulated = true;
  const auto self = static_cast<std::uint32_t>(getpid());
  report->processes[self % place_report::most_processes] = self + place_report::most_processes;
  unsigned char* const pc = application_word(word_add_b);
  for (int i = 0; i != 2; ++i) emulate(pc, word_add_b);
  const std::uint32_t index = (self + 1) % place_report::most_processes;
  ASSERT_NE(only_place(), nullptr);
  EXPECT_EQ(only_place()->key >> 48, index);
  EXPECT_EQ(report->processes[index], self);
}

TEST_F(ReportedPlaces, AreLostInAProcessTooMany) {
  report->counts_emulated = true;
  for (auto& process : report->processes) process = static_cast<std::uint32_t>(getpid()) + 1;
  emulate(application_word(word_add_b), word_add_b);
  EXPECT_EQ(only_place(), nullptr);
  EXPECT_EQ(report->lost, 1u);
}

TEST_F(ReportedPlaces, LeaveOtherSignalsOut) {
  report->is_strict = true;
  signal(SIGILL, application_word(word_udf));
  signal(SIGILL, application_word(word_add_b));  // sent while it was about to begin
  signal(SIGUSR1, application_word(word_sqdmlalb));
  framework.failing = {"dr_safe_read"};
  signal(SIGILL, application_word(word_sqdmlalb));
  EXPECT_EQ(only_place(), nullptr);
}

TEST_F(ReportedPlaces, EndAStrictProgramAtTheFirstThatCannotBeEmulated) {
  report->is_strict = true;
  unsigned char* const pc = application_word(word_sqdmlalb);
  int status = 0;
  try {
    signal(SIGILL, pc);
  } catch (const exited& end) {
    status = end.status;
  }
  EXPECT_EQ(status, 125);
  EXPECT_NE(only_place(), nullptr);
}

TEST_F(ReportedPlaces, TellOfTheLastFault) {
  unsigned char* const pc = application_word(word_nop);
  framework.modules = {{pc - 16, pc + 16, "/bin/program"}};
  for (const int number : {SIGFPE, SIGILL, SIGBUS, SIGSEGV}) {
    signal(number, pc);
    EXPECT_EQ(report->death.key, static_cast<std::uint64_t>(getpid()));
    EXPECT_EQ(report->death.offset, 16u);
    EXPECT_EQ(report->death_signal, static_cast<std::uint32_t>(number));
  }
  signal(SIGTERM, pc + 4);
  EXPECT_EQ(report->death.offset, 16u);
  application_word(word_svc);
  signal(SIGSEGV, application_word(word_nop));  // sent by the program
  EXPECT_EQ(report->death.offset, 16u);
}

}  // namespace
}  // namespace quern
