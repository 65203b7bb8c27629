// The reader believes nothing: files cut at any byte, damaged anywhere, and files that are no traces.
#include <cstring>
#include <fstream>
#include <random>

#include "tests/utils/traced_process.h"

namespace quern::test {
namespace {

struct Reading : trace_test {
  // The file of two threads, with 4 and 3 records, the second of which ran between the first's two halves.
  std::string two_threads() {
    const child_end end = run([] {
      setenv("QUERN_TRACE", "trace", 1);
      if (!sve_init(0, "two threads")) return 1;
      store_records(2);
      pthread_t other;
      pthread_create(
          &other, nullptr, [](void*) -> void* { return store_records(3), nullptr; }, nullptr);
      pthread_join(other, nullptr);
      store_records(2);
      sve_exit();
      return 0;
    });
    EXPECT_TRUE(end.ended_well()) << end.errors;
    return (folder / "trace").string();
  }
  std::string complaint(const std::string& path) {
    try {
      trace_reader reader(path);
    } catch (const trace_error& error) {
      return error.message;
    }
    return "";
  }
  static void overwrite(const std::string& path, std::uint64_t offset, const void* bytes, std::size_t size) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(offset));
    file.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  }
};

// How many of `records` records from `first` on lie whole below `size`.
std::uint64_t whole_below(std::uint64_t size, std::uint64_t first, std::uint64_t records) {
  return size < first ? 0 : std::min((size - first) / sizeof(stored_record), records);
}

TEST_F(Reading, AFileCutAtAnyByteIsSaidToBeCutAndGivesAllWholeRecords) {
  const std::string path = two_threads();
  const std::uint64_t size = fs::file_size(path);
  const std::uint64_t first = records_offset(path) + sizeof(trace_chunk_header), second = first + trace_chunk_size;
  ASSERT_FALSE(trace_reader(path).is_cut());
  // The unused ends of the chunks are all alike: every byte near what is used, and some in between.
  for (std::uint64_t cut = size - 1; cut != 0; --cut) {
    const bool unused = (cut > second + 300 || (cut > first + 300 && cut < second - 200)) && cut % 1000 != 0;
    if (unused && cut != size - 1) continue;
    fs::resize_file(path, cut);
    trace_reader reader(path);
    ASSERT_TRUE(reader.is_cut()) << cut;
    const std::uint64_t expected = whole_below(cut, first, 4) + whole_below(cut, second, 3);
    ASSERT_EQ(reader.summary().records, expected) << cut;
    std::uint64_t given = 0;
    while (const auto record = reader.next()) {
      ASSERT_TRUE(is_whole(*record)) << cut;
      ++given;
    }
    ASSERT_EQ(given, expected) << cut;
  }
}

TEST_F(Reading, ThreadsAreMergedByCountAndToldApart) {
  trace_reader reader(two_threads());
  std::vector<std::uint32_t> threads;
  for (std::uint64_t count = 0; count != 7; ++count) {
    const auto record = reader.next();
    ASSERT_TRUE(record && record->count == count);
    threads.push_back(record->thread);
  }
  const std::uint32_t a = threads[0], b = threads[2];
  EXPECT_NE(a, b);
  EXPECT_EQ(threads, (std::vector<std::uint32_t>{a, a, b, b, b, a, a}));
}

TEST_F(Reading, ARecordThatWasBeingWrittenIsCountedAndLeftOut) {
  const std::string path = two_threads();
  const std::uint64_t first = records_offset(path) + sizeof(trace_chunk_header);
  const std::uint32_t no = 0;
  overwrite(path, first + sizeof(stored_record) + offsetof(stored_record, complete), &no, sizeof no);
  trace_reader reader(path);
  EXPECT_EQ(reader.summary().records, 6u);
  EXPECT_EQ(reader.summary().incomplete, 1u);
  EXPECT_EQ(reader.summary().missing, 1u);
  EXPECT_EQ(reader.next()->count, 0u);
  EXPECT_EQ(reader.next()->count, 2u);
}

TEST_F(Reading, TheSummaryTellsLoadsStoresMarkersAndAddresses) {
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    const sve_mem_ref_t records[] = {
        {0, tid_start_marker, 0, MEM_STORE, 0, 0, 0, 0},
        {1, 5, 0, MEM_LOAD, 0, 256, 0x2000, 0x400},
        {2, 5, 3, MEM_LOAD, 0, 4, 0x1000, 0x404},
        {3, 5, 6, MEM_STORE, 0, 16, 0x20F8, 0x408},
        {4, 5, 0, memaccess_type_t{9}, 0, 1000, 0x9000, 0x40C},
        {5, tid_stop_marker, 0, MEM_STORE, 0, 0, 0, 0},
        {6, tid_stop_marker, 0, MEM_STORE, 0, 0, 0, 0},
    };
    for (const sve_mem_ref_t& record : records) trace_mem(record);
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  const trace_reader reader("trace");
  const trace_summary& summary = reader.summary();
  EXPECT_EQ(summary.records, 7u);
  EXPECT_EQ(summary.loads, 2u);
  EXPECT_EQ(summary.loaded_bytes, 260u);
  EXPECT_EQ(summary.stores, 1u);
  EXPECT_EQ(summary.stored_bytes, 16u);
  EXPECT_EQ(summary.starts, 1u);
  EXPECT_EQ(summary.stops, 2u);
  EXPECT_EQ(summary.unknown, 1u);
  EXPECT_EQ(summary.first_address, 0x1000u);
  EXPECT_EQ(summary.last_address, 0x2107u);
  EXPECT_EQ(summary.threads.size(), 1u);
}

