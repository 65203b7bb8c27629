// Non-fault and first-fault loads at the edges of real pages.
#include "sve/handlers/memory/fault_tolerant.h"

#include "sve/memory/memory_host.h"
#include "tests/handlers/memory/element_letters.h"
#include "tests/handlers/memory/memory_fixture.h"

namespace {

using namespace quern;

template <class Handler>
struct member : element_sizes {
  const char* name;
  Handler* handler;
};

const member<handler_zpri> non_fault[] = {
#define ELEMENT(letters, M, T, U) {sizes_of(#letters), "ldnf1" #letters, sve_ldnf1##letters##_zpri},
#include "sve/handlers/memory/elements.def"
};

const member<handler_zprr> first_fault[] = {
#define ELEMENT(letters, M, T, U) {sizes_of(#letters), "ldff1" #letters, sve_ldff1##letters##_scaled_zprr},
#define HALFWORD(letters, M, T, U)
#define SIGNED(letters, M, T, U)
#include "sve/handlers/memory/elements.def"
};

// What has been probed, by a host that knows which pages are open.
std::vector<std::uint64_t> probed;
std::uint64_t open_from, open_to;
bool noting_probe(std::uint64_t address, bool) {
  probed.push_back(address);
  return open_from <= address && address < open_to;
}

class FaultTolerant : public MemoryHandlers {
 protected:
  void SetUp() override {
    MemoryHandlers::SetUp();
    set_pages(page::open, page::open);
    fill(pages.at(0), 2 * size);
  }
  void TearDown() override {
    use_memory_host({.set_action = sigaction, .probe = nullptr});
    MemoryHandlers::TearDown();
  }

  void set_pages(page lower, page upper) {
    pages.set(0, lower);
    pages.set(1, upper);
  }
  bool is_open(std::size_t offset) const { return opened[offset / size] == page::open; }
  // Closes pages after the test has filled them.
  void close(page lower, page upper) {
    opened[0] = lower;
    opened[1] = upper;
    set_pages(lower, upper);
  }
  void note_probes(std::uint64_t from, std::uint64_t to) {
    probed.clear();
    open_from = from;
    open_to = to;
    use_memory_host({.set_action = sigaction, .probe = noting_probe});
  }

  // Lane i of Zt after it has been read at `element`, or made 0 as inactive.
  void load_lane(cpu_state& after, const auto& m, std::size_t i, const unsigned char* element) const {
    const std::uint64_t value = element == nullptr ? 0 : element_at(element, m.memory_bytes, m.sign_extends);
    put_element(after.z[zt.num] + i * m.lane_bytes, m.lane_bytes, value);
  }

  aarch64_decode_rc load(const member<handler_zpri>& m, std::size_t offset) {
    s.x[2] = pages.address(offset);
    return m.handler(&s, zt, pg, x_or_sp(2), 0);
  }
  aarch64_decode_rc load(const member<handler_zprr>& m, std::size_t offset) {
    s.x[2] = pages.address(offset);
    return m.handler(&s, zt, pg, x_or_sp(2), x_reg(31));
  }

  const std::size_t size = mapped_pages::size();
  mapped_pages pages{page::open, page::open, page::closed};
  page opened[2] = {page::open, page::open};
  const aarch64_z_reg zt = z_reg(4, size_b);
  const aarch64_p_reg pg = p_reg(3, p_zeroing);
};

class NonFault : public FaultTolerant {
 protected:
  // Elements don't straddle pages: `offset` is aligned.
  cpu_state loaded(const member<handler_zpri>& m, const lane_pattern& pattern, std::size_t offset) {
    cpu_state after = s;
    after.x[2] = pages.address(offset);
    for (std::size_t i = 0; i != vl / m.lane_bytes; ++i) {
      const std::size_t at = offset + i * m.memory_bytes;
      if (!pattern.is_active(i, vl / m.lane_bytes)) {
        load_lane(after, m, i, nullptr);
      } else if (is_open(at)) {
        load_lane(after, m, i, contents.data() + at);
      } else {
        std::memset(after.ffr + i * m.lane_bytes, 0, m.lane_bytes);
      }
    }
    return after;
  }
  void remember_contents() { contents.assign(pages.at(0), pages.at(2 * size)); }

