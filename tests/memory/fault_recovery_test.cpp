#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "sve/memory/guest_memory.h"
#include "sve/memory/memory_host.h"
#include "tests/support/mapped_pages.h"

namespace {

using namespace quern;

bool readable(std::uint64_t address) { return addr_is_readable<char>(reinterpret_cast<volatile char*>(address)); }

struct sigaction current_action(int signal) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  return action;
}

TEST(ReadabilityProbe, TellsOpenPagesFromClosedOnes) {
  mapped_pages pages{page::open, page::closed, page::open};
  const std::size_t size = mapped_pages::size();
  struct {
    std::size_t offset;
    bool readable;
  } const cases[] = {{0, true},        {size - 1, true},    {size, false}, {size + 7, false}, {2 * size - 1, false},
                     {2 * size, true}, {3 * size - 1, true}};
  for (const auto& c : cases) EXPECT_EQ(readable(pages.address(c.offset)), c.readable) << "at " << c.offset;
}

TEST(ReadabilityProbe, UnmappedAddressIsNotReadable) {
  std::uint64_t address;
  {
    mapped_pages pages{page::open};
    address = pages.address(0);
    EXPECT_TRUE(readable(address));
  }
  EXPECT_FALSE(readable(address));
  EXPECT_FALSE(readable(0));
}

TEST(ReadabilityProbe, PutsThePreviousActionBack) {
  mapped_pages pages{page::open, page::closed};
  struct sigaction mine {};
  mine.sa_handler = SIG_IGN;
  mine.sa_flags = SA_RESTART;
  struct sigaction old;
  sigaction(SIGSEGV, &mine, &old);
  EXPECT_FALSE(readable(pages.address(mapped_pages::size())));
  EXPECT_EQ(current_action(SIGSEGV).sa_handler, SIG_IGN);
  EXPECT_TRUE(readable(pages.address(0)));
  EXPECT_EQ(current_action(SIGSEGV).sa_handler, SIG_IGN);
  EXPECT_EQ(current_action(SIGSEGV).sa_flags & SA_RESTART, SA_RESTART);
  sigaction(SIGSEGV, &old, nullptr);
}

TEST(Initialisation, InstallsTheHandlerForBothSignalsOnceOnly) {
  EXPECT_EQ(SVEInitialize(), 1);
  for (const int signal : {SIGSEGV, SIGBUS}) {
    const struct sigaction action = current_action(signal);
    EXPECT_EQ(action.sa_sigaction, SVESigHandler);
    EXPECT_EQ(action.sa_flags & 0x50000004, 0x50000004);
    for (int s = 1; s != 32; ++s) EXPECT_FALSE(sigismember(&action.sa_mask, s));
  }
  EXPECT_EQ(cpu_ctxt.vl_units, 2u);
  EXPECT_EQ(ctxt, &cpu_ctxt);

  cpu_ctxt.vl_units = 77;
  ctxt = nullptr;
  struct sigaction mine {
  }, old_segv, old_bus;
  mine.sa_handler = SIG_IGN;
  sigaction(SIGSEGV, &mine, &old_segv);
  sigaction(SIGBUS, &mine, &old_bus);
  EXPECT_EQ(SVEInitialize(), 1);
  EXPECT_EQ(current_action(SIGSEGV).sa_handler, SIG_IGN);
  EXPECT_EQ(current_action(SIGBUS).sa_handler, SIG_IGN);
  EXPECT_EQ(cpu_ctxt.vl_units, 77u);
  EXPECT_EQ(ctxt, nullptr);
  sigaction(SIGSEGV, &old_segv, nullptr);
  sigaction(SIGBUS, &old_bus, nullptr);
}

TEST(Initialisation, ReadsThePageSize) {
  read_page_size();
  EXPECT_EQ(page_size, sysconf(_SC_PAGESIZE));
}

// Bytes of a file beyond its end, mapped: an access is a SIGBUS.
volatile char* beyond_end_of_file() {
  std::FILE* const file = std::tmpfile();
  void* const at = mmap(nullptr, mapped_pages::size(), PROT_READ, MAP_SHARED, fileno(file), 0);
  return at == MAP_FAILED ? nullptr : static_cast<volatile char*>(at);
}

// An emulator of the processor may say a word after the message.
TEST(FaultDeathTest, ASegmentationFaultOutsideGuardedReadsEndsTheProcessWithTheMessage) {
  mapped_pages pages{page::closed};
  EXPECT_EXIT(
      {
        SVEInitialize();
        WriteMemLib1(1, pages.address(0), nullptr);
      },
      testing::KilledBySignal(SIGSEGV),
      "^zivra's SVESigHandler caught signal SIGSEGV from the process being emulated, passing it to the default signal "
      "handler\\.\n");
}

TEST(FaultDeathTest, ABusErrorLikewise) {
  EXPECT_EXIT(
      {
        SVEInitialize();
        [[maybe_unused]] const char byte = *beyond_end_of_file();
      },
      testing::KilledBySignal(SIGBUS),
      "^zivra's SVESigHandler caught signal SIGBUS from the process being emulated, passing it to the default signal "
      "handler\\.\n");
}

TEST(FaultDeathTest, AGuardedReadWithoutAFlagIsNotGuarded) {
  mapped_pages pages{page::closed};
  EXPECT_EXIT(
      {
        SVEInitialize();
        ReadMemLib2(pages.address(0), 0, nullptr, nullptr);
      },
      testing::KilledBySignal(SIGSEGV), "caught signal SIGSEGV");
}

