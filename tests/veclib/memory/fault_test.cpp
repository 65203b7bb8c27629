// What faults do to loads of the library.
#include <gtest/gtest.h>

#include <vector>

#include "sve/memory/guest_memory.h"
#include "sve/memory/memory_host.h"
#include "sve/veclib/memory/broadcast.h"
#include "sve/veclib/memory/fault_tolerant.h"
#include "sve/veclib/memory/gather_scatter.h"
#include "tests/support/mapped_pages.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;
using quern::mapped_pages;
using quern::page;

// What has been probed, by a host where nothing from `closed_from` on can be read.
std::vector<std::uint64_t> probed;
std::uint64_t closed_from;
bool noting_probe(std::uint64_t address, bool) {
  probed.push_back(address);
  return address < closed_from;
}

constexpr std::size_t lanes64 = VL_BYTES / 8;
constexpr bool more_than_two_lanes = lanes64 > 2;

class LibraryFaults : public testing::Test {
 protected:
  void SetUp() override {
    SVEInitialize();
    ctx.ffr = all_true<std::uint8_t>();
    for (std::size_t k = 0; k != mapped_pages::size(); ++k) *pages.at(k) = static_cast<unsigned char>(k);
  }

  std::uint64_t edge() const { return pages.address(mapped_pages::size()); }

  // FFR after a load of 64-bit lanes that faulted in this one.
  static PredV ffr_below(std::size_t lane) { return first_elements<std::uint8_t>(8 * lane); }

  mapped_pages pages{page::open, page::closed};
  CpuContext ctx = context();
};

TEST_F(LibraryFaults, OfTheFirstActiveLaneGiveZeroesAndClearFfr) {
  const VecV addresses = counting_vector<std::uint64_t>(edge(), 2);
  EXPECT_EQ(VecU64LoadFF2VIZ(all_true<std::uint64_t>(), addresses, 0, &ctx), VecV{});
  EXPECT_EQ(ctx.ffr, PredV{});
}

TEST_F(LibraryFaults, LeaveLanesBelowAndTheirFfr) {
  if (!more_than_two_lanes) GTEST_SKIP() << "the vector has two lanes";
  VecV addresses = counting_vector<std::uint64_t>(pages.address(16), 8);
  quern::set_lane(addresses.bytes, 3, edge());  // those above are good again, but are not read
  const VecV result = VecU64LoadFF8VIZ(all_true<std::uint64_t>(), addresses, 0, &ctx);
  for (std::size_t i = 0; i != lanes64; ++i)
    EXPECT_EQ(lane_of<std::uint64_t>(result, i), i < 3 ? quern::lane<std::uint64_t>(pages.at(16), i) : 0) << i;
  EXPECT_EQ(ctx.ffr, ffr_below(3));
}

TEST_F(LibraryFaults, NeverSetFfr) {
  ctx.ffr = predicate_of<std::uint8_t>({0, VL_BYTES - 1});
  VecU64LoadFF8VIZ(all_true<std::uint64_t>(), counting_vector<std::uint64_t>(pages.address(0), 0), 0, &ctx);
  EXPECT_EQ(ctx.ffr, predicate_of<std::uint8_t>({0, VL_BYTES - 1}));
  VecU64LoadFF8VIZ(predicate_of<std::uint64_t>({1}), counting_vector<std::uint64_t>(edge(), 0), 0, &ctx);
  EXPECT_EQ(ctx.ffr, predicate_of<std::uint8_t>({0}));
}

TEST_F(LibraryFaults, ClearTheFfrOfInactiveLanesAboveButNotBelow) {
  const PredV lane_1 = predicate_of<std::uint64_t>({1});
  EXPECT_EQ(VecU64LoadFF8VIZ(lane_1, counting_vector<std::uint64_t>(edge(), 0), 0, &ctx), VecV{});
  EXPECT_EQ(ctx.ffr, ffr_below(1));
}

TEST_F(LibraryFaults, OfContiguousLoadsBeginAtTheEdgeOfThePage) {
  // One doubleword before the edge: four halfwords, the elements of as many lanes.
  const VecV result = VecU16CLoadFF2LSSZ(all_true<std::uint16_t>(), edge() - 8, 0, &ctx);
  for (std::size_t i = 0; i != VL_BYTES / 2; ++i) {
    const std::uint16_t expected = i < 4 ? quern::lane<std::uint16_t>(pages.at(mapped_pages::size() - 8), i) : 0;
    EXPECT_EQ(lane_of<std::uint16_t>(result, i), expected) << i;
  }
  EXPECT_EQ(ctx.ffr, ffr_below(1));
  ctx.ffr = all_true<std::uint8_t>();
  VecU64CLoadNF8SIZ(all_true<std::uint64_t>(), edge() - 8, 0, &ctx);
  EXPECT_EQ(ctx.ffr, ffr_below(1));
}

