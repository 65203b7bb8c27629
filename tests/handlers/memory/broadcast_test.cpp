// Loads of one memory element into every active lane.
#include "sve/handlers/memory/broadcast.h"

#include "tests/handlers/memory/element_letters.h"
#include "tests/handlers/memory/memory_fixture.h"

namespace {

using namespace quern;

struct member : element_sizes {
  const char* name;
  handler_zpri_unsigned* handler;
};

const member members[] = {
#define ELEMENT(letters, M, T, U) {sizes_of(#letters), "ld1r" #letters, sve_ld1r##letters##_zpri},
#include "sve/handlers/memory/elements.def"
};

class Broadcast : public MemoryHandlers {
 protected:
  mapped_pages pages{page::open, page::closed};
  const aarch64_z_reg zt = z_reg(9, size_b);
  const aarch64_p_reg pg = p_reg(7, p_zeroing);
};

TEST_F(Broadcast, EveryActiveLaneGetsTheElement) {
  for (const member& m : members) {
    for (const lane_pattern& pattern : patterns) {
      for (const unsigned imm : {0u, 1u, 63u}) {
        for (const bool negative : {false, true}) {
          SetUp();
          activate(pg.num, m.lane_bytes, pattern.is_active);
          unsigned char* const element = pages.at(3 + imm * m.memory_bytes);
          fill(element, m.memory_bytes);
          element[m.memory_bytes - 1] = negative ? 0x93 : 0x13;
          s.sp = pages.address(3);
          cpu_state expected = s;
          for (std::size_t i = 0; i != vl / m.lane_bytes; ++i) {
            put_element(
                expected.z[zt.num] + i * m.lane_bytes, m.lane_bytes,
                pattern.is_active(i, vl / m.lane_bytes) ? element_at(element, m.memory_bytes, m.sign_extends) : 0);
          }
          run([&] { return m.handler(&s, zt, pg, x_or_sp(31), imm); });
          ASSERT_TRUE(same(s, expected)) << m.name << " #" << imm << ", lanes: " << pattern.name;
          expect_no_trace();
        }
      }
    }
  }
}

TEST_F(Broadcast, AnAllFalsePredicateTouchesNoMemory) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.lane_bytes, no_lanes.is_active);
    s.x[1] = pages.address(mapped_pages::size());
    cpu_state expected = s;
    std::memset(expected.z[zt.num], 0, vl);
    EXPECT_FALSE(caught_fault([&] { run([&] { return m.handler(&s, zt, pg, x_or_sp(1), 0); }); })) << m.name;
    EXPECT_TRUE(same(s, expected)) << m.name;
  }
}

TEST_F(Broadcast, TheFirstActiveLaneFaults) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.lane_bytes, odd_lanes.is_active);
    s.x[1] = pages.address(mapped_pages::size());
    cpu_state expected = s;
    std::memset(expected.z[zt.num], 0, m.lane_bytes);
    EXPECT_EQ(caught_fault([&] { run([&] { return m.handler(&s, zt, pg, x_or_sp(1), 0); }); }), s.x[1]) << m.name;
    EXPECT_TRUE(same(s, expected)) << m.name;
  }
}

}  // namespace
