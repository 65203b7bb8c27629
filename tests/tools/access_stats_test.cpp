// What is counted of random accesses, in every column, is what a second model finds that keeps them all.
#include "tools/access_stats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "plain_stack.h"
#include "sve/memory/trace.h"

namespace quern::test {
namespace {

using bin_counts = std::map<unsigned, std::uint64_t>;
constexpr std::uint64_t vector_bytes = 256;

// The numbers of the units, of so many bytes each, that the access has bytes in.
std::set<std::uint64_t> units_of(const trace_record& record, std::uint64_t unit) {
  std::set<std::uint64_t> units;
  for (std::uint64_t i = 0; i != record.size && record.addr + i >= record.addr; ++i)
    units.insert((record.addr + i) / unit);
  return units;
}

// An access as the model keeps it.
struct kept_access {
  trace_record record;
  std::optional<std::int64_t> stride;
  std::vector<unsigned> reuse;
};

class plain_memory {
 public:
  kept_access next(const trace_record& record) {
    kept_access kept{record, {}, {}};
    auto& before = last_[{record.thread, record.pc}];
    if (before) kept.stride = static_cast<std::int64_t>(record.addr) - static_cast<std::int64_t>(*before);
    before = record.addr;
    for (const std::uint64_t line : units_of(record, 64)) kept.reuse.push_back(stack_.access(line));
    return kept;
  }

 private:
  std::map<std::pair<std::uint32_t, std::uint64_t>, std::optional<std::uint64_t>> last_;
  plain_stack stack_;
};

struct plain_stats {
  std::vector<kept_access> accesses;

  template <class Condition>
  std::uint64_t count(Condition condition) const {
    return static_cast<std::uint64_t>(
        std::ranges::count_if(accesses, [&](const kept_access& a) { return condition(a.record); }));
  }
  std::uint64_t bytes(trace_kind kind) const {
    std::uint64_t sum = 0;
    for (const auto& [record, stride, reuse] : accesses) sum += record.kind == kind ? record.size : 0;
    return sum;
  }
  std::size_t units(std::uint64_t unit) const {
    std::set<std::uint64_t> all;
    for (const kept_access& each : accesses) all.merge(units_of(each.record, unit));
    return all.size();
  }
  // Of the strides that lead forward, or of those that lead back, by their bits.
  bin_counts strides(bool is_backward) const {
    bin_counts bins;
    for (const auto& [record, stride, reuse] : accesses)
      if (stride && (*stride < 0) == is_backward)
        ++bins[static_cast<unsigned>(std::bit_width(static_cast<std::uint64_t>(std::abs(*stride))))];
    return bins;
  }
  bin_counts reuse_bins() const {
    bin_counts bins;
    for (const kept_access& each : accesses)
      for (const unsigned bin : each.reuse) ++bins[bin];
    return bins;
  }
};

template <class Histogram>
bin_counts bins_of(const Histogram& histogram) {
  bin_counts bins;
  for (unsigned bin = 0; bin != Histogram::bins; ++bin)
    if (histogram.counts[bin] != 0) bins[bin] = histogram.counts[bin];
  return bins;
}

void expect_near(const distinct_count& count, std::size_t wanted) {
  if (count.is_exact())
    EXPECT_EQ(count.count(), wanted);
  else
    EXPECT_NEAR(static_cast<double>(count.count()), static_cast<double>(wanted), 0.06 * static_cast<double>(wanted));
}

void expect_most_frequent_stride(const access_stats& stats, const plain_stats& plain) {
  std::map<std::int64_t, std::uint64_t> counts;
  std::uint64_t all = 0;
  for (const kept_access& each : plain.accesses) {
    if (!each.stride) continue;
    ++counts[*each.stride];
    ++all;
  }
  const auto most = stats.strides.most();
  for (const auto& [stride, count] : counts) EXPECT_TRUE(count * 4 <= all || most.has_value()) << stride;
  if (!most) return;
  EXPECT_LE(most->count, counts[most->number]);
  EXPECT_GE(most->count + all / 8, counts[most->number]);
}

void expect_equal(const access_stats& stats, const plain_stats& plain) {
  const auto is_lane = [](const trace_record& r) { return r.group != 0; };
  const auto is_first = [](const trace_record& r) { return r.group == 0 || (r.group & trace_group_first) != 0; };
  const auto is_load = [](const trace_record& r) { return r.kind == trace_kind::load; };
  EXPECT_EQ(stats.records, plain.accesses.size());
  EXPECT_EQ(stats.instructions, plain.count(is_first));
  EXPECT_EQ(stats.loads, plain.count(is_load));
  EXPECT_EQ(stats.stores, plain.accesses.size() - plain.count(is_load));
  EXPECT_EQ(stats.loaded_bytes, plain.bytes(trace_kind::load));
  EXPECT_EQ(stats.stored_bytes, plain.bytes(trace_kind::store));
  EXPECT_EQ(stats.lane_loads, plain.count([&](const auto& r) { return is_lane(r) && is_load(r); }));
  EXPECT_EQ(stats.lane_stores, plain.count([&](const auto& r) { return is_lane(r) && !is_load(r); }));
  EXPECT_EQ(stats.lane_load_instructions,
            plain.count([&](const auto& r) { return is_lane(r) && is_first(r) && is_load(r); }));
  EXPECT_EQ(stats.lane_store_instructions,
            plain.count([&](const auto& r) { return is_lane(r) && is_first(r) && !is_load(r); }));
  EXPECT_EQ(stats.whole_vectors, plain.count([&](const auto& r) { return !is_lane(r) && r.size == vector_bytes; }));
  EXPECT_EQ(stats.across_lines, plain.count([](const auto& r) { return units_of(r, 64).size() > 1; }));
  EXPECT_EQ(stats.across_pages, plain.count([](const auto& r) { return units_of(r, 4096).size() > 1; }));
  std::uint64_t in_sizes = 0;
  for (const auto& [size, records] : stats.sizes) {
    EXPECT_EQ(records, plain.count([&](const auto& r) { return r.size <= size && (size <= 1 || r.size > size / 2); }))
        << size;
    in_sizes += records;
  }
  EXPECT_EQ(in_sizes, stats.records);
  expect_near(stats.lines, plain.units(64));
  expect_near(stats.pages, plain.units(4096));
  EXPECT_EQ(bins_of(stats.forward_strides), plain.strides(false));
  EXPECT_EQ(bins_of(stats.backward_strides), plain.strides(true));
  EXPECT_EQ(bins_of(stats.reuse), plain.reuse_bins());
  expect_most_frequent_stride(stats, plain);
}

// Some instructions walk by a stride of their own, some access anywhere.
class random_trace {
 public:
  explicit random_trace(unsigned seed) : random_(seed), span_(std::uint64_t{1} << (8 + 3 * seed)) {}

