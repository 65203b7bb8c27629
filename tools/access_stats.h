// What `quern trace stats` counts of a set of accesses. Its memory is bounded however many they are.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "tools/distinct_count.h"
#include "tools/power_histogram.h"
#include "tools/reuse_distance.h"
#include "utils/trace_reader.h"

namespace quern {

// The most frequent of many numbers, if it makes up an eighth of them or more. Its count may be too low by an eighth of
// all (Misra and Gries).
class frequent_number {
 public:
  struct entry {
    std::int64_t number;
    std::uint64_t count;
  };
  void add(std::int64_t number);
  std::optional<entry> most() const;

 private:
  std::uint64_t numbers_ = 0;
  std::array<entry, 7> entries_{};
};

// The way from each access to the next one of the same instruction in the same thread.
class stride_memory {
 public:
  std::optional<std::int64_t> stride_of(const trace_record& record);

 private:
  static constexpr std::size_t most_places = 1 << 16;
  std::map<std::pair<std::uint32_t, std::uint64_t>, std::uint64_t> last_;  // address by thread and pc
};

// What an access has to do with those before it.
struct access_history {
  static constexpr unsigned most_lines = 64;

  std::optional<std::int64_t> stride = {};
  unsigned lines = 0;
  std::array<std::uint8_t, most_lines> reuse{};  // of each line that it touches, the bin of reuse_distance
};

class access_memory {
 public:
  // The history of the next access, all threads' taken together.
  access_history next(const trace_record& record);

 private:
  stride_memory strides_;
  reuse_distance reuse_;
};

struct access_stats {
  static constexpr std::uint64_t line_bytes = 64, page_bytes = 4096;

  std::uint64_t records = 0, instructions = 0;
  std::uint64_t loads = 0, stores = 0, loaded_bytes = 0, stored_bytes = 0;
  // Of gathers, scatters and structures: a record each lane.
  std::uint64_t lane_loads = 0, lane_stores = 0, lane_load_instructions = 0, lane_store_instructions = 0;
  std::uint64_t whole_vectors = 0;  // records as long as a vector
  std::uint64_t across_lines = 0, across_pages = 0;
  distinct_count lines, pages;
  frequent_number strides;
  power_histogram<65> forward_strides, backward_strides;
  power_histogram<reuse_distance::bins> reuse;   // by line that is touched
  std::map<std::uint64_t, std::uint64_t> sizes;  // records by their bytes, rounded up to a power of two

  // Of the records whose instruction is known: these, their elements, and the bytes of all of them in memory.
  std::uint64_t known_records = 0, elements = 0, element_bytes = 0;
  std::map<std::uint32_t, std::uint64_t> element_sizes;  // elements by their bytes in memory

  void add(const trace_record& record, const access_history& history, std::uint64_t vector_bytes);
  void add_elements(std::uint64_t count, std::uint32_t bytes_each);
};

}  // namespace quern
