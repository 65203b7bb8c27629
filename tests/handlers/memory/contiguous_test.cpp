// Contiguous loads and stores of one register.
#include "sve/handlers/memory/contiguous.h"

#include <span>

#include "tests/handlers/memory/element_letters.h"
#include "tests/handlers/memory/memory_fixture.h"

namespace {

using namespace quern;

struct member : element_sizes {
  memaccess_type_t kind;
  const char* name;
  handler_zpri* immediate;
  handler_zprr* scaled;
};

#define MEMBER(kind, name, letters) \
  {sizes_of(#letters), kind, #name #letters, sve_##name##letters##_zpri, sve_##name##letters##_scaled_zprr},
const member loads[] = {
#define ELEMENT(letters, M, T, U) MEMBER(MEM_LOAD, ld1, letters)
#include "sve/handlers/memory/elements.def"
    MEMBER(MEM_LOAD, ldnt1, b) MEMBER(MEM_LOAD, ldnt1, h) MEMBER(MEM_LOAD, ldnt1, w) MEMBER(MEM_LOAD, ldnt1, d)};
const member stores[] = {
#define ELEMENT(letters, M, T, U) MEMBER(MEM_STORE, st1, letters)
#define SIGNED(letters, M, T, U)
#include "sve/handlers/memory/elements.def"
    MEMBER(MEM_STORE, stnt1, b) MEMBER(MEM_STORE, stnt1, h) MEMBER(MEM_STORE, stnt1, w) MEMBER(MEM_STORE, stnt1, d)};
#undef MEMBER

std::vector<member> both() {
  std::vector<member> members(std::begin(loads), std::end(loads));
  members.insert(members.end(), std::begin(stores), std::end(stores));
  return members;
}

class Contiguous : public MemoryHandlers {
 protected:
  void SetUp() override {
    MemoryHandlers::SetUp();
    fill(pages.at(mapped_pages::size()), 2 * mapped_pages::size());
  }

  struct outcome {
    cpu_state registers;
    std::vector<unsigned char> memory;  // the open pages
  };

  // What is to be after the pattern's lanes before `end` have gone from or to `first`.
  outcome moved(const member& m, const lane_pattern& pattern, const unsigned char* first, std::size_t end) {
    outcome after{s, memory()};
    for (std::size_t i = 0; i != end; ++i) {
      const bool active = pattern.is_active(i, vl / m.lane_bytes);
      const unsigned char* const element = first + i * m.memory_bytes;
      if (m.kind == MEM_LOAD) {
        put_element(after.registers.z[zt.num] + i * m.lane_bytes, m.lane_bytes,
                    active ? element_at(element, m.memory_bytes, m.sign_extends) : 0);
      } else if (active) {
        put_element(after.memory.data() + (element - open()), m.memory_bytes, lane_of(zt.num, i, m.lane_bytes));
      }
    }
    return after;
  }

  void expect_outcome(const outcome& expected) {
    EXPECT_TRUE(same(s, expected.registers));
    EXPECT_EQ(memory(), expected.memory);
  }

  void expect_moves_of_active_lanes(std::span<const member> members);
  void expect_stops_at_faulting_lane(std::span<const member> members);

  unsigned char* open() { return pages.at(mapped_pages::size()); }
  unsigned char* closed() { return pages.at(3 * mapped_pages::size()); }
  std::vector<unsigned char> memory() { return {open(), closed()}; }

  mapped_pages pages{page::closed, page::open, page::open, page::closed};
  const aarch64_z_reg zt = z_reg(31, size_b);
  const aarch64_p_reg pg = p_reg(6, p_zeroing);
};

// Where an access of so many bytes starts: within a page, off alignment, over a page's edge, against the closed pages.
std::vector<std::size_t> places(std::size_t bytes) {
  const std::size_t page_bytes = mapped_pages::size();
  return {64, 77, page_bytes - bytes / 2, page_bytes - 1, 0, 2 * page_bytes - bytes};
}

void Contiguous::expect_moves_of_active_lanes(std::span<const member> members) {
  for (const member& m : members) {
    const std::size_t lanes = vl / m.lane_bytes;
    for (const lane_pattern& pattern : patterns) {
      for (const std::size_t offset : places(lanes * m.memory_bytes)) {
        SCOPED_TRACE(testing::Message() << m.name << ", lanes: " << pattern.name << ", at " << offset);
        SetUp();
        activate(pg.num, m.lane_bytes, pattern.is_active);
        s.x[7] = reinterpret_cast<std::uint64_t>(open() + offset);
        const outcome expected = moved(m, pattern, open() + offset, lanes);
        run([&] { return m.immediate(&s, zt, pg, x_or_sp(7), 0); });
        expect_outcome(expected);
        expect_trace(runs(pattern, m.kind, s.x[7], m.memory_bytes, m.lane_bytes));
        if (HasFailure()) return;
      }
    }
  }
}

TEST_F(Contiguous, LoadsReadActiveLanesAndClearTheOthers) { expect_moves_of_active_lanes(loads); }

TEST_F(Contiguous, StoresWriteActiveLanesAlone) { expect_moves_of_active_lanes(stores); }

// A step of the immediate is what the instruction touches, not a whole vector.
TEST_F(Contiguous, ImmediatesStepByTheBytesOfAllLanes) {
  for (const member& m : both()) {
    for (const int imm : {-8, -1, 1, 7}) {
      SetUp();
      activate(pg.num, m.lane_bytes, all_lanes.is_active);
      const std::int64_t offset = imm * static_cast<std::int64_t>(vl / m.lane_bytes * m.memory_bytes);
      s.sp = reinterpret_cast<std::uint64_t>(open() + mapped_pages::size());
      run([&] { return m.immediate(&s, zt, pg, x_or_sp(31), imm); });
      ASSERT_EQ(recorded_trace().size(), 1u) << m.name;
      EXPECT_EQ(recorded_trace()[0].addr, s.sp + static_cast<std::uint64_t>(offset)) << m.name << " #" << imm;
    }
  }
}

TEST_F(Contiguous, IndicesCountMemoryElements) {
  for (const member& m : both()) {
    for (const std::int64_t index : {-100, -1, 0, 3, 200}) {
      SetUp();
      activate(pg.num, m.lane_bytes, all_lanes.is_active);
      s.x[30] = reinterpret_cast<std::uint64_t>(open() + mapped_pages::size());
      s.x[0] = static_cast<std::uint64_t>(index);
      run([&] { return m.scaled(&s, zt, pg, x_or_sp(30), x_reg(0)); });
      ASSERT_EQ(recorded_trace().size(), 1u) << m.name;
      EXPECT_EQ(recorded_trace()[0].addr, s.x[30] + s.x[0] * m.memory_bytes) << m.name << " index " << index;
    }
  }
}

TEST_F(Contiguous, ScaledFormsMoveTheSameBytes) {
  for (const member& m : both()) {
    SCOPED_TRACE(m.name);
    SetUp();
    activate(pg.num, m.lane_bytes, mixed_lanes.is_active);
    s.sp = reinterpret_cast<std::uint64_t>(open() + 40);
    s.x[9] = 5;
    const outcome expected = moved(m, mixed_lanes, open() + 40 + 5 * m.memory_bytes, vl / m.lane_bytes);
    run([&] { return m.scaled(&s, zt, pg, x_or_sp(31), x_reg(9)); });
    expect_outcome(expected);
  }
}

TEST_F(Contiguous, IndexRegister31AddsNothing) {
  activate(pg.num, 8, all_lanes.is_active);
  s.x[3] = reinterpret_cast<std::uint64_t>(open() + 64);
  s.sp = 1000;
  run([&] { return sve_ld1d_scaled_zprr(&s, zt, pg, x_or_sp(3), x_reg(31)); });
  expect_trace({record(0, 0, MEM_LOAD, vl, s.x[3])});
}

TEST_F(Contiguous, WordsToDoublewordsStepByHalfAVector) {
  activate(0, 8, no_lanes.is_active);
  s.p[0][0] = 1;
  s.x[0] = reinterpret_cast<std::uint64_t>(open());
  const std::uint64_t expected = element_at(open() + vl / 2, 4, false);
  run([&] { return sve_ld1w_d_zpri(&s, z_reg(0, size_b), p_reg(0, p_zeroing), x_or_sp(0), 1); });
  EXPECT_EQ(lane_of(0, 0, 8), expected);
  expect_trace({record(0, 0, MEM_LOAD, 4, s.x[0] + vl / 2)});
}

TEST_F(Contiguous, AnAllFalsePredicateTouchesNoMemory) {
  for (const member& m : both()) {
    SetUp();
    activate(pg.num, m.lane_bytes, no_lanes.is_active);
    s.x[1] = reinterpret_cast<std::uint64_t>(closed());
    EXPECT_FALSE(caught_fault([&] { run([&] { return m.immediate(&s, zt, pg, x_or_sp(1), 0); }); })) << m.name;
    expect_no_trace();
  }
}

TEST_F(Contiguous, WithTracingOffNothingIsReported) {
  for (const member& m : both()) {
    activate(pg.num, m.lane_bytes, all_lanes.is_active);
    s.x[1] = reinterpret_cast<std::uint64_t>(open());
    m.immediate(&s, zt, pg, x_or_sp(1), 0);
    m.scaled(&s, zt, pg, x_or_sp(1), x_reg(31));
  }
  expect_no_trace();
}

// A fault in mid-handler: the lanes before it are done, the lanes after it are not, and nothing is traced.

void Contiguous::expect_stops_at_faulting_lane(std::span<const member> members) {
  for (const member& m : members) {
    for (const lane_pattern& pattern : {all_lanes, odd_lanes}) {
      for (const std::size_t misalignment : {std::size_t{0}, std::size_t{1}}) {
        SCOPED_TRACE(testing::Message() << m.name << ", lanes: " << pattern.name << ", misaligned by " << misalignment);
        SetUp();
        activate(pg.num, m.lane_bytes, pattern.is_active);
        const std::size_t lanes = vl / m.lane_bytes, half = lanes / 2;
        unsigned char* const first = closed() - half * m.memory_bytes + misalignment;
        s.x[5] = reinterpret_cast<std::uint64_t>(first);
        std::size_t i = 0;
        while (first + (i + 1) * m.memory_bytes <= closed() || !pattern.is_active(i, lanes)) ++i;
        const outcome expected = moved(m, pattern, first, i);
        const auto fault = caught_fault([&] { run([&] { return m.immediate(&s, zt, pg, x_or_sp(5), 0); }); });
        ASSERT_TRUE(fault);
        if (misalignment == 0) {
          EXPECT_EQ(*fault, reinterpret_cast<std::uint64_t>(first + i * m.memory_bytes));
        }
        expect_outcome(expected);
        expect_no_trace();
      }
    }
  }
}

TEST_F(Contiguous, ALoadStopsAtTheLaneThatFaults) { expect_stops_at_faulting_lane(loads); }

TEST_F(Contiguous, AStoreStopsAtTheLaneThatFaults) { expect_stops_at_faulting_lane(stores); }

// The whole vector lies in one page, where it is moved as a block: the fault is still lane 0's, and nothing is done.
TEST_F(Contiguous, ABlockThatFaultsFaultsInLaneZero) {
  for (const member& m : both()) {
    const std::size_t into_second_page = mapped_pages::size() - vl / m.lane_bytes * m.memory_bytes * 3 / 4;
    for (const std::size_t in_closed_page : {3 * mapped_pages::size() + 64, into_second_page}) {
      SetUp();
      activate(pg.num, m.lane_bytes, all_lanes.is_active);
      s.x[5] = pages.address(in_closed_page);
      const cpu_state before = s;
      const std::vector<unsigned char> memory_before = memory();
      const auto fault = caught_fault([&] { run([&] { return m.immediate(&s, zt, pg, x_or_sp(5), 0); }); });
      EXPECT_EQ(fault, s.x[5]) << m.name;
      EXPECT_TRUE(same(s, before)) << m.name;
      EXPECT_EQ(memory(), memory_before) << m.name;
      expect_no_trace();
    }
  }
}

}  // namespace