TEST_F(LibraryFaults, OfAnElementInTwoPagesAreSeen) {
  EXPECT_EQ(VecU64CLoadFF8LSSZ(predicate_of<std::uint64_t>({0}), edge() - 4, 0, &ctx), VecV{});
  EXPECT_EQ(ctx.ffr, PredV{});
}

TEST_F(LibraryFaults, OfAnElementInTwoPagesAreSeenBehindAGoodOneInTheFirst) {
  VecV addresses = counting_vector<std::uint64_t>(pages.address(16), 0);
  quern::set_lane(addresses.bytes, 1, edge() - 4);
  const VecV result = VecU64LoadFF8VIZ(all_true<std::uint64_t>(), addresses, 0, &ctx);
  EXPECT_EQ(lane_of<std::uint64_t>(result, 0), quern::lane<std::uint64_t>(pages.at(16), 0));
  EXPECT_EQ(lane_of<std::uint64_t>(result, 1), 0u);
  EXPECT_EQ(ctx.ffr, ffr_below(1));
}

class LibraryProbes : public LibraryFaults {
 protected:
  void SetUp() override {
    LibraryFaults::SetUp();
    probed.clear();
    closed_from = edge();
    quern::use_memory_host({.set_action = sigaction, .probe = noting_probe});
  }
  void TearDown() override { quern::use_memory_host({.set_action = sigaction, .probe = nullptr}); }
};

TEST_F(LibraryProbes, OfAWholeVectorAreOneForAPage) {
  VecU16CLoadFF2LSSZ(all_true<std::uint16_t>(), pages.address(32), 0, &ctx);
  EXPECT_EQ(probed, (std::vector{pages.address(32)}));
}

TEST_F(LibraryProbes, OfAWholeVectorThatFaultsAreFollowedByThoseLaneByLane) {
  VecU64CLoadFF8LSSZ(all_true<std::uint64_t>(), edge() - 8, 0, &ctx);
  EXPECT_EQ(probed, (std::vector{edge() - 8, edge() + VL_BYTES - 9, edge() - 8, edge()}));
}

TEST_F(LibraryProbes, OfGathersAreOneWhereThePageChanges) {
  VecV addresses = counting_vector<std::uint64_t>(pages.address(0), 8);
  VecU64LoadFF8VIZ(all_true<std::uint64_t>(), addresses, 0, &ctx);
  EXPECT_EQ(probed, (std::vector{pages.address(0)}));
  probed.clear();
  quern::set_lane(addresses.bytes, 1, edge() + 8);
  VecU64LoadFF8VIZ(all_true<std::uint64_t>(), addresses, 0, &ctx);
  EXPECT_EQ(probed, (std::vector{pages.address(0), edge() + 8}));
}

TEST_F(LibraryFaults, DoNotComeFromInactiveElementsOfAQuadword) {
  // One byte before the edge is the quadword's byte 3.
  const VecV bytes = VecU8LoadDup1QSIZ(predicate_of<std::uint8_t>({3}), edge() - 4, 0, &ctx);
  for (std::size_t i = 0; i != VL_BYTES; ++i)
    EXPECT_EQ(bytes.bytes[i], i % 16 == 3 ? *pages.at(mapped_pages::size() - 1) : 0) << i;
  // A quadword's doublewords are two, whatever else the predicate has.
  const VecV doublewords = VecU64LoadDup8QSSZ(all_true<std::uint8_t>(), edge() - 24, 1, &ctx);
  for (std::size_t i = 0; i != lanes64; ++i)
    EXPECT_EQ(lane_of<std::uint64_t>(doublewords, i),
              quern::lane<std::uint64_t>(pages.at(mapped_pages::size() - 16), i % 2));
}

TEST_F(LibraryFaults, DoNotComeFromAReplicatedElementWithNoLane) {
  EXPECT_EQ(VecU8LoadDup1SIZ(PredV{}, edge(), 0, &ctx), VecV{});
}

}  // namespace
