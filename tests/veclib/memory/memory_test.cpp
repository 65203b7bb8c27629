// Loads and stores of the library, form by form: which element goes to which address.
#include <gtest/gtest.h>

#include <vector>

#include "sve/veclib/memory/broadcast.h"
#include "sve/veclib/memory/contiguous.h"
#include "sve/veclib/memory/fault_tolerant.h"
#include "sve/veclib/memory/gather_scatter.h"
#include "sve/veclib/memory/structure.h"
#include "sve/veclib/memory/whole_register.h"
#include "tests/support/trace_recorder.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

constexpr std::size_t lanes32 = VL_BYTES / 4, lanes64 = VL_BYTES / 8;

// Room for four vectors before and behind the base, byte k being of value 37 * k.
class LibraryMemory : public testing::Test {
 protected:
  LibraryMemory() {
    for (std::size_t k = 0; k != sizeof bytes; ++k) bytes[k] = static_cast<unsigned char>(37 * k);
  }

  static constexpr std::size_t middle = 8 * VL_BYTES;
  std::uint64_t base() const { return reinterpret_cast<std::uint64_t>(bytes + middle); }

  template <class T>
  T element(std::ptrdiff_t offset) const {
    return quern::lane<T>(bytes + middle + offset, 0);
  }

  unsigned char bytes[16 * VL_BYTES];
  CpuContext ctx = context();
};

// Lanes 0 and 2 of T's width.
template <class T>
const PredV some = predicate_of<T>({0, 2});

// Lanes 0 and 2 of `result` are what `expected` says, all others 0.
template <class T, class Expected>
void expect_some(const VecV& result, Expected expected) {
  for (std::size_t i = 0; i != quern::lane_count<T>; ++i)
    EXPECT_EQ(lane_of<T>(result, i), i == 0 || i == 2 ? static_cast<T>(expected(static_cast<std::ptrdiff_t>(i))) : T{0})
        << i;
}

TEST_F(LibraryMemory, ContiguousLoadsCountVectorsOrElements) {
  constexpr std::ptrdiff_t lanes = lanes32;
  expect_some<std::uint32_t>(VecU32CLoad2SIZ(some<std::uint32_t>, base(), -2, &ctx),
                             [&](std::ptrdiff_t i) { return element<std::uint16_t>((-2 * lanes + i) * 2); });
  expect_some<std::int32_t>(VecS32CLoad1LSSZ(some<std::uint32_t>, base(), 5, &ctx),
                            [&](std::ptrdiff_t i) { return element<std::int8_t>(5 + i); });
  expect_some<std::uint32_t>(VecU32CLoadNT4LSSZ(some<std::uint32_t>, base(), ~std::uint64_t{0}, &ctx),
                             [&](std::ptrdiff_t i) { return element<std::uint32_t>((i - 1) * 4); });
  expect_some<std::uint32_t>(VecU32CLoadNT4SIZ(some<std::uint32_t>, base(), 1, &ctx),
                             [&](std::ptrdiff_t i) { return element<std::uint32_t>((lanes + i) * 4); });
}

TEST_F(LibraryMemory, ContiguousStoresWriteActiveLanesAlone) {
  const VecV zt = counting_vector<std::uint32_t>(0xA0B0C0D0);
  const std::vector<unsigned char> before(std::begin(bytes), std::end(bytes));
  VecU32CStore2LSSZ(some<std::uint32_t>, base(), 3, zt, &ctx);
  EXPECT_EQ(element<std::uint16_t>(6), 0xC0D0);
  EXPECT_EQ(element<std::uint16_t>(10), 0xC0D2);
  std::size_t changed = 0;
  for (std::size_t k = 0; k != sizeof bytes; ++k) changed += bytes[k] != before[k];
  EXPECT_LE(changed, 4u);
  EXPECT_EQ(element<std::uint16_t>(8), quern::lane<std::uint16_t>(before.data() + middle + 8, 0));
  VecU32CStore4SIZ(some<std::uint32_t>, base(), 1, zt, &ctx);
  EXPECT_EQ(element<std::uint32_t>(VL_BYTES + 8), 0xA0B0C0D2);
  VecU8CStoreNT1SIZ(predicate_of<std::uint8_t>({1}), base(), -1, zt, &ctx);
  EXPECT_EQ(element<std::uint8_t>(1 - VL_BYTES), 0xC0);
}

