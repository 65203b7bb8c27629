// What the tests of memory handlers share: a register file full of known bytes, predicates with odd bits in them, real
// pages, and expectations of traces and of what must not change.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <random>
#include <vector>

#include "sve/memory/guest_memory.h"
#include "sve/memory/trace.h"
#include "sve/state/cpu_state.h"
#include "tests/harness/elements.h"
#include "tests/harness/operand_records.h"
#include "tests/support/caught_fault.h"
#include "tests/support/mapped_pages.h"
#include "tests/support/trace_recorder.h"

namespace quern {

constexpr std::size_t vl = VL_BYTES;

// Which lanes of how many a predicate makes active.
struct lane_pattern {
  const char* name;
  bool (*is_active)(std::size_t lane, std::size_t lanes);
};
inline constexpr lane_pattern patterns[] = {
    {"all", [](std::size_t, std::size_t) { return true; }},
    {"none", [](std::size_t, std::size_t) { return false; }},
    {"even", [](std::size_t i, std::size_t) { return i % 2 == 0; }},
    {"odd", [](std::size_t i, std::size_t) { return i % 2 == 1; }},
    {"first", [](std::size_t i, std::size_t) { return i == 0; }},
    {"last", [](std::size_t i, std::size_t lanes) { return i == lanes - 1; }},
    {"all but the first", [](std::size_t i, std::size_t) { return i != 0; }},
    {"all but the last", [](std::size_t i, std::size_t lanes) { return i != lanes - 1; }},
    {"runs of different lengths", [](std::size_t i, std::size_t) { return i % 7 < 4 && i % 5 != 1; }},
};
inline constexpr lane_pattern all_lanes = patterns[0], no_lanes = patterns[1], odd_lanes = patterns[3],
                              mixed_lanes = patterns[8];

class MemoryHandlers : public testing::Test {
 protected:
  void SetUp() override {
    read_page_size();
    fill(&s, sizeof s);
    s.pc = code;
    enable_trace = false;
    start_recording();
  }
  void TearDown() override { enable_trace = false; }

  void fill(void* at, std::size_t bytes) {
    auto* const byte = static_cast<unsigned char*>(at);
    for (std::size_t i = 0; i != bytes; ++i) byte[i] = static_cast<unsigned char>(random());
  }

  // Makes the pattern's lanes active. The bits that don't count say the opposite, or anything.
  void activate(std::uint32_t p, std::size_t lane_bytes, const auto& is_active) {
    for (std::size_t i = 0; i != vl; ++i) {
      if (i % lane_bytes != 0) {
        s.p[p][i] = static_cast<unsigned char>(random());
      } else {
        s.p[p][i] = is_active(i / lane_bytes, vl / lane_bytes) ? 0x03 : 0xFE;
      }
    }
  }

  std::uint64_t lane_of(std::uint32_t z, std::size_t i, std::size_t lane_bytes) const {
    return element_at(s.z[z] + i * lane_bytes, lane_bytes);
  }
  void set_lane_of(std::uint32_t z, std::size_t i, std::size_t lane_bytes, std::uint64_t value) {
    put_element(s.z[z] + i * lane_bytes, lane_bytes, value);
  }

  sve_mem_ref_t record(std::uint64_t count, std::uint32_t group, memaccess_type_t kind, std::uint64_t size,
                       std::uint64_t addr) const {
    return {.count = count,
            .tid = static_cast<std::uint32_t>(pthread_self()),
            .group = group,
            .kind = kind,
            .unused = 0,
            .size = size,
            .addr = addr,
            .pc = reinterpret_cast<std::uint64_t>(code)};
  }

  // What a contiguous access of these lanes reports.
  std::vector<sve_mem_ref_t> runs(const lane_pattern& pattern, memaccess_type_t kind, std::uint64_t first,
                                  std::size_t memory_bytes, std::size_t lane_bytes) const {
    std::vector<sve_mem_ref_t> records;
    const std::size_t lanes = vl / lane_bytes;
    std::size_t active = 0;
    for (std::size_t i = 0; i != lanes; ++i) {
      if (!pattern.is_active(i, lanes)) continue;
      ++active;
      if (i != 0 && pattern.is_active(i - 1, lanes)) {
        records.back().size += memory_bytes;
      } else {
        records.push_back(record(records.size(), 0, kind, memory_bytes, first + i * memory_bytes));
      }
    }
    if (active == lanes) records.back().size = vl;
    return records;
  }

  // What an access of one element a lane reports; address(i) is lane i's.
  std::vector<sve_mem_ref_t> one_each(const lane_pattern& pattern, memaccess_type_t kind, std::size_t memory_bytes,
                                      std::size_t lanes, const auto& address) const {
    std::vector<sve_mem_ref_t> records;
    for (std::size_t i = 0; i != lanes; ++i) {
      if (pattern.is_active(i, lanes))
        records.push_back(record(records.size(), records.empty() ? 3 : 2, kind, memory_bytes, address(i)));
    }
    if (!records.empty()) records.back().group += 4;
    return records;
  }

  void expect_trace(const std::vector<sve_mem_ref_t>& records) const {
    EXPECT_EQ(recorded_trace(), records);
    EXPECT_EQ(counts_given(), records.size());
  }
  void expect_no_trace() const { expect_trace({}); }

  // Runs `handler` with tracing on.
  void run(const auto& handler) {
    enable_trace = true;
    EXPECT_EQ(handler(), DECODE_OK);
    enable_trace = false;
  }

  static inline cpu_state s;
  static inline unsigned char code[4];
  std::mt19937 random{12345};
};

// Whether two register files are the same bytes.
inline bool same(const cpu_state& a, const cpu_state& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace quern