TEST_F(Reading, AnAccessThatEndsWithTheAddressSpaceHasALastAddress) {
  const child_end end = run([] {
    setenv("QUERN_TRACE", "trace", 1);
    if (!sve_init(0, "")) return 1;
    trace_mem({0, 5, 0, MEM_LOAD, 0, 0x100, ~std::uint64_t{0xF}, 0});
    return 0;
  });
  ASSERT_TRUE(end.ended_well());
  EXPECT_EQ(trace_reader("trace").summary().last_address, ~std::uint64_t{0});
}

TEST_F(Reading, WhatIsNoTraceIsNamed) {
  std::ofstream("empty") << "";
  std::ofstream("text") << "some other file, longer than a magic number";
  std::ofstream("short") << "QUERNX";
  fs::create_directory("folder");
  EXPECT_EQ(complaint("absent"), "can't open absent: No such file or directory");
  EXPECT_EQ(complaint("folder"), "folder is a folder, not a trace file");
  EXPECT_EQ(complaint("empty"), "empty is empty, no trace file");
  EXPECT_EQ(complaint("text"), "text is not a trace file");
  EXPECT_EQ(complaint("short"), "short is not a trace file");
  EXPECT_EQ(complaint("/dev/null"), "/dev/null is not a regular file");
}

TEST_F(Reading, HeadersThatCannotBeAreRefused) {
  struct change {
    std::size_t offset;
    std::uint32_t value;
    const char* complaint;
  };
  const std::string path = two_threads();
  for (const change& c : std::initializer_list<change>{
           {offsetof(trace_file_header, version), 5, "has format version 5; this quern reads versions 1 to 4"},
           {offsetof(trace_file_header, version), 0, "has format version 0; this quern reads versions 1 to 4"},
           {offsetof(trace_file_header, byte_order), 0x04030201, "was written on a machine of the other byte order"},
           {offsetof(trace_file_header, record_size), 40, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, record_size), 0, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, record_size), 56, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, chunk_header_size), 0, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, chunk_header_size), 128, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, chunk_size), 0, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, chunk_size), 64, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, chunk_size), ~0u, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, header_size), 0, "is damaged: its header gives sizes that can't be"},
           {offsetof(trace_file_header, header_size), ~0u, "is damaged: its header gives sizes that can't be"}}) {
    std::uint32_t before = 0;
    std::ifstream(path, std::ios::binary).seekg(static_cast<long>(c.offset)).read(reinterpret_cast<char*>(&before), 4);
    overwrite(path, c.offset, &c.value, sizeof c.value);
    EXPECT_EQ(complaint(path), path + " " + c.complaint);
    overwrite(path, c.offset, &before, sizeof before);
    EXPECT_EQ(complaint(path), "");
  }
}

TEST_F(Reading, AChunkWithoutItsMarkIsDamagedAndTheOthersAreRead) {
  const std::string path = two_threads();
  overwrite(path, records_offset(path), "X", 1);
  const trace_reader reader(path);
  EXPECT_EQ(reader.summary().damaged_chunks, 1u);
  EXPECT_EQ(reader.summary().records, 3u);
}

TEST_F(Reading, ChunksBehindAHoleAreRead) {
  const std::string path = two_threads();
  const std::uint64_t first = records_offset(path), far = std::uint64_t{1} << 36;
  std::string chunk(trace_chunk_size, 0);
  std::ifstream(path, std::ios::binary)
      .seekg(static_cast<std::streamoff>(first + trace_chunk_size))
      .read(chunk.data(), trace_chunk_size);
  overwrite(path, first + trace_chunk_size, std::string(trace_chunk_size, 0).data(), trace_chunk_size);
  overwrite(path, first + far, chunk.data(), chunk.size());
  const trace_reader reader(path);
  EXPECT_EQ(reader.summary().records, 7u);
  EXPECT_FALSE(reader.is_cut());
}

TEST_F(Reading, ACountOfSlotsBeyondTheChunkIsCutDown) {
  const std::string path = two_threads();
  const std::uint32_t many = 0xFFFFFFFF;
  overwrite(path, records_offset(path) + offsetof(trace_chunk_header, count), &many, sizeof many);
  trace_reader reader(path);
  EXPECT_EQ(reader.summary().incomplete, trace_chunk_records - 4u);
  EXPECT_EQ(reader.summary().records, 7u);
}

// Whatever is damaged, the records come in order, as many as were summed up.
TEST_F(Reading, RandomDamageDoesNoHarm) {
  const std::string path = two_threads();
  std::ifstream file(path, std::ios::binary);
  const std::string intact((std::istreambuf_iterator<char>(file)), {});
  const std::uint64_t header = trace_reader(path).header().header_size;
  const std::uint64_t areas[] = {8, header, header + trace_chunk_size, header + 2 * trace_chunk_size};
  std::mt19937 random(1);
  int read = 0;
  for (int round = 0; round != 1000; ++round) {
    for (int byte = 0; byte != 3; ++byte) {
      const char value = static_cast<char>(random());
      overwrite(path, areas[random() % 4] + random() % 256, &value, 1);
    }
    try {
      trace_reader reader(path);
      std::uint64_t given = 0, last = 0;
      while (const auto record = reader.next()) {
        ASSERT_LE(last, record->count);
        last = record->count;
        ++given;
      }
      ASSERT_EQ(given, reader.summary().records);
      ++read;
    } catch (const trace_error& error) {
      ASSERT_NE(error.message, "");
    }
    if (round % 4 != 3) continue;
    for (const std::uint64_t area : areas) overwrite(path, area, intact.data() + area, 512);
  }
  EXPECT_GT(read, 100);
}

}  // namespace
}  // namespace quern::test
