// Each row against the processor: the same words on the same registers and memory, everything compared.
//
// QUERN_DIFFERENTIAL_SEED starts the sequence of cases elsewhere: with the seed of a reported case, and a filter for
// its row, that case runs first. QUERN_DIFFERENTIAL_CASES gives the number of cases a row.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "tests/differential/deviations.h"
#include "tests/differential/processor.h"
#include "tests/random_cases/case_choice.h"
#include "tests/random_cases/random_source.h"
#include "tests/random_cases/reserved_words.h"
#include "tests/random_cases/test_case.h"

namespace quern {

// What GoogleTest shows of a failed test's parameter.
void PrintTo(const case_row& r, std::ostream* out) { *out << r.row->routine(); }
void PrintTo(const reserved_words& words, std::ostream* out) { *out << words.name; }

namespace {

constexpr std::uint64_t default_cases = 100;
constexpr side_names sides{"processor", "emulator"};

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
  std::vector<difference> found = compare_states(o.processor, o.emulator, row.size, sides);
  if (c.has_memory) compare_memory(o.processor_memory, arena(), arena_bytes, sides, found);
  if (c.clean) check_predicate_bytes(o.emulator, found);
  return found;
}

std::string lines(const std::vector<difference>& found) {
  std::string text;
  for (const difference& f : found) text += "  " + f.text + "\n";
  return text;
}

class AgainstProcessor : public testing::TestWithParam<case_row> {};

TEST_P(AgainstProcessor, LeavesTheSame) {
  const auto c = std::make_unique<test_case>();
  const auto o = std::make_unique<outcomes>();
  const decode_row& row = *GetParam().row;
  row_deviations deviations(known_deviations(), row);
  const case_choice chosen = choose_cases("QUERN_DIFFERENTIAL", default_cases);
  for (std::uint64_t seed = chosen.first; seed != chosen.first + chosen.count; ++seed) {
    make_case(GetParam(), seed, *c);
    run_both(row, *c, *o);
    std::vector<difference> found = differences(row, *c, *o);
    deviations.drop_known(*c, found);
    if (!found.empty())
      FAIL() << describe(row, c->word) << "\n" << lines(found) << "again by QUERN_DIFFERENTIAL_SEED=" << seed;
  }
  if (chosen.count < default_cases) return;
  for (const deviation* d : deviations.stale()) ADD_FAILURE() << "a listed deviation no longer occurs: " << d->reason;
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
