// Files that the writers of earlier versions made are read as ever. earlier_versions/ has one of each, compressed: the
// number of its bytes, and a block of LZ4's.
#include <lz4.h>

#include <fstream>

#include "tests/utils/traced_process.h"

namespace quern::test {
namespace {

// What those writers were given: a region with a loop of two loads and a store, and a gather.
trace_record wanted_record(std::uint64_t count) {
  constexpr std::uint64_t in_loop = 1400, lanes = 64;
  trace_record record{};
  if (count == 0 || count == 1 + in_loop + lanes) {
    record.kind = count == 0 ? trace_kind::start_marker : trace_kind::stop_marker;
  } else if (count <= in_loop) {
    const std::uint64_t i = count - 1;
    record.kind = i % 3 == 2 ? trace_kind::store : trace_kind::load;
    record.size = 256;
    record.addr = 0x10000 + i % 3 * 0x100000 + i / 3 * 256;
    record.pc = 0x400000 + i % 3 * 4;
  } else {
    const std::uint64_t lane = count - 1 - in_loop;
    record.kind = trace_kind::load;
    record.group = lane == 0 ? 3 : lane == lanes - 1 ? 6 : 2;
    record.size = 8;
    record.addr = 0x900000 + lane * lane % 61 * 8;
    record.pc = 0x400010;
  }
  return record;
}

struct EarlierVersion : trace_test, testing::WithParamInterface<int> {
  std::string unpacked() const {
    const std::string name = "version_" + std::to_string(GetParam()) + ".trace";
    std::ifstream file(std::string(EARLIER_VERSIONS "/") + name + ".lz4", std::ios::binary);
    const std::string stored((std::istreambuf_iterator<char>(file)), {});
    std::uint32_t size = 0;
    stored.copy(reinterpret_cast<char*>(&size), sizeof size);
    std::string trace(size, 0);
    const auto packed_bytes = static_cast<int>(stored.size() - sizeof size);
    EXPECT_EQ(LZ4_decompress_safe(stored.data() + sizeof size, trace.data(), packed_bytes, static_cast<int>(size)),
              static_cast<int>(size));
    std::ofstream(name, std::ios::binary) << trace;
    return name;
  }
};

TEST_P(EarlierVersion, IsReadWhole) {
  trace_reader reader(unpacked());
  EXPECT_EQ(reader.header().version, static_cast<std::uint32_t>(GetParam()));
  EXPECT_EQ(reader.summary().records, 1466u);
  EXPECT_EQ(reader.summary().damaged_chunks + reader.summary().missing + reader.summary().incomplete, 0u);
  EXPECT_EQ(reader.modules().all().size(), GetParam() < 3 ? 0u : 6u);
  EXPECT_FALSE(reader.is_cut());
  for (std::uint64_t count = 0; count != 1466; ++count) {
    const auto found = reader.next();
    const trace_record wanted = wanted_record(count);
    ASSERT_TRUE(found) << count;
    ASSERT_EQ(found->count, count);
    ASSERT_EQ(found->kind, wanted.kind) << count;
    ASSERT_EQ(found->size, wanted.size) << count;
    ASSERT_EQ(found->addr, wanted.addr) << count;
    ASSERT_EQ(found->pc, wanted.pc) << count;
    ASSERT_EQ(found->group, wanted.group) << count;
    if (wanted.pc == 0) {
      ASSERT_EQ(found->region, GetParam() < 3 ? 0u : 1u);
      ASSERT_EQ(found->time != 0, GetParam() > 1);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, EarlierVersion, testing::Values(1, 2, 3));

}  // namespace
}  // namespace quern::test
