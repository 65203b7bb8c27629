// Gathers and scatters.
#include "sve/handlers/memory/gather_scatter.h"

#include <optional>

#include "tests/handlers/memory/element_letters.h"
#include "tests/handlers/memory/memory_fixture.h"

namespace {

using namespace quern;

enum class extension { none, sxtw, uxtw };

struct member : element_sizes {
  member(const char* n, handler_zpzi* h, extension x, memaccess_type_t k, element_sizes e)
      : element_sizes(e), name(n), zpzi(h), extend(x), kind(k) {}
  member(const char* n, handler_zpzr* h, extension x, memaccess_type_t k, element_sizes e)
      : element_sizes(e), name(n), zpzr(h), extend(x), kind(k) {}
  member(const char* n, handler_zprz* h, extension x, memaccess_type_t k, element_sizes e)
      : element_sizes(e), name(n), zprz(h), extend(x), kind(k) {}

  // One of the three is there: a vector of addresses; offsets and a base; a base and indices.
  const char* name;
  handler_zpzi* zpzi = nullptr;
  handler_zpzr* zpzr = nullptr;
  handler_zprz* zprz = nullptr;
  extension extend;
  memaccess_type_t kind;

  aarch64_decode_rc operator()(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zv,
                               aarch64_i_rsp_reg base, unsigned imm) const {
    if (zpzi != nullptr) return zpzi(s, zt, pg, zv, imm);
    if (zpzr != nullptr) return zpzr(s, zt, pg, zv, base);
    return zprz(s, zt, pg, base, zv);
  }

