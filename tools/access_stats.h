// What `quern trace stats` counts of a set of accesses. Its memory is bounded however many they are.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>

#include "tools/distinct_count.h"
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

struct access_stats {
  static constexpr std::uint64_t line_bytes = 64, page_bytes = 4096;

  std::uint64_t records = 0, instructions = 0, lane_records = 0;  // of gathers, scatters and structures: one a lane
  std::uint64_t loads = 0, stores = 0, loaded_bytes = 0, stored_bytes = 0;
  std::uint64_t across_lines = 0, across_pages = 0;
  distinct_count lines, pages;
  frequent_number strides;
  std::map<std::uint64_t, std::uint64_t> sizes;  // records by their bytes, rounded up to a power of two

  // `stride` is the way from the last access of the same instruction in the same thread, if there was one.
  void add(const trace_record& record, std::optional<std::int64_t> stride);
};

// The way from each access to the next one of the same instruction in the same thread.
class stride_memory {
 public:
  std::optional<std::int64_t> stride_of(const trace_record& record);

 private:
  static constexpr std::size_t most_places = 1 << 16;
  std::map<std::pair<std::uint32_t, std::uint64_t>, std::uint64_t> last_;  // address by thread and pc
};

}  // namespace quern
