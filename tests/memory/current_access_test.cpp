// Which bytes are suspected of a fault, by the access that was noted.
#include "sve/memory/current_access.h"

#include <gmock/gmock.h>

#include <vector>

namespace quern {
namespace {

using testing::ElementsAre;

std::vector<std::uint64_t> suspects() {
  std::array<std::uint64_t, max_suspects> bytes;
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(list_suspects(current_access, bytes))};
}

// A predicate of 4-byte lanes, of which those are active.
std::array<unsigned char, VL_BYTES> active(std::initializer_list<std::size_t> lanes) {
  std::array<unsigned char, VL_BYTES> predicate{};
  for (const std::size_t lane : lanes) predicate.at(4 * lane) = 1;
  return predicate;
}

class CurrentAccess : public testing::Test {
 protected:
  CurrentAccess() { accesses_are_noted = true; }
  ~CurrentAccess() override { accesses_are_noted = false; }
};

TEST_F(CurrentAccess, OfABlockItIsItsFirstByteAndThatOfItsSecondPage) {
  note_access(0x12000, 8, MEM_LOAD);
  EXPECT_THAT(suspects(), ElementsAre(0x12000));
  note_access(0x12FF8, 8, MEM_LOAD);
  EXPECT_THAT(suspects(), ElementsAre(0x12FF8));
  note_access(0x12FFA, 8, MEM_STORE);
  EXPECT_THAT(suspects(), ElementsAre(0x12FFA, 0x13000));
}

TEST_F(CurrentAccess, OfNeighbouringLanesItIsTheFirstActiveByteOfEachPage) {
  const auto predicate = active({1, 2, 3});
  note_lanes(0x12000, 0x7FE, MEM_LOAD, predicate.data(), 4, VL_BYTES / 4);
  EXPECT_THAT(suspects(), ElementsAre(0x127FE, 0x13000));
  note_lanes(0x12000, 0x7FE, MEM_LOAD, predicate.data(), 4, 2);
  EXPECT_THAT(suspects(), ElementsAre(0x127FE)) << "lanes past the limit are not accessed";
}

TEST_F(CurrentAccess, OfAddressesItIsEachActiveOneThatWasReached) {
  const auto predicate = active({0, 2, 3});
  lane_addresses[0] = 0x700000;  // an earlier instruction's
  note_addresses(4, MEM_LOAD, predicate.data(), 4);
  EXPECT_THAT(suspects(), ElementsAre());
  lane_addresses[0] = 0x500FFE;
  lane_addresses[1] = 0x600000;
  EXPECT_THAT(suspects(), ElementsAre(0x500FFE, 0x501000));
  lane_addresses[2] = 0x300000;
  EXPECT_THAT(suspects(), ElementsAre(0x500FFE, 0x501000, 0x300000));
}

TEST_F(CurrentAccess, NothingIsNotedUnlessAHostAsks) {
  const auto predicate = active({0});
  note_access(0x12000, 8, MEM_LOAD);
  accesses_are_noted = false;
  note_access(0x13000, 8, MEM_LOAD);
  note_lanes(0x14000, 8, MEM_LOAD, predicate.data(), 4, VL_BYTES / 4);
  note_addresses(4, MEM_LOAD, predicate.data(), 4);
  EXPECT_THAT(suspects(), ElementsAre(0x12000));
}

}  // namespace
}  // namespace quern