TEST_F(LibraryMemory, FirstFaultAndNonFaultLoadsOfGoodAddressesAreLoads) {
  ctx.ffr = all_true<std::uint8_t>();
  expect_some<std::int32_t>(VecS32CLoadFF1LSSZ(some<std::uint32_t>, base(), 5, &ctx),
                            [&](std::ptrdiff_t i) { return element<std::int8_t>(5 + i); });
  expect_some<std::uint64_t>(VecU64CLoadFF2LSSZ(some<std::uint64_t>, base(), 5, &ctx),
                             [&](std::ptrdiff_t i) { return element<std::uint16_t>((5 + i) * 2); });
  expect_some<std::uint16_t>(VecU16CLoadNF2SIZ(some<std::uint16_t>, base(), 1, &ctx),
                             [&](std::ptrdiff_t i) { return element<std::uint16_t>(VL_BYTES + i * 2); });
  EXPECT_EQ(ctx.ffr, all_true<std::uint8_t>());
}

// Offsets whose low halves are -4, -3, -2, ..., signed, with 1 in the upper halves.
const VecV odd_offsets = counting_vector<std::uint64_t>(0x1'FFFFFFFC);

TEST_F(LibraryMemory, GathersFormTheirAddressesByTheLettersOfTheirNames) {
  const PredV pg = some<std::uint64_t>;
  const VecV addresses = counting_vector<std::uint64_t>(base(), 3), offsets = counting_vector<std::uint64_t>(1, 5);
  const auto expect = [&](const VecV& result, auto offset) {
    expect_some<std::uint64_t>(result, [&](std::ptrdiff_t i) { return element<std::uint16_t>(offset(i)); });
  };
  for (auto* load : {VecU64Load2VIZ, VecU64LoadFF2VIZ})
    expect(load(pg, addresses, 7, &ctx), [](std::ptrdiff_t i) { return 3 * i + 14; });
  for (auto* load : {VecU64Load2VSZ, VecU64LoadFF2VSZ})
    expect(load(pg, offsets, base(), &ctx), [](std::ptrdiff_t i) { return 1 + 5 * i; });
  for (auto* load : {VecU64Load2XVSZ, VecU64LoadFF2XVSZ})
    expect(load(pg, odd_offsets, base(), &ctx), [](std::ptrdiff_t i) { return i - 4; });
  for (auto* load : {VecU64Load2YVSZ, VecU64LoadFF2YVSZ})
    expect(load(pg, odd_offsets, base() - 0xFFFFFFFC, &ctx), [](std::ptrdiff_t i) { return i; });
  for (auto* load : {VecU64Load2SVZ, VecU64LoadFF2SVZ})
    expect(load(pg, base(), offsets, &ctx), [](std::ptrdiff_t i) { return 2 * (1 + 5 * i); });
  for (auto* load : {VecU64Load2XSVZ, VecU64LoadFF2XSVZ})
    expect(load(pg, base(), odd_offsets, &ctx), [](std::ptrdiff_t i) { return 2 * (i - 4); });
  for (auto* load : {VecU64Load2YSVZ, VecU64LoadFF2YSVZ})
    expect(load(pg, base() - 2 * std::uint64_t{0xFFFFFFFC}, odd_offsets, &ctx), [](std::ptrdiff_t i) { return 2 * i; });
}

TEST_F(LibraryMemory, GathersIntoWordsTakeOffsetsAsUnsignedButForX) {
  const VecV offsets = counting_vector<std::uint32_t>(0xFFFFFFFE);  // -2, -1, 0
  const PredV pg = some<std::uint32_t>;
  expect_some<std::int32_t>(VecS32Load1XVSZ(pg, offsets, base(), &ctx),
                            [&](std::ptrdiff_t i) { return element<std::int8_t>(i - 2); });
  expect_some<std::uint32_t>(VecU32Load2VSZ(predicate_of<std::uint32_t>({0}), offsets, base() - 0xFFFFFFFE, &ctx),
                             [&](std::ptrdiff_t i) { return i == 0 ? element<std::uint16_t>(0) : 0; });
}

TEST_F(LibraryMemory, ScattersWriteActiveLanesAlone) {
  const VecV zt = counting_vector<std::uint64_t>(0xA0B0C0D0), offsets = counting_vector<std::uint64_t>(1, 5);
  const std::uint16_t between = element<std::uint16_t>(6), beyond = element<std::uint16_t>(11);
  VecU64Store2VSZ(some<std::uint64_t>, offsets, base(), zt, &ctx);
  EXPECT_EQ(element<std::uint16_t>(1), 0xC0D0);
  EXPECT_EQ(element<std::uint16_t>(6), between);
  const bool has_third = quern::lane_count<std::uint64_t> > 2;
  EXPECT_EQ(element<std::uint16_t>(11), has_third ? 0xC0D2 : beyond);
  const std::uint64_t far = element<std::uint64_t>(88);
  VecU64Store8SVZ(some<std::uint64_t>, base(), offsets, zt, &ctx);
  EXPECT_EQ(element<std::uint64_t>(88), has_third ? 0xA0B0C0D2 : far);
  VecU64Store4XSVZ(some<std::uint64_t>, base(), odd_offsets, zt, &ctx);
  EXPECT_EQ(element<std::uint32_t>(-16), 0xA0B0C0D0u);
}

TEST_F(LibraryMemory, AReplicatedElementGoesToActiveLanes) {
  expect_some<std::int64_t>(VecS64LoadDup2SIZ(some<std::uint64_t>, base(), 9, &ctx),
                            [&](std::ptrdiff_t) { return element<std::int16_t>(18); });
}

TEST_F(LibraryMemory, AReplicatedQuadwordIsInEveryQuadword) {
  const PredV pg = predicate_of<std::uint16_t>({0, 2, 7});
  const VecV by_imm = VecU16LoadDup2QSIZ(pg, base(), -3, &ctx), by_offset = VecU16LoadDup2QSSZ(pg, base(), 5, &ctx);
  for (std::size_t i = 0; i != quern::lane_count<std::uint16_t>; ++i) {
    const std::ptrdiff_t j = static_cast<std::ptrdiff_t>(i % 8);
    const bool active = j == 0 || j == 2 || j == 7;
    EXPECT_EQ(lane_of<std::uint16_t>(by_imm, i), active ? element<std::uint16_t>(-48 + 2 * j) : 0) << i;
    EXPECT_EQ(lane_of<std::uint16_t>(by_offset, i), active ? element<std::uint16_t>(10 + 2 * j) : 0) << i;
  }
}

TEST_F(LibraryMemory, StructuresAreInterleavedInMemory) {
  VecV loaded[3];
  VecU32E3Load4SIZ(some<std::uint32_t>, base(), -1, loaded, &ctx);
  for (std::ptrdiff_t r = 0; r != 3; ++r)
    expect_some<std::uint32_t>(
        loaded[r], [&](std::ptrdiff_t i) { return element<std::uint32_t>(-3 * VL_BYTES + i * 12 + r * 4); });
  VecU32E3Load4LSSZ(some<std::uint32_t>, base(), 7, loaded, &ctx);
  for (std::ptrdiff_t r = 0; r != 3; ++r)
    expect_some<std::uint32_t>(loaded[r],
                               [&](std::ptrdiff_t i) { return element<std::uint32_t>(28 + i * 12 + r * 4); });
  const VecV stored[2] = {counting_vector<std::uint64_t>(1), counting_vector<std::uint64_t>(101)};
  const std::uint64_t between = element<std::uint64_t>(16), third = element<std::uint64_t>(40);
  VecU64E2Store8LSSZ(some<std::uint64_t>, base(), 0, stored, &ctx);
  EXPECT_EQ(element<std::uint64_t>(0), 1u);
  EXPECT_EQ(element<std::uint64_t>(8), 101u);
  EXPECT_EQ(element<std::uint64_t>(16), between);
  EXPECT_EQ(element<std::uint64_t>(40), quern::lane_count<std::uint64_t> > 2 ? 103 : third);
}

TEST_F(LibraryMemory, WholeRegistersAreFilledAndSpilled) {
  const VecV vector = VecU64FillSI(base(), -2, &ctx);
  EXPECT_EQ(std::memcmp(vector.bytes, bytes + middle - 2 * VL_BYTES, VL_BYTES), 0);
  const PredV predicate = VecPFillSI(base(), 3, &ctx);
  EXPECT_EQ(std::memcmp(&predicate, bytes + middle + 3 * VL_BYTES / 8, VL_BYTES / 8), 0);
  VecU64SpillSI(base(), 1, vector, &ctx);
  EXPECT_EQ(std::memcmp(vector.bytes, bytes + middle + VL_BYTES, VL_BYTES), 0);
  const unsigned char behind = bytes[middle - VL_BYTES / 8];
  VecPSpillSI(base(), -2, predicate, &ctx);
  EXPECT_EQ(std::memcmp(&predicate, bytes + middle - VL_BYTES / 4, VL_BYTES / 8), 0);
  EXPECT_EQ(bytes[middle - VL_BYTES / 8], behind);
}

TEST_F(LibraryMemory, IsInvisibleToTheTrace) {
  const VecV addresses = counting_vector<std::uint64_t>(base(), 8);
  const PredV all = all_true<std::uint8_t>();
  for (const bool traced : {false, true}) {
    enable_trace = traced;
    quern::start_recording();
    VecU8LoadDup1QSIZ(all, base(), 0, &ctx);
    VecS32CLoadFF1LSSZ(all, base(), 0, &ctx);
    VecU64CLoadFF2LSSZ(all, base(), 0, &ctx);
    VecU64LoadFF8VIZ(all, addresses, 0, &ctx);
    VecU64Store8VIZ(all, addresses, 0, addresses, &ctx);
    enable_trace = false;
    EXPECT_TRUE(quern::recorded_trace().empty());
    EXPECT_EQ(quern::counts_given(), 0u);
  }
}

}  // namespace
