// Each row against the processor: the same words on the same registers and memory, everything compared.
//
// QUERN_DIFFERENTIAL_SEED starts the sequence of cases elsewhere: with the seed of a reported case, and a filter for
// its row, that case runs first. QUERN_DIFFERENTIAL_CASES gives the number of cases a row.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <set>

#include "tests/differential/comparison.h"
#include "tests/differential/deviations.h"
#include "tests/differential/processor.h"
#include "tests/random_cases/random_source.h"
#include "tests/random_cases/reserved_words.h"
#include "tests/random_cases/test_case.h"

namespace quern {

// What GoogleTest shows of a failed test's parameter.
void PrintTo(const case_row& r, std::ostream* out) { *out << r.row->routine(); }
void PrintTo(const reserved_words& words, std::ostream* out) { *out << words.name; }

namespace {

constexpr std::uint64_t default_cases = 200;

std::uint64_t number_from_environment(const char* name, std::uint64_t otherwise) {
  const char* const text = std::getenv(name);
  if (text == nullptr) return otherwise;
  char* end = nullptr;
  const std::uint64_t value = std::strtoull(text, &end, 0);
  if (end != text && *end == '\0') return value;
  std::fprintf(stderr, "%s is '%s'; it must be a number, for example 12 or 0x1F.\n", name, text);
  std::exit(EXIT_FAILURE);
}

const std::vector<case_row>& rows() {
  static const std::vector<case_row> all = all_rows();
  return all;
}

// The registers and memory that both sides leave.
struct outcomes {
  cpu_state processor, emulator;
  unsigned char processor_memory[arena_bytes];
  int processor_signal, emulator_signal;
};

const char* signal_text(int signal) { return signal == 0 ? "nothing" : strsignal(signal); }

void run_both(const decode_row& row, const test_case& c, outcomes& o) {
  o.processor = o.emulator = c.state;
  if (c.has_memory) std::memcpy(arena(), c.memory, arena_bytes);
  o.processor_signal = run_on_processor(c.word, o.processor);
  // A library call keeps the flags' own half of the field alone; MRS never delivers anything else in the other.
  if (row.way == route::library) o.processor.nzcv &= 0xFFFFFFFF;
  if (c.has_memory) {
    std::memcpy(o.processor_memory, arena(), arena_bytes);
    std::memcpy(arena(), c.memory, arena_bytes);
  }
  o.emulator_signal = run_on_emulator(row.thunk, c.word, o.emulator);
}

std::vector<difference> differences(const decode_row& row, const test_case& c, const outcomes& o) {
  if (o.processor_signal != 0 || o.emulator_signal != 0)
    return {{part::other, std::string("the processor raised ") + signal_text(o.processor_signal) + ", the emulator " +
                              signal_text(o.emulator_signal)}};
  std::vector<difference> found = compare_states(o.processor, o.emulator, row.size);
  if (c.has_memory) compare_memory(o.processor_memory, arena(), arena_bytes, found);
  if (c.clean) check_predicate_bytes(o.emulator, found);
  return found;
}

std::string lines(const std::vector<difference>& found) {
  std::string text;
  for (const difference& f : found) text += "  " + f.text + "\n";
  return text;
}

class AgainstProcessor : public testing::TestWithParam<case_row> {
 protected:
  // Drops what a known deviation allows, and notes that it came.
  void drop_known(const decode_row& row, const test_case& c, std::vector<difference>& found) {
    for (const deviation& d : known_deviations()) {
      if (!concerns(d, row) || !d.applies(row, c)) continue;
      applied_.insert(&d);
      seen_[&d] += std::erase_if(found, [&](const difference& f) { return f.where == d.where; });
    }
  }
  // Whether a deviation that each of its cases allows has come in none of them.
  bool has_gone(const deviation& d) { return d.everywhere && applied_.contains(&d) && seen_[&d] == 0; }

 private:
  std::set<const deviation*> applied_;
  std::map<const deviation*, std::size_t> seen_;
};

TEST_P(AgainstProcessor, LeavesTheSame) {
  const auto c = std::make_unique<test_case>();
  const auto o = std::make_unique<outcomes>();
  const decode_row& row = *GetParam().row;
  const std::uint64_t first = number_from_environment("QUERN_DIFFERENTIAL_SEED", 1);
  const std::uint64_t count = number_from_environment("QUERN_DIFFERENTIAL_CASES", default_cases);
  for (std::uint64_t seed = first; seed != first + count; ++seed) {
    make_case(GetParam(), seed, *c);
    run_both(row, *c, *o);
    std::vector<difference> found = differences(row, *c, *o);
    drop_known(row, *c, found);
    if (!found.empty())
      FAIL() << describe(row, c->word) << "\n" << lines(found) << "again by QUERN_DIFFERENTIAL_SEED=" << seed;
  }
  if (count < default_cases) return;
  for (const deviation& d : known_deviations())
    EXPECT_FALSE(has_gone(d)) << "a listed deviation no longer occurs: " << d.reason;
}

std::string row_name(const testing::TestParamInfo<case_row>& info) { return info.param.row->name.c_str(); }

INSTANTIATE_TEST_SUITE_P(Rows, AgainstProcessor, testing::ValuesIn(rows()), row_name);

class ReservedWords : public testing::TestWithParam<reserved_words> {};

// So that no word which has a meaning is left out of the test.
TEST_P(ReservedWords, AreRefusedByTheProcessor) {
  random_source random(1);
  std::size_t tried = 0;
  const auto state = std::make_unique<cpu_state>();
  for (const case_row& r : rows()) {
    for (int i = 0; i != 4000; ++i) {
      const std::uint32_t word = r.row->value | (static_cast<std::uint32_t>(random.next()) & ~r.map->key.mask());
      if (!GetParam().matches(*r.row, word)) continue;
      ++tried;
      ASSERT_EQ(run_on_processor(word, *state), SIGILL) << describe(*r.row, word);
      if (i > 200) break;
    }
  }
  EXPECT_NE(tried, 0u);
}

std::string kind_name(const testing::TestParamInfo<reserved_words>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Kinds, ReservedWords,
                         testing::ValuesIn(all_reserved_words().begin(), all_reserved_words().end()), kind_name);

TEST(Deviations, AreOfRowsThatExist) {
  for (const deviation& d : known_deviations()) {
    const bool exists =
        std::any_of(rows().begin(), rows().end(), [&](const case_row& r) { return concerns(d, *r.row); });
    EXPECT_TRUE(exists) << d.handler;
  }
}

}  // namespace
}  // namespace quern

int main(int argc, char** argv) {
  constexpr int left_out = 77;  // CTest reports it as skipped
  if (!quern::prepare_processor()) return left_out;
  quern::catch_faults();
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
