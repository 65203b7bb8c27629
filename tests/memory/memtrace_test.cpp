#include <gtest/gtest.h>
#include <pthread.h>

#include <thread>

#include "sve/memory/memtrace.h"
#include "tests/support/trace_recorder.h"

namespace {

using namespace quern;

cpu_state state;
unsigned char code[4];
alignas(16) unsigned char predicate[VL_BYTES];

constexpr std::uint64_t first = 0x7000'0000'1234;

sve_mem_ref_t record(std::uint64_t count, std::uint32_t group, memaccess_type_t kind, std::uint64_t size,
                     std::uint64_t addr) {
  return {.count = count,
          .tid = static_cast<std::uint32_t>(pthread_self()),
          .group = group,
          .kind = kind,
          .unused = 0,
          .size = size,
          .addr = addr,
          .pc = reinterpret_cast<std::uint64_t>(code)};
}

// Makes the given lanes of `lane_bytes` active.
void activate(std::size_t lane_bytes, const auto& lane_is_active) {
  for (unsigned char& byte : predicate) byte = 0;
  for (std::size_t i = 0; i != VL_BYTES / lane_bytes; ++i) predicate[i * lane_bytes] = lane_is_active(i);
}
constexpr auto every_lane = [](std::size_t) { return true; };

class Memtrace : public testing::Test {
 protected:
  void SetUp() override {
    state.pc = code;
    enable_trace = true;
    start_recording();
  }
  void TearDown() override { enable_trace = false; }

