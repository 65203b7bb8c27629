// ADD (immediate) as a marker of a region of interest, and as what it looks like.
#include <gtest/gtest.h>

#include <thread>

#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/memory/trace.h"
#include "tests/harness/agreement.h"
#include "tests/support/trace_recorder.h"

namespace quern {
namespace {

// The marker's record: nothing but the count and the mark.
sve_mem_ref_t marker(std::uint64_t count, std::uint32_t tid) {
  sve_mem_ref_t record{};
  record.count = count;
  record.tid = tid;
  return record;
}

class TraceMarker : public testing::Test {
 protected:
  void SetUp() override {
    enable_trace = false;
    start_recording();
    fill_elements(state.z[0], size_d, 0x0102030405060708);
    before = state;
  }
  void TearDown() override { enable_trace = false; }

  void add(std::uint32_t size, unsigned int immediate) {
    EXPECT_EQ(sve_add_zi(&state, z_both(0, size), immediate), DECODE_OK);
  }

  cpu_state state = random_state(size_d, lanes_on::all);
  cpu_state before;
};

TEST_F(TraceMarker, StartTurnsTracingOnAndSendsOneRecord) {
  add(size_b, 0x100);
  EXPECT_TRUE(enable_trace);
  EXPECT_EQ(recorded_trace(), std::vector{marker(0, 0xFFFFFFFF)});
  EXPECT_EQ(difference(state, before), "") << "start marker";
}

TEST_F(TraceMarker, StopTwiceSendsTwoRecordsAndTracingStaysOff) {
  add(size_b, 0x200);
  add(size_b, 0x200);
  EXPECT_FALSE(enable_trace);
  EXPECT_EQ(recorded_trace(), (std::vector{marker(0, 0xFFFFFFFE), marker(1, 0xFFFFFFFE)}));
  EXPECT_EQ(difference(state, before), "") << "stop markers";
}

TEST_F(TraceMarker, StartTwiceThenStopSendsThreeRecords) {
  for (const unsigned int immediate : {0x100u, 0x100u, 0x200u}) add(size_b, immediate);
  EXPECT_FALSE(enable_trace);
  EXPECT_EQ(recorded_trace(), (std::vector{marker(0, 0xFFFFFFFF), marker(1, 0xFFFFFFFF), marker(2, 0xFFFFFFFE)}));
}

TEST_F(TraceMarker, SwitchesBeforeItCountsAndSendsTheRecord) {
  add(size_b, 0x100);
  add(size_b, 0x200);
  EXPECT_EQ(tracing_at_calls(), (std::vector<bool>{true, true, false, false}));
}

TEST_F(TraceMarker, SwitchesTheExecutingThreadAlone) {
  add(size_b, 0x100);
  bool elsewhere = true;
  std::thread([&] { elsewhere = enable_trace; }).join();
  EXPECT_FALSE(elsewhere);
}

// Of the same immediates, the wider elements make plain additions; of bytes, all other immediates do.
TEST_F(TraceMarker, AnyOtherAdditionIsNoMarker) {
  add(size_h, 0x100);
  add(size_s, 0x200);
  EXPECT_EQ(element(state.z[0], size_d, 0), 0x02020604'06060A08u);
  for (const unsigned int immediate : {1u, 0u, 0x300u, 0x101u, 0xFF00u}) add(size_b, immediate);
  sve_sub_zi(&state, z_both(0, size_b), 0x100);
  EXPECT_FALSE(enable_trace);
  EXPECT_TRUE(recorded_trace().empty());
}

TEST_F(TraceMarker, AddOfOneByteAddsOne) {
  add(size_b, 1);
  for (std::size_t i = 0; i != VL_BYTES; ++i) ASSERT_EQ(state.z[0][i], before.z[0][i] + 1);
}

// The marker goes by the code 0 exactly, though other codes are bytes as well.
TEST_F(TraceMarker, AnUnknownSizeCodeAddsBytesWithoutMarking) {
  add(5, 0x100);
  EXPECT_TRUE(recorded_trace().empty());
  EXPECT_EQ(difference(state, before), "") << "size code 5";
}

}  // namespace
}  // namespace quern