  trace_record next() {
    constexpr std::uint32_t groups[] = {0, 0, trace_group_first | trace_group_member, trace_group_member,
                                        trace_group_member | trace_group_last};
    trace_record record{};
    record.thread = static_cast<std::uint32_t>(1 + random_() % 3);
    record.pc = 0x400000 + 4 * (random_() % 6);
    record.kind = random_() % 3 == 0 ? trace_kind::store : trace_kind::load;
    record.group = groups[random_() % std::size(groups)];
    record.size = random_() % 4 == 0 ? vector_bytes : random_() % 40;
    const bool walks = record.pc < 0x40000C;
    std::uint64_t& at = walked_[{record.thread, record.pc}];
    const std::uint64_t stride = record.pc == 0x400000 ? vector_bytes : std::uint64_t{0} - 24;
    record.addr = 0x10000000 + (walks ? (at += stride) % span_ : random_() % span_);
    if (random_() % 100 == 0) record.addr = ~std::uint64_t{0} - random_() % 64;  // at the end of the address space
    return record;
  }

 private:
  std::mt19937 random_;
  std::uint64_t span_;
  std::map<std::pair<std::uint32_t, std::uint64_t>, std::uint64_t> walked_;
};

TEST(AccessStats, EveryColumnOfRandomAccessesIsThatOfAPlainModel) {
  for (unsigned seed = 0; seed != 5; ++seed) {
    SCOPED_TRACE(seed);
    random_trace trace(seed);
    access_memory memory;
    plain_memory plain;
    access_stats total;
    plain_stats plain_total;
    std::map<std::uint64_t, access_stats> rows;
    std::map<std::uint64_t, plain_stats> plain_rows;
    for (int i = 0; i != 5000; ++i) {
      const trace_record record = trace.next();
      const access_history history = memory.next(record);
      total.add(record, history, vector_bytes);
      rows[record.pc].add(record, history, vector_bytes);
      plain_total.accesses.push_back(plain.next(record));
      plain_rows[record.pc].accesses.push_back(plain_total.accesses.back());
    }
    expect_equal(total, plain_total);
    for (const auto& [pc, stats] : rows) expect_equal(stats, plain_rows[pc]);
  }
}

// A size that can't be true costs no time: 64 lines of it are looked up, 65,537 are counted.
TEST(AccessStats, AnAccessOfAnySizeIsCountedAndTakesNoTime) {
  trace_record record{};
  record.kind = trace_kind::load;
  record.size = ~std::uint64_t{0};
  access_memory memory;
  access_stats stats;
  stats.add(record, memory.next(record), vector_bytes);
  EXPECT_EQ(stats.loaded_bytes, ~std::uint64_t{0});
  EXPECT_EQ(bins_of(stats.reuse), (bin_counts{{reuse_distance::far, 64}}));
  expect_near(stats.lines, 65'537);
  EXPECT_EQ(stats.sizes.begin()->first, std::uint64_t{1} << 63);
}

}  // namespace
}  // namespace quern::test