  template <class T, class U>
  void report(memaccess_type_t kind = MEM_LOAD) {
    memtrace_lin<T, U>(&state, reinterpret_cast<T*>(first), reinterpret_cast<char*>(predicate), kind);
  }
  template <class T, class U>
  void report_each(const std::uint64_t* addresses, memaccess_type_t kind = MEM_LOAD) {
    memtrace_each<T, U>(&state, addresses, predicate, kind);
  }
  void expect(const std::vector<sve_mem_ref_t>& records) {
    EXPECT_EQ(recorded_trace(), records);
    EXPECT_EQ(counts_given(), records.size());
  }
};

// The 24 combinations of element types that loads and stores use are among these.
template <class Pair>
class LinearTrace : public Memtrace {};

template <class T, class U>
struct access {
  using memory = T;
  using lane = U;
};
using accesses = testing::Types<
    access<unsigned char, unsigned char>, access<unsigned char, unsigned short>, access<unsigned char, unsigned int>,
    access<unsigned char, unsigned long>, access<unsigned short, unsigned short>, access<unsigned short, unsigned int>,
    access<unsigned short, unsigned long>, access<unsigned int, unsigned int>, access<unsigned int, unsigned long>,
    access<unsigned long, unsigned long>, access<signed char, signed char>, access<signed char, short>,
    access<signed char, int>, access<signed char, long>, access<short, short>, access<short, int>, access<short, long>,
    access<int, int>, access<int, long>, access<long, long>, access<signed char, unsigned short>,
    access<signed char, unsigned int>, access<signed char, unsigned long>, access<short, unsigned int>,
    access<short, unsigned long>, access<int, unsigned long>>;
TYPED_TEST_SUITE(LinearTrace, accesses);

TYPED_TEST(LinearTrace, AllLanesAreOneRecordOfAWholeVector) {
  activate(sizeof(typename TypeParam::lane), every_lane);
  this->template report<typename TypeParam::memory, typename TypeParam::lane>(MEM_STORE);
  this->expect({record(0, 0, MEM_STORE, VL_BYTES, first)});
}

TYPED_TEST(LinearTrace, AllLanesButTheLastAreOneRecordOfTheirBytes) {
  using T = typename TypeParam::memory;
  using U = typename TypeParam::lane;
  constexpr std::size_t last = VL_BYTES / sizeof(U) - 1;
  activate(sizeof(U), [](std::size_t i) { return i != last; });
  this->template report<T, U>();
  this->expect({record(0, 0, MEM_LOAD, last * sizeof(T), first)});
}

TYPED_TEST(LinearTrace, AlternatingLanesAreARecordEach) {
  using T = typename TypeParam::memory;
  using U = typename TypeParam::lane;
  activate(sizeof(U), [](std::size_t i) { return i % 2 == 0; });
  this->template report<T, U>();
  std::vector<sve_mem_ref_t> records;
  for (std::size_t i = 0; i < VL_BYTES / sizeof(U); i += 2)
    records.push_back(record(records.size(), 0, MEM_LOAD, sizeof(T), first + i * sizeof(T)));
  this->expect(records);
}

TYPED_TEST(LinearTrace, ARunAtTheEndIsEmitted) {
  using T = typename TypeParam::memory;
  using U = typename TypeParam::lane;
  activate(sizeof(U), [](std::size_t i) { return i >= 1; });
  this->template report<T, U>();
  this->expect({record(0, 0, MEM_LOAD, (VL_BYTES / sizeof(U) - 1) * sizeof(T), first + sizeof(T))});
}

TYPED_TEST(LinearTrace, NoActiveLaneTakesNoCount) {
  activate(1, [](std::size_t) { return false; });
  this->template report<typename TypeParam::memory, typename TypeParam::lane>();
  this->expect({});
}

TYPED_TEST(LinearTrace, OnlyBitZeroOfALanesFirstByteCounts) {
  for (std::size_t i = 0; i != VL_BYTES; ++i) predicate[i] = i % sizeof(typename TypeParam::lane) == 0 ? 0xFE : 0xFF;
  this->template report<typename TypeParam::memory, typename TypeParam::lane>();
  this->expect({});
}

TYPED_TEST(LinearTrace, IsSilentWhileTracingIsOff) {
  enable_trace = false;
  activate(sizeof(typename TypeParam::lane), every_lane);
  this->template report<typename TypeParam::memory, typename TypeParam::lane>();
  this->expect({});
}

TEST_F(Memtrace, AnInactiveLaneSplitsARun) {
  activate(1, [](std::size_t i) { return i == 0 || i == 2; });
  report<unsigned char, unsigned char>();
  expect({record(0, 0, MEM_LOAD, 1, first), record(1, 0, MEM_LOAD, 1, first + 2)});
}

TEST_F(Memtrace, RunsAreMaximalAndAscend) {
  activate(4, [](std::size_t i) { return i != 2; });
  if (VL_BYTES == 16) {
    report<unsigned int, unsigned int>();
    expect({record(0, 0, MEM_LOAD, 8, first), record(1, 0, MEM_LOAD, 4, first + 12)});
    return;
  }
  report<unsigned int, unsigned int>();
  expect({record(0, 0, MEM_LOAD, 8, first), record(1, 0, MEM_LOAD, VL_BYTES - 12, first + 12)});
}

TEST_F(Memtrace, EachLaneGroupsItsRecords) {
  std::uint64_t addresses[VL_BYTES / 4];
  for (std::size_t i = 0; i != std::size(addresses); ++i) addresses[i] = 0x9000 - 16 * i;
  struct {
    const char* active;  // lanes 0 to 3
    const char* groups;  // of the records
  } const cases[] = {{"0000", ""}, {"0010", "7"}, {"1001", "36"}, {"1101", "326"}, {"1111", "3226"}};
  for (const auto& c : cases) {
    start_recording();
    activate(4, [&](std::size_t i) { return i < 4 && c.active[i] == '1'; });
    report_each<unsigned short, unsigned int>(addresses, MEM_STORE);
    std::vector<sve_mem_ref_t> records;
    for (std::size_t i = 0; i != 4; ++i) {
      if (c.active[i] == '0') continue;
      const auto group = static_cast<std::uint32_t>(c.groups[records.size()] - '0');
      records.push_back(record(records.size(), group, MEM_STORE, 2, addresses[i]));
    }
    expect(records);
  }
}

TEST_F(Memtrace, EachLaneIsSilentWhileTracingIsOff) {
  enable_trace = false;
  const std::uint64_t addresses[VL_BYTES / 8]{};
  activate(8, every_lane);
  report_each<unsigned long, unsigned long>(addresses);
  expect({});
}

TEST_F(Memtrace, IsSwitchedByThread) {
  activate(1, every_lane);
  std::thread([this] {
    EXPECT_FALSE(enable_trace);
    report<unsigned char, unsigned char>();
  }).join();
  expect({});
}

TEST_F(Memtrace, TellsTheThreadThatMadeTheAccess) {
  activate(1, every_lane);
  std::uint32_t tid = 0;
  std::thread([&] {
    enable_trace = true;
    tid = static_cast<std::uint32_t>(pthread_self());
    report<unsigned char, unsigned char>();
  }).join();
  ASSERT_EQ(recorded_trace().size(), 1u);
  EXPECT_EQ(recorded_trace()[0].tid, tid);
  EXPECT_NE(tid, static_cast<std::uint32_t>(pthread_self()));
}

}  // namespace
