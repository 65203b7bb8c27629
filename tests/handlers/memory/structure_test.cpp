// Loads and stores of structures of two, three or four elements.
#include "sve/handlers/memory/structure.h"

#include "tests/handlers/memory/memory_fixture.h"

namespace {

using namespace quern;

struct member {
  const char* name;
  handler_zpri* immediate;
  handler_zprr* scaled;
  memaccess_type_t kind;
  std::size_t registers, bytes;
};

#define MEMBERS(name, kind, registers)                                                  \
  {#name "b", sve_##name##b_zpri, sve_##name##b_scaled_zprr, kind, registers, 1},       \
      {#name "h", sve_##name##h_zpri, sve_##name##h_scaled_zprr, kind, registers, 2},   \
      {#name "w", sve_##name##w_zpri, sve_##name##w_scaled_zprr, kind, registers, 4}, { \
#name "d", sve_##name##d_zpri, sve_##name##d_scaled_zprr, kind, registers, 8        \
  }
const member members[] = {MEMBERS(ld2, MEM_LOAD, 2),  MEMBERS(ld3, MEM_LOAD, 3),  MEMBERS(ld4, MEM_LOAD, 4),
                          MEMBERS(st2, MEM_STORE, 2), MEMBERS(st3, MEM_STORE, 3), MEMBERS(st4, MEM_STORE, 4)};
#undef MEMBERS

class Structure : public MemoryHandlers {
 protected:
  void SetUp() override {
    MemoryHandlers::SetUp();
    fill(open(), closed() - open());
  }

  // Does to `after` and `image` (the open pages) what the member does to the registers and to memory at `first`, in
  // lanes before `end`.
  void model(const member& m, const lane_pattern& pattern, std::size_t first, std::size_t end, cpu_state& after,
             std::vector<unsigned char>& image) const {
    const std::size_t lanes = vl / m.bytes;
    for (std::size_t i = 0; i != end; ++i) {
      for (std::size_t k = 0; k != m.registers; ++k) {
        unsigned char* const in_memory = image.data() + first + (i * m.registers + k) * m.bytes;
        unsigned char* const in_register = after.z[(zt.num + k) % 32] + i * m.bytes;
        const bool active = pattern.is_active(i, lanes);
        if (m.kind == MEM_STORE) {
          if (active) std::memcpy(in_memory, in_register, m.bytes);
        } else if (active) {
          std::memcpy(in_register, in_memory, m.bytes);
        } else {
          std::memset(in_register, 0, m.bytes);
        }
      }
    }
  }

  std::vector<sve_mem_ref_t> records(const member& m, const lane_pattern& pattern, std::uint64_t first) const {
    return one_each(pattern, m.kind, m.bytes, vl / m.bytes,
                    [&](std::size_t i) { return first + (i * m.registers + m.registers - 1) * m.bytes; });
  }

  // Runs `handler` and expects that it moves the pattern's lanes at `offset` in the open pages, and reports it.
  void expect_moves(const member& m, const lane_pattern& pattern, std::size_t offset, const auto& handler) {
    cpu_state registers = s;
    std::vector<unsigned char> image = memory();
    model(m, pattern, offset, vl / m.bytes, registers, image);
    ASSERT_FALSE(caught_fault([&] { run(handler); })) << m.name;
    ASSERT_TRUE(same(s, registers)) << m.name;
    ASSERT_EQ(memory(), image) << m.name;
    expect_trace(records(m, pattern, reinterpret_cast<std::uint64_t>(open() + offset)));
  }

  unsigned char* open() { return pages.at(mapped_pages::size()); }
  unsigned char* closed() { return pages.at(5 * mapped_pages::size()); }
  std::vector<unsigned char> memory() { return {open(), closed()}; }

  mapped_pages pages{page::closed, page::open, page::open, page::open, page::open, page::closed};
  const aarch64_z_reg zt = z_reg(30, size_b);  // so that the third member is Z0
  const aarch64_p_reg pg = p_reg(2, p_zeroing);
};

TEST_F(Structure, MovesElementsBetweenMemoryAndConsecutiveRegisters) {
  for (const member& m : members) {
    for (const lane_pattern& pattern : patterns) {
      SCOPED_TRACE(testing::Message() << m.name << ", lanes: " << pattern.name);
      SetUp();
      activate(pg.num, m.bytes, pattern.is_active);
      const std::size_t offset = 37;
      s.sp = reinterpret_cast<std::uint64_t>(open() + offset);
      expect_moves(m, pattern, offset, [&] { return m.immediate(&s, zt, pg, x_or_sp(31), 0); });
    }
  }
}

TEST_F(Structure, ImmediatesStepByWholeVectorsOfAllRegisters) {
  for (const member& m : members) {
    for (const int imm : {-2, -1, 1, 3}) {
      SetUp();
      activate(pg.num, m.bytes, all_lanes.is_active);
      s.x[4] = reinterpret_cast<std::uint64_t>(open() + 2 * mapped_pages::size());
      run([&] { return m.immediate(&s, zt, pg, x_or_sp(4), imm); });
      const auto step = static_cast<std::uint64_t>(imm * static_cast<std::int64_t>(m.registers * vl));
      EXPECT_EQ(recorded_trace(), records(m, all_lanes, s.x[4] + step)) << m.name << " #" << imm;
    }
  }
}

// The base makes up for an index whose upper half counts, by wrapping.
TEST_F(Structure, IndicesCountElementsInAll64Bits) {
  for (const member& m : members) {
    for (const std::int64_t index : {std::int64_t{-5}, std::int64_t{3}, (std::int64_t{1} << 32) + 1}) {
      SetUp();
      activate(pg.num, m.bytes, odd_lanes.is_active);
      s.x[8] = static_cast<std::uint64_t>(index);
      s.x[4] = reinterpret_cast<std::uint64_t>(open() + mapped_pages::size()) - s.x[8] * m.bytes;
      expect_moves(m, odd_lanes, mapped_pages::size(), [&] { return m.scaled(&s, zt, pg, x_or_sp(4), x_reg(8)); });
    }
  }
}

TEST_F(Structure, IndexRegister31AddsNothing) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.bytes, odd_lanes.is_active);
    s.x[4] = reinterpret_cast<std::uint64_t>(open());
    expect_moves(m, odd_lanes, 0, [&] { return m.scaled(&s, zt, pg, x_or_sp(4), x_reg(31)); });
  }
}

