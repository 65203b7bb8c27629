#include <gtest/gtest.h>

#include "sve/memory/guest_memory.h"
#include "tests/support/caught_fault.h"
#include "tests/support/mapped_pages.h"

namespace {

using namespace quern;

std::uint64_t read(int width, std::uint64_t address, bool* fault) {
  switch (width) {
    case 1: return ReadMemLib1(address, 0, fault, nullptr);
    case 2: return ReadMemLib2(address, 0, fault, nullptr);
    case 4: return ReadMemLib4(address, 0, fault, nullptr);
    default: return ReadMemLib8(address, 0, fault, nullptr);
  }
}

void write(int width, std::uint64_t value, std::uint64_t address) {
  switch (width) {
    case 1: return WriteMemLib1(static_cast<unsigned char>(value), address, nullptr);
    case 2: return WriteMemLib2(static_cast<unsigned short>(value), address, nullptr);
    case 4: return WriteMemLib4(static_cast<unsigned int>(value), address, nullptr);
    default: return WriteMemLib8(value, address, nullptr);
  }
}

constexpr int widths[] = {1, 2, 4, 8};
constexpr std::uint64_t value = 0xF8E7D6C5B4A39281;

std::uint64_t low_bytes(int width) { return width == 8 ? value : value & ((std::uint64_t{1} << 8 * width) - 1); }

class GuardedRead : public testing::Test {
 protected:
  // Where an element of a width starts whose last byte is the open page's last.
  std::uint64_t at_edge(int width) { return pages.address(mapped_pages::size()) - static_cast<unsigned>(width); }

  void SetUp() override { SVEInitialize(); }
  mapped_pages pages{page::open, page::closed};
};

TEST_F(GuardedRead, ReadsWhatWasWrittenAtAnyAlignment) {
  for (const int width : widths) {
    for (std::size_t offset = 0; offset != 9; ++offset) {
      bool fault = false;
      WriteMemLib8(0, pages.address(offset), nullptr);
      write(width, value, pages.address(offset));
      EXPECT_EQ(read(8, pages.address(offset), &fault), low_bytes(width)) << "width " << width << " at " << offset;
      EXPECT_EQ(read(width, pages.address(offset), &fault), low_bytes(width)) << "width " << width << " at " << offset;
      EXPECT_FALSE(fault);
    }
  }
}

TEST_F(GuardedRead, ReadsUpToTheEdgeOfAnUnmappedPage) {
  for (const int width : widths) {
    bool fault = false;
    write(width, value, at_edge(width));
    EXPECT_EQ(read(width, at_edge(width), &fault), low_bytes(width));
    EXPECT_FALSE(fault) << "width " << width;
  }
}

TEST_F(GuardedRead, ClosesTheGuardedRegionWhenItSucceeds) {
  for (const int width : widths) {
    bool fault = false;
    read(width, pages.address(0), &fault);
    EXPECT_EQ(SVEFaultRegion, 0) << "width " << width;
  }
}

// The address of the fault that the thread's last guarded read met, and SVEFaultRegion then.
std::uint64_t first_fault;
int region_at_fault;
void note_fault(int signal, siginfo_t* info, void* context) {
  first_fault = reinterpret_cast<std::uint64_t>(info->si_addr);
  region_at_fault = SVEFaultRegion;
  SVESigHandler(signal, info, context);
}

TEST_F(GuardedRead, ProbesTheFirstByteBeforeTheLast) {
  mapped_pages closed{page::closed, page::closed};
  struct sigaction noting {
  }, old;
  noting.sa_sigaction = note_fault;
  noting.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigaction(SIGSEGV, &noting, &old);
  for (const int width : widths) {
    bool fault = false;
    const std::uint64_t first = closed.address(mapped_pages::size() - 1);
    read(width, first, &fault);
    EXPECT_TRUE(fault) << "width " << width;
    EXPECT_EQ(first_fault, first) << "width " << width;
    EXPECT_EQ(region_at_fault, 1) << "width " << width;
  }
  sigaction(SIGSEGV, &old, nullptr);
}

TEST_F(GuardedRead, OneByteBeyondTheEdgeIsAFault) {
  for (const int width : widths) {
    bool fault = false;
    EXPECT_EQ(read(width, at_edge(width) + 1, &fault), 0u) << "width " << width;
    EXPECT_TRUE(fault) << "width " << width;
    EXPECT_EQ(SVEFaultRegion, 0);
  }
}

TEST_F(GuardedRead, FirstByteOnAnUnmappedPageIsAFault) {
  mapped_pages other{page::closed, page::open};
  for (const int width : widths) {
    bool fault = false;
    EXPECT_EQ(read(width, other.address(mapped_pages::size() - 1), &fault), 0u) << "width " << width;
    EXPECT_TRUE(fault) << "width " << width;
  }
}

TEST_F(GuardedRead, SurvivesManyFaultsInARow) {
  for (int i = 0; i != 100; ++i) {
    bool fault = false;
    EXPECT_EQ(ReadMemLib4(pages.address(mapped_pages::size()), 0, &fault, nullptr), 0u);
    ASSERT_TRUE(fault);
  }
}

TEST_F(GuardedRead, KeepsTheSignalMaskOverAFault) {
  sigset_t blocked, before, after;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &blocked, &before);
  bool fault = false;
  ReadMemLib4(pages.address(mapped_pages::size()), 0, &fault, nullptr);
  sigprocmask(SIG_SETMASK, &before, &after);
  ASSERT_TRUE(fault);
  EXPECT_TRUE(sigismember(&after, SIGUSR1));
  EXPECT_FALSE(sigismember(&after, SIGSEGV));
}