  // Where the element is that a lane's value points to.
  std::uint64_t address(std::uint64_t value, std::uint64_t base, unsigned imm) const {
    if (zpzi != nullptr) return value + imm * memory_bytes;
    std::uint64_t offset = value;
    if (extend == extension::uxtw) offset = value & 0xFFFF'FFFF;
    if (extend == extension::sxtw) offset = ((value & 0xFFFF'FFFF) ^ 0x8000'0000) - 0x8000'0000;
    return base + offset * (zprz != nullptr ? memory_bytes : 1);
  }
};

// `letters` begin with those of the instruction, which don't count.
element_sizes sizes_behind_instruction(std::string_view letters) { return sizes_of(letters.substr(3)); }

const member members[] = {
#define MEMBER(kind, name, form, extend) \
  member(#name #form, sve_##name##form, extension::extend, kind, sizes_behind_instruction(#name)),
#define WORDS(kind, name, M, T)        \
  MEMBER(kind, name, _zpzi, none)      \
  MEMBER(kind, name, _sxtw_zpzr, sxtw) \
  MEMBER(kind, name, _uxtw_zpzr, uxtw)
#define SCALED_WORDS(kind, name, M, T)        \
  WORDS(kind, name, M, T)                     \
  MEMBER(kind, name, _sxtw_scaled_zprz, sxtw) \
  MEMBER(kind, name, _uxtw_scaled_zprz, uxtw)
#define DOUBLEWORDS(kind, name, M, T) \
  WORDS(kind, name, M, T)             \
  MEMBER(kind, name, _zpzr, none)
#define SCALED_DOUBLEWORDS(kind, name, M, T) \
  SCALED_WORDS(kind, name, M, T)             \
  MEMBER(kind, name, _zpzr, none)            \
  MEMBER(kind, name, _scaled_zprz, none)
#include "sve/handlers/memory/gather_scatter.def"
#undef MEMBER
};

// The pages lie around 4 GiB, so that a 32-bit lane can hold an address in them and a sum can leave 32 bits.
constexpr std::uint64_t line = std::uint64_t{1} << 32;

class GatherScatter : public MemoryHandlers {
 protected:
  void SetUp() override {
    MemoryHandlers::SetUp();
    fill(open(), closed() - open());
    s.sp = line;
  }

  // Lane values that lead into the open pages at any alignment, on either side of the line where the form can. Bits
  // that don't count are left as they are: anything.
  void point_lanes(const member& m) {
    for (std::size_t i = 0; i != vl / m.lane_bytes; ++i) {
      const auto some = static_cast<std::int64_t>(random() % 400);
      if (m.zpzi != nullptr) {
        set_lane_of(zv.num, i, m.lane_bytes, line - 1 - static_cast<std::uint64_t>(some));
      } else if (m.extend == extension::none) {
        set_lane_of(zv.num, i, 8, static_cast<std::uint64_t>(some - 200));
      } else {
        const std::int64_t offset = m.extend == extension::sxtw ? some - 200 : some;
        put_element(s.z[zv.num] + i * m.lane_bytes, 4, static_cast<std::uint64_t>(offset));
      }
    }
  }
  void point_lane(const member& m, std::size_t i, std::uint64_t address) {
    const std::uint64_t value = m.zpzi != nullptr   ? address - imm * m.memory_bytes
                                : m.zprz != nullptr ? (address - s.sp) / m.memory_bytes
                                                    : address - s.sp;
    set_lane_of(zv.num, i, m.lane_bytes, value);
  }

  std::vector<std::uint64_t> addresses(const member& m) const {
    std::vector<std::uint64_t> list;
    for (std::size_t i = 0; i != vl / m.lane_bytes; ++i)
      list.push_back(m.address(lane_of(zv.num, i, m.lane_bytes), s.sp, imm));
    return list;
  }

  // Does to `after` and `image` (the open pages) what lanes before `end` do.
  void model(const member& m, const lane_pattern& pattern, std::size_t end, cpu_state& after,
             std::vector<unsigned char>& image) {
    const std::vector<std::uint64_t> at = addresses(m);
    for (std::size_t i = 0; i != end; ++i) {
      const bool active = pattern.is_active(i, vl / m.lane_bytes);
      unsigned char* const in_register = after.z[zt.num] + i * m.lane_bytes;
      unsigned char* const in_memory =
          active ? image.data() + (at[i] - reinterpret_cast<std::uint64_t>(open())) : nullptr;
      if (m.kind == MEM_STORE) {
        if (active) std::memcpy(in_memory, in_register, m.memory_bytes);
      } else {
        put_element(in_register, m.lane_bytes, active ? element_at(in_memory, m.memory_bytes, m.sign_extends) : 0);
      }
    }
  }

  auto call(const member& m) {
    return [&] { return m(&s, zt, pg, zv, x_or_sp(31), imm); };
  }

  unsigned char* open() { return pages.at(mapped_pages::size()); }
  unsigned char* closed() { return pages.at(3 * mapped_pages::size()); }
  std::vector<unsigned char> memory() { return {open(), closed()}; }

  mapped_pages pages{{page::closed, page::open, page::open, page::closed}, line - 2 * mapped_pages::size()};
  const aarch64_z_reg zt = z_reg(31, size_b), zv = z_reg(1, size_b);
  const aarch64_p_reg pg = p_reg(5, p_zeroing);
  unsigned imm = 31;
};

TEST_F(GatherScatter, MovesEachActiveLanesElement) {
  for (const member& m : members) {
    for (const lane_pattern& pattern : patterns) {
      SCOPED_TRACE(testing::Message() << m.name << ", lanes: " << pattern.name);
      SetUp();
      activate(pg.num, m.lane_bytes, pattern.is_active);
      point_lanes(m);
      cpu_state registers = s;
      std::vector<unsigned char> image = memory();
      model(m, pattern, vl / m.lane_bytes, registers, image);
      const std::vector<std::uint64_t> at = addresses(m);
      run(call(m));
      ASSERT_TRUE(same(s, registers));
      ASSERT_EQ(memory(), image);
      expect_trace(one_each(pattern, m.kind, m.memory_bytes, vl / m.lane_bytes, [&](std::size_t i) { return at[i]; }));
    }
  }
}

TEST_F(GatherScatter, ADestinationMayBeTheVectorOperand) {
  for (const member& m : members) {
    if (m.kind == MEM_STORE) continue;
    SetUp();
    activate(pg.num, m.lane_bytes, mixed_lanes.is_active);
    point_lanes(m);
    cpu_state registers = s;
    std::vector<unsigned char> image = memory();
    model(m, mixed_lanes, vl / m.lane_bytes, registers, image);
    run([&] { return m(&s, zv, pg, zv, x_or_sp(31), imm); });
    EXPECT_EQ(std::memcmp(s.z[zv.num], registers.z[zt.num], vl), 0) << m.name;
  }
}

TEST_F(GatherScatter, AnAllFalsePredicateTouchesNoMemory) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.lane_bytes, no_lanes.is_active);
    for (std::size_t i = 0; i != vl / m.lane_bytes; ++i) point_lane(m, i, reinterpret_cast<std::uint64_t>(closed()));
    EXPECT_FALSE(caught_fault([&] { run(call(m)); })) << m.name;
    expect_no_trace();
  }
}

