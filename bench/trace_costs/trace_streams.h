// Long streams of trace records, to measure what writing and reading them costs: record i of each follows from i alone.
#pragma once

#include <cstdint>
#include <iterator>
#include <string_view>

#include "sve/memory/trace.h"

namespace quern {

// Any number for each, as good as random: a finalizer of hash functions.
constexpr std::uint64_t scattered(std::uint64_t i) {
  i = (i ^ i >> 30) * 0xBF58476D1CE4E5B9;
  i = (i ^ i >> 27) * 0x94D049BB133111EB;
  return i ^ i >> 31;
}

constexpr sve_mem_ref_t access(memaccess_type_t kind, std::uint64_t size, std::uint64_t addr, std::uint64_t pc) {
  return {.count = 0, .tid = 0, .group = 0, .kind = kind, .unused = 0, .size = size, .addr = addr, .pc = pc};
}

inline constexpr std::uint64_t stream_data = 0x5500000000, stream_code = 0x400000, stream_vector = 256;

// A loop over three arrays: two loads and a store of whole vectors.
constexpr sve_mem_ref_t next_of_loop(std::uint64_t i) {
  constexpr std::uint64_t array_distance = std::uint64_t{1} << 32;
  return access(i % 3 == 2 ? MEM_STORE : MEM_LOAD, stream_vector,
                stream_data + i % 3 * array_distance + i / 3 * stream_vector, stream_code + i % 3 * 4);
}

// Gathers of 32 lanes, each somewhere in 256 MB.
constexpr sve_mem_ref_t next_of_gather(std::uint64_t i) {
  constexpr std::uint64_t lanes = 32, lane_bytes = 8, words = (256 << 20) / lane_bytes;
  sve_mem_ref_t record =
      access(MEM_LOAD, lane_bytes, stream_data + scattered(i) % words * lane_bytes, stream_code + 0x10);
  record.group =
      trace_group_member | (i % lanes == 0 ? trace_group_first : 0) | (i % lanes == lanes - 1 ? trace_group_last : 0);
  return record;
}

// One line again and again.
constexpr sve_mem_ref_t next_of_line(std::uint64_t) { return access(MEM_LOAD, 64, stream_data, stream_code); }

// A vector of a stream, and lanes of a gather from elsewhere, in turn.
constexpr sve_mem_ref_t next_of_mixture(std::uint64_t i) {
  constexpr std::uint64_t behind_stream = std::uint64_t{1} << 36;
  if (i % 2 == 0) return access(MEM_LOAD, stream_vector, stream_data + i / 2 * stream_vector, stream_code);
  sve_mem_ref_t record = next_of_gather(i / 2);
  record.addr += behind_stream;
  return record;
}

struct trace_stream {
  std::string_view name;
  sve_mem_ref_t (*next)(std::uint64_t i);
};

inline constexpr trace_stream trace_streams[] = {
    {"loop", next_of_loop}, {"gather", next_of_gather}, {"line", next_of_line}, {"mixture", next_of_mixture}};

}  // namespace quern
