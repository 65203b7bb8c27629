// Packed records: each comes back as it was, in few bytes where it was to be expected, and none is lost or doubled
// wherever the process was stopped.
#include "utils/record_packing.h"

#include <cstring>
#include <fstream>
#include <random>

#include "tests/utils/traced_process.h"

namespace quern::test {
namespace {

struct packed_records {
  std::vector<unsigned char> flags, numbers;
  std::size_t size() const { return flags.size() + numbers.size(); }
};

packed_records packed(const std::vector<stored_record>& records) {
  packed_records all;
  record_model model;
  for (const stored_record& record : records) {
    unsigned char flags, numbers[most_number_bytes];
    all.numbers.insert(all.numbers.end(), numbers, pack_record(model, record, flags, numbers));
    all.flags.push_back(flags);
  }
  return all;
}

void expect_same_after_unpacking(const std::vector<stored_record>& records) {
  const packed_records all = packed(records);
  const unsigned char *at = all.numbers.data(), *const end = at + all.numbers.size();
  record_model model;
  for (std::size_t i = 0; i != records.size(); ++i) {
    stored_record found;
    at = unpack_record(model, all.flags[i], at, end, found);
    ASSERT_NE(at, nullptr);
    ASSERT_EQ(std::memcmp(&found, &records[i], sizeof found), 0);
  }
  EXPECT_EQ(at, end);
}

stored_record load(std::uint64_t count, std::uint32_t group, std::uint64_t size, std::uint64_t addr, std::uint64_t pc) {
  return {
      .count = count, .tid = 7, .group = group, .kind = MEM_LOAD, .complete = 0, .size = size, .addr = addr, .pc = pc};
}

TEST(Packing, AnyRecordsComeBack) {
  std::mt19937_64 random(1);
  const auto any = [&] { return random() >> random() % 64; };
  const auto any_word = [&] { return static_cast<std::uint32_t>(random() >> 32 >> random() % 32); };
  std::vector<stored_record> records(5000);
  for (stored_record& record : records)
    record = {any(), any_word(), any_word(), any_word(), 0, any(), any(), random() % 2 != 0 ? any() : random() % 4096};
  expect_same_after_unpacking(records);
}

TEST(Packing, TheLargestDifferencesFitInTheBytesOfOneRecord) {
  const std::uint64_t half = std::uint64_t{1} << 63;
  const std::uint32_t all = 0xFFFFFFFF;
  const std::vector<stored_record> records{{half, all, all, all, 0, ~std::uint64_t{0}, half, half}};
  EXPECT_EQ(packed(records).numbers.size(), most_number_bytes - 1);
  expect_same_after_unpacking(records);
}

TEST(Packing, ALoopOverArraysTakesAByteARecord) {
  std::vector<stored_record> records;
  for (std::uint64_t i = 0; i != 1300; ++i)
    records.push_back(load(100 + i, 0, 256, 0x7F0000000000 + i % 3 * 0x1000000 + i / 3 * 256, 0x400000 + i % 3 * 8));
  expect_same_after_unpacking(records);
  EXPECT_LE(packed(records).size(), records.size() + 3 * most_number_bytes);
}

TEST(Packing, AGatherOfRandomAddressesTakesSixBytesARecord) {
  std::mt19937 random(1);
  std::vector<stored_record> records;
  for (std::uint64_t i = 0; i != 1280; ++i) {
    const std::uint32_t group = i % 64 == 0 ? 3 : i % 64 == 63 ? 6 : 2;
    records.push_back(load(i, group, 4, 0x7F0000000000 + random() % (1 << 28), 0x400000));
  }
  expect_same_after_unpacking(records);
  EXPECT_LE(packed(records).size(), 6 * records.size());
}

TEST(Packing, BytesThatEndTooSoonGiveNoRecord) {
  const packed_records one = packed({load(5, 3, 256, 0x7F0000000000, 0x400000)});
  for (std::size_t size = 0; size != one.numbers.size(); ++size) {
    record_model model;
    stored_record found;
    const unsigned char* const numbers = one.numbers.data();
    EXPECT_EQ(unpack_record(model, one.flags[0], numbers, numbers + size, found), nullptr) << size;
  }
}

TEST(Packing, FlagsThatStandForNothingGiveNoRecord) {
  record_model model;
  stored_record found;
  const unsigned char numbers[most_number_bytes]{};
  EXPECT_EQ(unpack_record(model, 0x80, numbers, numbers + sizeof numbers, found), nullptr);
  EXPECT_NE(unpack_record(model, 0x7F, numbers, numbers + sizeof numbers, found), nullptr);
}

struct PackedFile : trace_test {
  static constexpr std::uint64_t records = trace_chunk_records + 10;

