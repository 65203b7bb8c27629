// Made as the writer makes them, but with the smallest chunks that a reader takes.
#include "tests/support/small_traces.h"

#include <lz4.h>

#include <cstdint>

#include "sve/memory/trace.h"
#include "utils/record_packing.h"
#include "utils/trace_format.h"

namespace quern::test {
namespace {

constexpr std::uint32_t chunk_bytes = 4096, vector_bytes = 256;
constexpr std::uint32_t chunk_slots = (chunk_bytes - sizeof(trace_chunk_header)) / sizeof(stored_record);

template <class T>
std::string bytes_of(const T& object) {
  return {reinterpret_cast<const char*>(&object), sizeof object};
}

std::string padded(std::string bytes) {
  bytes.resize((bytes.size() + 7) / 8 * 8);
  return bytes;
}

stored_record marker(std::uint64_t count, std::uint32_t tid) {
  return {.count = count, .tid = tid, .group = 0, .kind = 0, .complete = 1, .size = count, .addr = 1, .pc = 0};
}

// Two vectors of a loop, then a lane of a gather.
stored_record access(std::uint64_t count) {
  const bool is_lane = count % 3 == 0;
  return {.count = count,
          .tid = 7,
          .group = is_lane ? 7u : 0u,
          .kind = count % 3 == 1 ? MEM_LOAD : MEM_STORE,
          .complete = 1,
          .size = is_lane ? 8 : vector_bytes,
          .addr = 0x10000 + (is_lane ? count * count % 61 * 8 : count * vector_bytes),
          .pc = 0x400000 + count % 3 * 4};
}

std::string chunk(std::uint64_t magic, std::uint64_t number, std::uint32_t count, std::uint32_t generation,
                  const std::string& content) {
  const trace_chunk_header header{.magic = magic,
                                  .number = number,
                                  .pthread = 7,
                                  .thread = 70,
                                  .count = count,
                                  .time = 1,
                                  .generation = generation,
                                  .reserved = {}};
  std::string bytes = bytes_of(header) + content;
  bytes.resize(chunk_bytes);
  return bytes;
}

std::string slots(const std::vector<stored_record>& records, std::uint32_t generation) {
  std::string bytes;
  for (stored_record record : records) {
    record.complete = generation;
    bytes += bytes_of(record);
  }
  return bytes;
}

std::string block(const std::vector<stored_record>& records, std::uint32_t version) {
  record_model model;
  std::string all_flags, all_numbers, interleaved;
  for (const stored_record& record : records) {
    unsigned char flags, numbers[most_number_bytes];
    const unsigned char* const end = pack_record(model, record, flags, numbers);
    const std::string text(reinterpret_cast<const char*>(numbers), static_cast<std::size_t>(end - numbers));
    all_flags += static_cast<char>(flags);
    all_numbers += text;
    interleaved += static_cast<char>(flags) + text;
  }
  const std::string unpacked = all_flags + all_numbers;
  std::string compressed(static_cast<std::size_t>(LZ4_COMPRESSBOUND(unpacked.size())), 0);
  compressed.resize(static_cast<std::size_t>(LZ4_compress_default(
      unpacked.data(), compressed.data(), static_cast<int>(unpacked.size()), static_cast<int>(compressed.size()))));
  const std::string& packed = version < 4 ? interleaved : compressed;
  packed_block_header header{};
  header.records = static_cast<std::uint32_t>(records.size());
  header.source = 0;
  header.generation = 1;
  header.packed_bytes = static_cast<std::uint32_t>(packed.size());
  header.unpacked_bytes = static_cast<std::uint32_t>(unpacked.size());
  const std::size_t header_bytes = packed_block_header_bytes(version);
  header.size = static_cast<std::uint32_t>(padded(std::string(header_bytes, 0) + packed).size());
  return padded(bytes_of(header).substr(0, header_bytes) + packed);
}

std::string module(std::uint32_t number, std::uint64_t count, std::uint64_t begin, std::uint64_t end) {
  const std::string build_id = end != 0 ? "\x12\x34" : "", path = end != 0 ? "/absent/program" : "";
  module_entry entry{};
  entry.number = number;
  entry.count = count;
  entry.begin = begin;
  entry.end = end;
  entry.build_id_bytes = static_cast<std::uint32_t>(build_id.size());
  entry.path_bytes = static_cast<std::uint32_t>(path.size());
  entry.size = static_cast<std::uint32_t>(padded(bytes_of(entry) + build_id + path).size());
  return padded(bytes_of(entry) + build_id + path);
}

std::string header(std::uint32_t version, std::uint64_t chunks) {
  trace_file_header header{};
  header.magic = trace_magic;
  header.version = version;
  header.byte_order = trace_byte_order;
  header.header_size = sizeof header;
  header.chunk_size = chunk_bytes;
  header.chunk_header_size = sizeof(trace_chunk_header);
  header.record_size = sizeof(stored_record);
  header.vector_bytes = vector_bytes;
  header.page_size = 4096;
  header.chunks = chunks;
  header.finished = 1;
  header.application[0] = 'x';
  return bytes_of(header);
}

std::string small_trace(std::uint32_t version) {
  std::vector<stored_record> first{marker(0, tid_start_marker)}, second;
  while (first.size() != chunk_slots) first.push_back(access(first.size()));
  for (std::uint64_t count = chunk_slots; count != chunk_slots + 20; ++count) second.push_back(access(count));
  second.push_back(marker(chunk_slots + 20, tid_stop_marker));
  const auto second_count = static_cast<std::uint32_t>(second.size());
  if (version == 1)
    return header(version, 2) + chunk(chunk_magic, 0, chunk_slots, 0, slots(first, 1)) +
           chunk(chunk_magic, 1, second_count, 0, slots(second, 1));
  const std::string blocks = block(first, version);
  const std::string modules = module(0, 0, 0x400000, 0x410000) + module(1, 5, 0x500000, 0x510000) + module(1, 9, 0, 0);
  std::string trace = chunk(chunk_magic, 0, second_count, 2, slots(second, 2)) +
                      chunk(packed_magic, 1, static_cast<std::uint32_t>(blocks.size()), 1, blocks);
  if (version > 2) trace += chunk(modules_magic, 2, static_cast<std::uint32_t>(modules.size()), 1, modules);
  return header(version, trace.size() / chunk_bytes) + trace;
}

}  // namespace

std::vector<std::string> small_traces() {
  std::vector<std::string> traces;
  for (std::uint32_t version = 1; version <= trace_version; ++version) traces.push_back(small_trace(version));
  return traces;
}

}  // namespace quern::test