  std::vector<unsigned char> contents;
};

TEST_F(NonFault, LoadsWhatIsReadableAndClearsFfrForTheRest) {
  constexpr std::pair<page, page> kinds[] = {
      {page::open, page::open}, {page::open, page::closed}, {page::closed, page::open}, {page::closed, page::closed}};
  for (const auto& m : non_fault) {
    const std::size_t bytes = vl / m.lane_bytes * m.memory_bytes;
    for (const lane_pattern& pattern : patterns) {
      for (const auto& [lower, upper] : kinds) {
        for (const std::size_t offset : {std::size_t{64}, size - bytes, size - bytes / 2, size - m.memory_bytes}) {
          SCOPED_TRACE(testing::Message() << m.name << " at " << offset << ", lanes: " << pattern.name
                                          << ", pages: " << (lower == page::open) << (upper == page::open));
          SetUp();
          remember_contents();
          close(lower, upper);
          activate(pg.num, m.lane_bytes, pattern.is_active);
          const cpu_state expected = loaded(m, pattern, offset);
          ASSERT_FALSE(caught_fault([&] { run([&] { return load(m, offset); }); }));
          ASSERT_TRUE(same(s, expected));
          expect_trace(runs(pattern, MEM_LOAD, pages.address(offset), m.memory_bytes, m.lane_bytes));
        }
      }
    }
  }
}

TEST_F(NonFault, ImmediatesStepByTheBytesOfAllLanes) {
  for (const auto& m : non_fault) {
    for (const int imm : {-8, -1, 7}) {
      SetUp();
      activate(pg.num, m.lane_bytes, all_lanes.is_active);
      s.sp = pages.address(size);
      run([&] { return m.handler(&s, zt, pg, x_or_sp(31), imm); });
      const auto step = imm * static_cast<std::int64_t>(vl / m.lane_bytes * m.memory_bytes);
      expect_trace({record(0, 0, MEM_LOAD, vl, s.sp + static_cast<std::uint64_t>(step))});
    }
  }
}

TEST_F(NonFault, WithNoActiveLaneNothingIsCleared) {
  close(page::closed, page::closed);
  activate(pg.num, 1, no_lanes.is_active);
  cpu_state expected = s;
  expected.x[2] = pages.address(64);
  std::memset(expected.z[zt.num], 0, vl);
  run([&] { return load(non_fault[0], 64); });
  EXPECT_TRUE(same(s, expected));
  expect_no_trace();
}

TEST_F(NonFault, ProbesTheFirstActiveLaneOfEachPage) {
  const std::uint64_t first = pages.address(size - vl / 2), second_page = pages.address(size);
  const std::size_t half = vl / 2;
  struct {
    const char* lanes;
    bool (*is_active)(std::size_t, std::size_t);
    std::vector<std::uint64_t> probed;
  } const cases[] = {
      {"none", no_lanes.is_active, {first}},
      {"all", all_lanes.is_active, {first, first, second_page}},
      {"all but the first", patterns[6].is_active, {first, second_page}},
      {"those of the first page", [](std::size_t i, std::size_t n) { return i < n / 2; }, {first, first}},
      {"the last", patterns[5].is_active, {first, first + 2 * half - 1}},
      {"the first and one in the second page",
       [](std::size_t i, std::size_t n) { return i == 0 || i == n / 2 + 3; },
       {first, first, second_page + 3}},
  };
  for (const auto& c : cases) {
    note_probes(pages.address(0), pages.address(2 * size));
    activate(pg.num, 1, c.is_active);
    load(non_fault[0], size - half);
    EXPECT_EQ(probed, c.probed) << "lanes: " << c.lanes;
  }
}

TEST_F(NonFault, AnElementThatStraddlesIntoAClosedPageFaults) {
  const member<handler_zpri>& words = non_fault[7];
  remember_contents();
  close(page::open, page::closed);
  activate(pg.num, 4, all_lanes.is_active);
  const std::size_t offset = size - 4 - 2;
  cpu_state expected = s;
  expected.x[2] = pages.address(offset);
  load_lane(expected, words, 0, contents.data() + offset);
  EXPECT_TRUE(caught_fault([&] { run([&] { return load(words, offset); }); }));
  EXPECT_TRUE(same(s, expected));
  expect_no_trace();
}

class FirstFault : public FaultTolerant {
 protected:
  // The registers after the load of `lanes` lanes with FFR cleared from there on.
  cpu_state loaded(const member<handler_zprr>& m, const lane_pattern& pattern, std::size_t offset, std::size_t lanes) {
    cpu_state after = s;
    after.x[2] = pages.address(offset);
    for (std::size_t i = 0; i != lanes; ++i) {
      const bool active = pattern.is_active(i, vl / m.lane_bytes);
      load_lane(after, m, i, active ? pages.at(offset + i * m.memory_bytes) : nullptr);
    }
    std::memset(after.ffr + lanes * m.lane_bytes, 0, vl - lanes * m.lane_bytes);
    return after;
  }