TEST(FaultDeathTest, TheProbeDoesNotSurviveABusError) {
  EXPECT_EXIT(
      {
        SVEInitialize();
        addr_is_readable<char>(beyond_end_of_file());
      },
      testing::KilledBySignal(SIGBUS), "caught signal SIGBUS");
}

TEST(GuardedReadOfAFile, SurvivesABusError) {
  SVEInitialize();
  bool fault = false;
  EXPECT_EQ(ReadMemLib4(reinterpret_cast<unsigned long>(beyond_end_of_file()), 0, &fault, nullptr), 0u);
  EXPECT_TRUE(fault);
}

// A host in place of the built-in means, with what it was asked for.
std::vector<std::pair<std::uint64_t, bool>> probed;
std::vector<int> actions_set;
bool probe_every_address_but_4097(std::uint64_t address, bool bus_errors_too) {
  probed.emplace_back(address, bus_errors_too);
  return address != 4097;
}
int note_action(int signal, const struct sigaction* action, struct sigaction* old) {
  actions_set.push_back(signal);
  return sigaction(signal, action, old);
}

class MemoryHost : public testing::Test {
 protected:
  void SetUp() override {
    probed.clear();
    actions_set.clear();
  }
  void TearDown() override { use_memory_host({.set_action = sigaction, .probe = nullptr}); }
};

TEST_F(MemoryHost, ProbesInPlaceOfTheProbingReads) {
  use_memory_host({.set_action = note_action, .probe = probe_every_address_but_4097});
  bool fault = false;
  EXPECT_EQ(ReadMemLib4(4094, 0, &fault, nullptr), 0u);
  EXPECT_TRUE(fault);
  EXPECT_TRUE(readable(4094));
  EXPECT_FALSE(readable(4097));
  const std::vector<std::pair<std::uint64_t, bool>> expected{{4094, true}, {4097, true}, {4094, false}, {4097, false}};
  EXPECT_EQ(probed, expected);
  EXPECT_TRUE(actions_set.empty());
}

TEST_F(MemoryHost, ProbesOnceInAPage) {
  use_memory_host({.set_action = note_action, .probe = probe_every_address_but_4097});
  const std::uint64_t value = 0x0123456789ABCDEF;
  bool fault = false;
  EXPECT_EQ(ReadMemLib4(reinterpret_cast<unsigned long>(&value), 0, &fault, nullptr), 0x89ABCDEF);
  EXPECT_FALSE(fault);
  EXPECT_EQ(probed.size(), 1u);
}

TEST_F(MemoryHost, IsNotAskedByAReadWithoutAFlag) {
  use_memory_host({.set_action = note_action, .probe = probe_every_address_but_4097});
  const std::uint64_t value = 0x0123456789ABCDEF;
  EXPECT_EQ(ReadMemLib8(reinterpret_cast<unsigned long>(&value), 0, nullptr, nullptr), value);
  EXPECT_TRUE(probed.empty());
}

// Both actions become the default ones, whichever signal it is; all but SIGSEGV are called SIGBUS.
TEST_F(MemoryHost, AFaultOfTheApplicationGivesBothSignalsTheirDefaultActions) {
  const struct sigaction old_segv = current_action(SIGSEGV), old_bus = current_action(SIGBUS);
  struct sigaction handled {};
  handled.sa_sigaction = SVESigHandler;
  handled.sa_flags = SA_SIGINFO;
  const std::pair<int, const char*> cases[] = {{SIGSEGV, "signal SIGSEGV "},
                                               {SIGBUS, "signal SIGBUS "},
                                               {SIGILL, "signal SIGBUS "},
                                               {SIGUSR1, "signal SIGBUS "}};
  for (const auto& [signal, name] : cases) {
    for (const int s : {SIGSEGV, SIGBUS}) sigaction(s, &handled, nullptr);
    actions_set.clear();
    use_memory_host({.set_action = note_action, .probe = nullptr});
    testing::internal::CaptureStderr();
    SVESigHandler(signal, nullptr, nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr().find(name), std::string::npos) << signal;
    EXPECT_EQ(actions_set, (std::vector<int>{SIGSEGV, SIGBUS})) << signal;
    for (const int s : {SIGSEGV, SIGBUS}) EXPECT_EQ(current_action(s).sa_handler, SIG_DFL) << signal << " " << s;
  }
  sigaction(SIGSEGV, &old_segv, nullptr);
  sigaction(SIGBUS, &old_bus, nullptr);
}

TEST_F(MemoryHost, LeavesWhatItFindsReadableToTheRead) {
  use_memory_host({.set_action = note_action, .probe = probe_every_address_but_4097});
  bool fault = false;
  const std::uint32_t word = 0x12345678;
  EXPECT_EQ(ReadMemLib4(reinterpret_cast<unsigned long>(&word), 0, &fault, nullptr), word);
  EXPECT_FALSE(fault);
}

TEST_F(MemoryHost, SeesEveryActionThatIsSet) {
  mapped_pages pages{page::closed};
  use_memory_host({.set_action = note_action, .probe = nullptr});
  EXPECT_FALSE(readable(pages.address(0)));
  EXPECT_EQ(actions_set, (std::vector<int>{SIGSEGV, SIGSEGV}));
}

}  // namespace