TEST_F(GatherScatter, ImmediatesCountElementsAndAddressesAreNotSignExtended) {
  imm = 4;
  activate(0, 4, all_lanes.is_active);
  for (std::size_t i = 0; i != vl / 4; ++i) set_lane_of(1, i, 4, 0xFFFF'FFFF);
  run([&] { return sve_ld1w_zpzi(&s, z_reg(0, size_b), p_reg(0, p_zeroing), z_reg(1, size_b), imm); });
  for (std::size_t i = 0; i != vl / 4; ++i) {
    EXPECT_EQ(lane_of(0, i, 4), element_at(pages.at(2 * mapped_pages::size() + 15), 4, false));
    EXPECT_EQ(recorded_trace()[i].addr, line + 15);
  }
}

TEST_F(GatherScatter, SignExtendedIndicesIgnoreTheHighWord) {
  activate(0, 8, all_lanes.is_active);
  s.x[0] = line;
  for (std::size_t i = 0; i != vl / 8; ++i) set_lane_of(1, i, 8, 0x1234'5678'FFFF'FFFE);
  run([&] {
    return sve_ld1d_sxtw_scaled_zprz(&s, z_reg(0, size_b), p_reg(0, p_zeroing), x_or_sp(0), z_reg(1, size_b));
  });
  for (std::size_t i = 0; i != vl / 8; ++i)
    EXPECT_EQ(lane_of(0, i, 8), element_at(pages.at(2 * mapped_pages::size() - 16), 8, false));
}

TEST_F(GatherScatter, SumsWrapAt64Bits) {
  activate(0, 8, all_lanes.is_active);
  s.x[0] = ~std::uint64_t{0} - 7;
  for (std::size_t i = 0; i != vl / 8; ++i) set_lane_of(1, i, 8, line + 8);
  run([&] { return sve_ld1d_zpzr(&s, z_reg(0, size_b), p_reg(0, p_zeroing), z_reg(1, size_b), x_or_sp(0)); });
  EXPECT_EQ(recorded_trace()[0].addr, line);
  EXPECT_EQ(lane_of(0, 0, 8), element_at(pages.at(2 * mapped_pages::size()), 8, false));
}

TEST_F(GatherScatter, OfEqualAddressesTheHighestLaneStays) {
  activate(0, 4, all_lanes.is_active);
  for (std::size_t i = 0; i != vl / 4; ++i) {
    set_lane_of(0, i, 4, 1000 + i);
    set_lane_of(1, i, 4, 0xFFFF'FF00);
  }
  run([&] { return sve_st1w_zpzi(&s, z_reg(0, size_b), p_reg(0, p_zeroing), z_reg(1, size_b), 0); });
  EXPECT_EQ(element_at(pages.at(2 * mapped_pages::size() - 256), 4, false), 1000 + vl / 4 - 1);
  expect_trace(one_each(all_lanes, MEM_STORE, 4, vl / 4, [](std::size_t) { return 0xFFFF'FF00; }));
}

TEST_F(GatherScatter, BytesAreSignOrZeroExtended) {
  activate(0, 4, all_lanes.is_active);
  *pages.at(2 * mapped_pages::size() - 1) = 0x80;
  for (std::size_t i = 0; i != vl / 4; ++i) set_lane_of(1, i, 4, 0xFFFF'FFFF);
  run([&] { return sve_ld1sb_s_zpzi(&s, z_reg(2, size_b), p_reg(0, p_zeroing), z_reg(1, size_b), 0); });
  run([&] { return sve_ld1b_s_zpzi(&s, z_reg(3, size_b), p_reg(0, p_zeroing), z_reg(1, size_b), 0); });
  EXPECT_EQ(lane_of(2, 1, 4), 0xFFFF'FF80u);
  EXPECT_EQ(lane_of(3, 1, 4), 0x80u);
}

TEST_F(GatherScatter, OneActiveLaneIsTheFirstAndLastOfItsGroup) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.lane_bytes, [](std::size_t i, std::size_t) { return i == 1; });
    point_lanes(m);
    const std::uint64_t at = addresses(m)[1];
    run(call(m));
    expect_trace({record(0, 7, m.kind, m.memory_bytes, at)});
  }
}

TEST_F(GatherScatter, WithTracingOffNothingIsReported) {
  for (const member& m : members) {
    activate(pg.num, m.lane_bytes, all_lanes.is_active);
    point_lanes(m);
    call(m)();
  }
  expect_no_trace();
}

TEST_F(GatherScatter, AFaultLeavesTheLanesBeforeItDone) {
  for (const member& m : members) {
    SetUp();
    activate(pg.num, m.lane_bytes, odd_lanes.is_active);
    point_lanes(m);
    const std::size_t bad = vl / m.lane_bytes / 2 | 1;  // an active one
    // Vectors of 32-bit addresses reach no closed page but the one below.
    const bool below = m.zpzi != nullptr && m.lane_bytes == 4;
    const std::uint64_t bad_address = below ? pages.address(0) + 256 : reinterpret_cast<std::uint64_t>(closed());
    point_lane(m, bad, bad_address);
    cpu_state registers = s;
    std::vector<unsigned char> image = memory();
    model(m, odd_lanes, bad, registers, image);
    EXPECT_EQ(caught_fault([&] { run(call(m)); }), bad_address) << m.name;
    EXPECT_TRUE(same(s, registers)) << m.name;
    EXPECT_EQ(memory(), image) << m.name;
    expect_no_trace();
  }
}

}  // namespace