  // A file of two chunks behind the list of modules: the records that were left when the first ones were packed, and
  // those.
  std::string two_chunks() {
    const child_end end = run([] {
      setenv("QUERN_TRACE", "trace", 1);
      if (!sve_init(0, "")) return 1;
      store_records(records);
      return 0;
    });
    EXPECT_TRUE(end.ended_well()) << end.errors;
    const std::string path = (folder / "trace").string();
    records_at = records_offset(path);
    EXPECT_EQ(fs::file_size(path), records_at + 2 * trace_chunk_size);
    return path;
  }
  template <class Field>
  void set(const std::string& path, std::uint64_t chunk, std::size_t offset, Field value) const {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(records_at + chunk * trace_chunk_size + offset));
    file.write(reinterpret_cast<const char*>(&value), sizeof value);
  }
  // The sizes of the blocks of each packed chunk.
  std::vector<std::vector<std::uint32_t>> block_sizes(const std::string& path) const {
    std::ifstream file(path, std::ios::binary);
    const auto read_at = [&file]<class T>(std::uint64_t at, T& into) {
      file.seekg(static_cast<std::streamoff>(at));
      return static_cast<bool>(file.read(reinterpret_cast<char*>(&into), sizeof into));
    };
    std::vector<std::vector<std::uint32_t>> sizes;
    trace_chunk_header chunk{};
    for (std::uint64_t start = records_offset(path); read_at(start, chunk); start += trace_chunk_size) {
      if (chunk.magic != packed_magic) continue;
      sizes.emplace_back();
      packed_block_header block{};
      for (std::uint32_t at = 0; at < chunk.count && read_at(start + sizeof chunk + at, block); at += block.size)
        sizes.back().push_back(block.size);
    }
    return sizes;
  }
  std::uint64_t records_at = 0;
};

TEST_F(PackedFile, AllRecordsComeBackInOrder) {
  trace_reader reader(two_chunks());
  EXPECT_EQ(reader.summary().incomplete, 0u);
  expect_all_counts(reader, records);
}

TEST_F(PackedFile, RecordsThatWerePackedAndNotYetTakenOutOfTheirChunkAreReadOnce) {
  const std::string path = two_chunks();
  set<std::uint32_t>(path, 0, offsetof(trace_chunk_header, generation), 1);
  set<std::uint32_t>(path, 0, offsetof(trace_chunk_header, count), trace_chunk_records);
  trace_reader reader(path);
  EXPECT_EQ(reader.summary().incomplete, 0u);
  expect_all_counts(reader, trace_chunk_records);
}

TEST_F(PackedFile, AChunkThatWasJustMadeEmptyHasNoRecords) {
  const std::string path = two_chunks();
  set<std::uint32_t>(path, 0, offsetof(trace_chunk_header, count), 0);
  trace_reader reader(path);
  expect_all_counts(reader, trace_chunk_records);
}

TEST_F(PackedFile, ABlockThatWasBeingWrittenDoesNotCount) {
  const std::string path = two_chunks();
  set<std::uint32_t>(path, 1, offsetof(trace_chunk_header, count), 0);
  set<std::uint32_t>(path, 0, offsetof(trace_chunk_header, generation), 1);
  set<std::uint32_t>(path, 0, offsetof(trace_chunk_header, count), trace_chunk_records);
  trace_reader reader(path);  // the ten that came later lie in the first ten's slots
  EXPECT_EQ(reader.summary().incomplete, 10u);
  EXPECT_EQ(reader.summary().records, trace_chunk_records - 10);
  EXPECT_EQ(reader.next()->count, 10u);
}

TEST_F(PackedFile, ABlockWhoseSizeCannotBeIsDamage) {
  const std::string path = two_chunks();
  for (const std::uint32_t size : {0u, 31u, trace_chunk_size}) {
    set<std::uint32_t>(path, 1, sizeof(trace_chunk_header), size);
    const trace_reader reader(path);
    EXPECT_EQ(reader.summary().damaged_chunks, 1u) << size;
    EXPECT_EQ(reader.summary().records, 10u) << size;
  }
}

TEST_F(PackedFile, DamagedBytesOfABlockCostItsRecordsAlone) {
  const std::string path = two_chunks();
  const std::size_t packed_bytes = sizeof(trace_chunk_header) + sizeof(packed_block_header);
  for (const std::uint64_t bytes : {std::uint64_t{0}, ~std::uint64_t{0}, std::uint64_t{0xFFFF0010FFFF0010}}) {
    set(path, 1, packed_bytes, bytes);
    const trace_reader reader(path);
    EXPECT_EQ(reader.summary().damaged_chunks, 1u) << bytes;
    EXPECT_EQ(reader.summary().records, 10u) << bytes;
  }
}

TEST_F(PackedFile, ABlockThatSaysWhatItCannotUnpackToIsDamage) {
  const std::string path = two_chunks();
  constexpr std::size_t block = sizeof(trace_chunk_header);
  for (const std::uint32_t size : {0u, 1u, trace_chunk_records, 1u << 20, ~0u}) {
    set(path, 1, block + offsetof(packed_block_header, unpacked_bytes), size);
    const trace_reader reader(path);
    EXPECT_EQ(reader.summary().damaged_chunks, 1u) << size;
    EXPECT_EQ(reader.summary().records, 10u) << size;
  }
}

// Records of which nothing is as expected: a full chunk makes several blocks, and a packed chunk holds less than it.
TEST_F(PackedFile, RecordsThatCannotBeCompressedComeBack) {
  constexpr std::uint64_t number = 3 * trace_chunk_records;
  const auto record = [](std::uint64_t count) {
    std::mt19937_64 random(count);
    return sve_mem_ref_t{.count = count,
                         .tid = static_cast<std::uint32_t>(random()) & 0x7FFFFFFF,
                         .group = static_cast<std::uint32_t>(random()),
                         .kind = MEM_LOAD,
                         .unused = 0,
                         .size = random(),
                         .addr = random(),
                         .pc = random() % 4096};
  };
  const child_end end = run([&] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    for (std::uint64_t i = 0; i != number; ++i) trace_mem(record(incr_count()));
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  const auto chunks = block_sizes((folder / "trace").string());
  EXPECT_GE(chunks.size(), 2u) << "a second packed chunk, when the first is full";
  for (const std::vector<std::uint32_t>& blocks : chunks) {
    EXPECT_FALSE(blocks.empty());
    for (const std::uint32_t size : blocks) EXPECT_EQ(size % alignof(packed_block_header), 0u);
  }
  trace_reader reader("trace");
  EXPECT_EQ(reader.summary().records, number);
  for (std::uint64_t count = 0; count != number; ++count) {
    const auto found = reader.next();
    const sve_mem_ref_t wanted = record(count);
    ASSERT_TRUE(found && found->count == count && found->group == wanted.group && found->size == wanted.size &&
                found->addr == wanted.addr && found->pc == wanted.pc)
        << count;
  }
}

TEST_F(PackedFile, AFileCutInItsPackedRecordsGivesTheOthers) {
  const std::string path = two_chunks();
  for (std::uint64_t size = records_at + 2 * trace_chunk_size - 1000; size > records_at + trace_chunk_size;
       size -= 997) {
    fs::resize_file(path, size);
    trace_reader reader(path);
    ASSERT_TRUE(reader.is_cut());
    std::uint64_t given = 0;
    while (const auto record = reader.next()) {
      ASSERT_TRUE(is_whole(*record));
      ++given;
    }
    ASSERT_EQ(given, reader.summary().records);
    ASSERT_GE(given, 10u);
  }
}

TEST_F(PackedFile, AMarkerTellsItsTime) {
  const auto now = [] {
    return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch() /
                                      std::chrono::nanoseconds(1));
  };
  const std::uint64_t before = now();
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    trace_mem({incr_count(), tid_start_marker, 0, MEM_STORE, 0, 0, 0, 0});
    store_records(trace_chunk_records);
    trace_mem({incr_count(), tid_stop_marker, 0, MEM_STORE, 0, 0, 0, 0});
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  trace_reader reader("trace");
  const auto start = reader.next();
  ASSERT_TRUE(start && start->kind == trace_kind::start_marker);
  std::optional<trace_record> last;
  while (const auto record = reader.next()) last = record;
  ASSERT_TRUE(last && last->kind == trace_kind::stop_marker);
  EXPECT_LE(before, start->time);
  EXPECT_LE(start->time, last->time);
  EXPECT_LE(last->time, now());
  EXPECT_EQ(last->size, 0u);
}

// A file of the first version has no packed chunks, and none of the fields that came with them.
TEST_F(PackedFile, TheFirstVersionIsReadStill) {
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    store_records(10);
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  records_at = records_offset("trace");
  set<std::uint32_t>("trace", 0, offsetof(trace_file_header, version) - records_at, 1);
  set<std::uint64_t>("trace", 0, offsetof(trace_chunk_header, time), 0);
  set<std::uint32_t>("trace", 0, offsetof(trace_chunk_header, generation), 0);
  trace_reader reader("trace");
  EXPECT_EQ(reader.header().version, 1u);
  expect_all_counts(reader, 10);
}

}  // namespace
}  // namespace quern::test