TEST_F(Structure, PastZ31ComesZ0) {
  activate(0, 8, all_lanes.is_active);
  s.x[0] = reinterpret_cast<std::uint64_t>(open());
  cpu_state expected = s;
  for (std::size_t i = 0; i != vl / 8; ++i) {
    std::memcpy(expected.z[31] + 8 * i, open() + 16 * i, 8);
    std::memcpy(expected.z[0] + 8 * i, open() + 16 * i + 8, 8);
  }
  run([&] { return sve_ld2d_zpri(&s, z_reg(31, size_b), p_reg(0, p_zeroing), x_or_sp(0), 0); });
  EXPECT_TRUE(same(s, expected));
}

TEST_F(Structure, ThreeActiveLanesAreThreeRecordsOfOneElementEach) {
  activate(0, 1, [](std::size_t i, std::size_t) { return i == 1 || i == 2 || i == 9; });
  s.x[0] = reinterpret_cast<std::uint64_t>(open());
  run([&] { return sve_ld3b_zpri(&s, z_reg(0, size_b), p_reg(0, p_zeroing), x_or_sp(0), 0); });
  expect_trace({record(0, 3, MEM_LOAD, 1, s.x[0] + 5), record(1, 2, MEM_LOAD, 1, s.x[0] + 8),
                record(2, 6, MEM_LOAD, 1, s.x[0] + 29)});
}

TEST_F(Structure, OneActiveLaneIsTheFirstAndLastOfItsGroup) {
  activate(0, 8, [](std::size_t i, std::size_t) { return i == 1; });
  s.x[0] = reinterpret_cast<std::uint64_t>(open());
  run([&] { return sve_st4d_zpri(&s, z_reg(0, size_b), p_reg(0, p_zeroing), x_or_sp(0), 0); });
  expect_trace({record(0, 7, MEM_STORE, 8, s.x[0] + 56)});
}

TEST_F(Structure, AnAllFalsePredicateTouchesNoMemory) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.bytes, no_lanes.is_active);
    s.x[1] = reinterpret_cast<std::uint64_t>(closed());
    EXPECT_FALSE(caught_fault([&] { run([&] { return m.immediate(&s, zt, pg, x_or_sp(1), 0); }); })) << m.name;
    expect_no_trace();
  }
}

TEST_F(Structure, WithTracingOffNothingIsReported) {
  for (const member& m : members) {
    activate(pg.num, m.bytes, all_lanes.is_active);
    s.x[1] = reinterpret_cast<std::uint64_t>(open());
    m.immediate(&s, zt, pg, x_or_sp(1), 0);
  }
  expect_no_trace();
}

TEST_F(Structure, AFaultLeavesTheLanesBeforeItDone) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.bytes, all_lanes.is_active);
    const std::size_t half = vl / m.bytes / 2, bytes = half * m.registers * m.bytes;
    s.x[1] = reinterpret_cast<std::uint64_t>(closed() - bytes);
    cpu_state registers = s;
    std::vector<unsigned char> image = memory();
    model(m, all_lanes, image.size() - bytes, half, registers, image);
    const auto fault = caught_fault([&] { run([&] { return m.immediate(&s, zt, pg, x_or_sp(1), 0); }); });
    EXPECT_EQ(fault, reinterpret_cast<std::uint64_t>(closed())) << m.name;
    EXPECT_TRUE(same(s, registers)) << m.name;
    EXPECT_EQ(memory(), image) << m.name;
    expect_no_trace();
  }
}

// All structures lie in one page, where they are moved as a block: the fault is still that of the first active one's
// first element, with the lanes before it done.
TEST_F(Structure, ABlockThatFaultsFaultsInItsFirstActiveElement) {
  const lane_pattern from_the_fifth = {"from the fifth",
                                       [](std::size_t i, std::size_t lanes) { return i >= 4 % lanes; }};
  for (const member& m : members) {
    for (const lane_pattern& pattern : {all_lanes, odd_lanes, from_the_fifth}) {
      SetUp();
      activate(pg.num, m.bytes, pattern.is_active);
      s.x[1] = reinterpret_cast<std::uint64_t>(closed()) + 64;
      std::size_t first = 0;
      while (!pattern.is_active(first, vl / m.bytes)) ++first;
      cpu_state registers = s;
      std::vector<unsigned char> image = memory();
      model(m, pattern, 0, first, registers, image);
      EXPECT_EQ(caught_fault([&] { run([&] { return m.immediate(&s, zt, pg, x_or_sp(1), 0); }); }),
                s.x[1] + first * m.registers * m.bytes)
          << m.name << ", lanes: " << pattern.name;
      EXPECT_TRUE(same(s, registers)) << m.name << ", lanes: " << pattern.name;
      expect_no_trace();
    }
  }
}

}  // namespace