  // A load at `offset` in the first page loads so many lanes and clears FFR from there on.
  void expect_lanes(const member<handler_zprr>& m, std::size_t offset, page next, std::size_t lanes) {
    for (const lane_pattern& pattern : patterns) {
      SCOPED_TRACE(testing::Message() << m.name << " at " << offset << ", lanes: " << pattern.name
                                      << ", next page open: " << (next == page::open));
      SetUp();
      activate(pg.num, m.lane_bytes, pattern.is_active);
      const cpu_state expected = loaded(m, pattern, offset, lanes);
      close(page::open, next);
      ASSERT_FALSE(caught_fault([&] { run([&] { return load(m, offset); }); }));
      ASSERT_TRUE(same(s, expected));
      expect_trace(runs(pattern, MEM_LOAD, pages.address(offset), m.memory_bytes, m.lane_bytes));
    }
  }
};

TEST_F(FirstFault, LoadsTheLanesThatFitInThePageAsIfEachTookAWholeLane) {
  for (const auto& m : first_fault) {
    for (const std::size_t left : {vl + 1, vl, vl - 1, vl / 2 + 3, std::size_t{8}, std::size_t{7}, std::size_t{1}}) {
      expect_lanes(m, size - left, page::closed, std::min(left, vl) / m.lane_bytes);
      expect_lanes(m, size - left, page::open, vl / m.lane_bytes);
    }
    expect_lanes(m, 0, page::closed, vl / m.lane_bytes);
  }
}

TEST_F(FirstFault, AtOffset4000OfAPageOf4096) {
  if (VL_BITS != 2048) GTEST_SKIP() << "the figures are those of 2048 bits";
  expect_lanes(first_fault[0], size - 96, page::closed, 96);    // bytes
  expect_lanes(first_fault[0], size - 96, page::open, 256);     // bytes
  expect_lanes(first_fault[5], size - 96, page::closed, 12);    // words to doublewords, though 24 words would fit
  expect_lanes(first_fault[6], size - 1, page::closed, 0);      // doublewords
  expect_lanes(first_fault[0], size - 256, page::closed, 256);  // bytes, up to the page's end
}

TEST_F(FirstFault, AddressesAreBasePlusIndexElements) {
  for (const auto& m : first_fault) {
    SetUp();
    activate(pg.num, m.lane_bytes, all_lanes.is_active);
    s.sp = pages.address(size);
    s.x[9] = static_cast<std::uint64_t>(-7);
    run([&] { return m.handler(&s, zt, pg, x_or_sp(31), x_reg(9)); });
    expect_trace({record(0, 0, MEM_LOAD, vl, s.sp - 7 * m.memory_bytes)});
  }
}

TEST_F(FirstFault, ProbesOnlyTheNextPageAndOnlyWhenAWholeVectorWouldReachIt) {
  for (const auto& m : first_fault) {
    activate(pg.num, m.lane_bytes, no_lanes.is_active);
    struct {
      std::size_t offset;
      std::vector<std::uint64_t> probed;
    } const cases[] = {{0, {}},
                       {size - vl - 1, {}},
                       {size - vl, {pages.address(2 * size - vl)}},
                       {size - vl + 1, {pages.address(2 * size - vl + 1)}},
                       {size - 1, {pages.address(2 * size - 1)}}};
    for (const auto& c : cases) {
      note_probes(pages.address(0), pages.address(size));
      load(m, c.offset);
      EXPECT_EQ(probed, c.probed) << m.name << " at " << c.offset;
    }
  }
}

TEST_F(FirstFault, AClosedFirstPageIsAFault) {
  for (const auto& m : first_fault) {
    SetUp();
    close(page::closed, page::open);
    activate(pg.num, m.lane_bytes, all_lanes.is_active);
    s.x[2] = pages.address(100);
    const cpu_state before = s;
    EXPECT_EQ(caught_fault([&] { run([&] { return load(m, 100); }); }), pages.address(100)) << m.name;
    EXPECT_TRUE(same(s, before)) << m.name;
    expect_no_trace();
  }
}

TEST_F(FirstFault, AFirstActiveLaneBeyondTheCutDoesNotFault) {
  for (const auto& m : first_fault) {
    SetUp();
    const lane_pattern last = patterns[5];
    activate(pg.num, m.lane_bytes, last.is_active);
    const std::size_t offset = size - vl / 2;
    const cpu_state expected = loaded(m, no_lanes, offset, vl / m.lane_bytes / 2);
    close(page::open, page::closed);
    EXPECT_FALSE(caught_fault([&] { run([&] { return load(m, offset); }); })) << m.name;
    EXPECT_TRUE(same(s, expected)) << m.name;
    expect_trace(runs(last, MEM_LOAD, pages.address(offset), m.memory_bytes, m.lane_bytes));
  }
}

}  // namespace
