// Blocks that say of themselves what is not so.
#include "utils/block_unpacking.h"

#include <gtest/gtest.h>
#include <lz4.h>

#include "utils/record_packing.h"

namespace quern::test {
namespace {

using byte_list = std::vector<unsigned char>;

byte_list compressed(const byte_list& bytes) {
  const auto size = static_cast<int>(bytes.size());
  byte_list packed(static_cast<std::size_t>(LZ4_compressBound(size)));
  const int packed_bytes = LZ4_compress_default(reinterpret_cast<const char*>(bytes.data()),
                                                reinterpret_cast<char*>(packed.data()), size, LZ4_compressBound(size));
  packed.resize(static_cast<std::size_t>(packed_bytes));
  return packed;
}

packed_block_header header_of(std::size_t records, std::size_t packed_bytes, std::size_t unpacked_bytes) {
  packed_block_header header{};
  header.records = static_cast<std::uint32_t>(records);
  header.packed_bytes = static_cast<std::uint32_t>(packed_bytes);
  header.unpacked_bytes = static_cast<std::uint32_t>(unpacked_bytes);
  return header;
}

// Flags of 0 are a record that is as expected, of which there are no numbers: all bytes of a block may be 0.
struct block_case {
  const char* what;
  std::size_t records, bytes;        // that there are
  std::size_t said_bytes, too_many;  // what the header says of them, and how many packed ones more than there are
  std::size_t unpacked;              // records; 0: damage
};

TEST(BlockUnpacking, BelievesNoSizesThatDoNotFitEachOther) {
  constexpr std::size_t most_records = (std::size_t{1} << 26) / sizeof(stored_record);
  constexpr block_case cases[] = {
      {"as it should be", 3, 3, 3, 0, 3},
      {"the most numbers that a record can have", 1, 1 + most_number_bytes, 1 + most_number_bytes, 0, 1},
      {"a byte more", 1, 2 + most_number_bytes, 2 + most_number_bytes, 0, 0},
      {"less bytes than flags", 3, 2, 2, 0, 0},
      {"less bytes than it says", 3, 3, 4, 0, 0},
      {"more bytes than it says", 3, 4, 3, 0, 0},
      {"less packed bytes than it says", 3, 3, 3, 1, 0},
      {"more records than a chunk can have", most_records + 1, most_records + 1, most_records + 1, 0, 0},
  };
  for (const block_case& c : cases) {
    const byte_list packed = compressed(byte_list(c.bytes));
    const unpacked_block block =
        unpack_block(header_of(c.records, packed.size() + c.too_many, c.said_bytes), packed, trace_version);
    EXPECT_EQ(block.records.size(), c.unpacked) << c.what;
    EXPECT_EQ(block.is_damaged, c.unpacked == 0) << c.what;
  }
}

TEST(BlockUnpacking, OfEarlierVersionsEndsWithItsBytes) {
  const unsigned char bytes[3] = {};
  const unpacked_block block = unpack_block(header_of(3, 2, 0), std::span(bytes).first(2), 3);
  EXPECT_EQ(block.records.size(), 2u);
  EXPECT_TRUE(block.is_damaged);
}

}  // namespace
}  // namespace quern::test