TEST_F(GuardedRead, NeverClearsTheFlag) {
  for (const int width : widths) {
    bool fault = true;
    write(width, value, pages.address(0));
    EXPECT_EQ(read(width, pages.address(0), &fault), low_bytes(width));
    EXPECT_TRUE(fault) << "width " << width;
  }
}

TEST_F(GuardedRead, WithoutAFlagReadsUnguarded) {
  for (const int width : widths) {
    write(width, value, pages.address(3));
    EXPECT_EQ(read(width, pages.address(3), nullptr), low_bytes(width));
    const std::uint64_t closed = pages.address(mapped_pages::size());
    EXPECT_EQ(caught_fault([=] { read(width, closed, nullptr); }), closed) << "width " << width;
    EXPECT_EQ(SVEFaultRegion, 0) << "width " << width;
  }
}

TEST_F(GuardedRead, WritesAreUnguarded) {
  const std::uint64_t closed = pages.address(mapped_pages::size());
  for (const int width : widths) EXPECT_EQ(caught_fault([=] { write(width, value, closed); }), closed);
}

TEST_F(GuardedRead, WritesTouchTheirBytesOnly) {
  for (const int width : widths) {
    WriteMemLib8(~0ul, pages.address(0), nullptr);
    write(width, 0, pages.address(0));
    EXPECT_EQ(ReadMemLib8(pages.address(0), 0, nullptr, nullptr), width == 8 ? 0 : ~0ull << 8 * width);
  }
}

TEST_F(GuardedRead, TheUnusedEntriesReadAndWriteNothing) {
  const unsigned long closed = pages.address(mapped_pages::size());
  bool fault = true;
  EXPECT_EQ(ReadMem(closed, 8, 0, &fault, nullptr), 0u);
  EXPECT_FALSE(fault);
  fault = true;
  EXPECT_EQ(ReadMemSim(closed, 8, 0, &fault, true, nullptr), 0u);
  EXPECT_FALSE(fault);
  WriteMem(1, closed, 8, nullptr);
  WriteMem(closed, 1, 8, nullptr);
  WriteMemSim(1, closed, 8, true, nullptr);
  WriteMemSim(closed, 1, 8, true, nullptr);
}

}  // namespace
