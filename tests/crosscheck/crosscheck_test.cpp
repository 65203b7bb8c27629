// Each row that goes to a direct handler, against the vector library's function of the same name: the same words on the
// same registers and memory, everything compared.
//
// QUERN_CROSSCHECK_SEED starts the sequence of cases elsewhere: with the seed of a reported case, and a filter for its
// row, that case runs first. QUERN_CROSSCHECK_CASES gives the number of cases a row.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>

#include "tests/crosscheck/differences.h"
#include "tests/crosscheck/library_call.h"
#include "tests/random_cases/case_choice.h"

namespace quern {

// What GoogleTest shows of a failed test's parameter.
void PrintTo(const case_row& r, std::ostream* out) { *out << r.row->routine(); }

namespace {

constexpr std::uint64_t default_cases = 1000;
constexpr side_names sides{"handler", "library"};

bool is_direct(const case_row& r) { return r.row->way == route::direct || r.row->way == route::direct_fp; }

const std::vector<case_row>& rows() {
  static const std::vector<case_row> all = [] {
    std::vector<case_row> direct = all_rows();
    std::erase_if(direct, [](const case_row& r) { return !is_direct(r); });
    return direct;
  }();
  return all;
}

const library_member* function_of(const decode_row& row) {
  static const std::map<std::string_view, const library_member*> by_name = [] {
    std::map<std::string_view, const library_member*> found;
    for (const library_member& member : library_members()) found[member.name] = &member;
    return found;
  }();
  const auto entry = by_name.find(row.name.view());
  return entry == by_name.end() ? nullptr : entry->second;
}

// The registers and memory that both sides leave.
struct outcomes {
  cpu_state handler, library;
  unsigned char handler_memory[arena_bytes];
};

void run_both(const decode_row& row, const library_member& function, const test_case& c, outcomes& o) {
  o.handler = o.library = c.state;
  if (c.has_memory) std::memcpy(arena(), c.memory, arena_bytes);
  run_thunk(row, c.word, o.handler);
  if (c.has_memory) {
    std::memcpy(o.handler_memory, arena(), arena_bytes);
    std::memcpy(arena(), c.memory, arena_bytes);
  }
  call_library(row, function, c.word, o.library);
  o.handler.nzcv &= 0xFFFFFFFF;  // the library's context has the flags' half alone
}

std::vector<difference> differences(const decode_row& row, const test_case& c, const outcomes& o) {
  std::vector<difference> found = compare_states(o.handler, o.library, row.size, sides);
  if (c.has_memory) compare_memory(o.handler_memory, arena(), arena_bytes, sides, found);
  return found;
}

std::string lines(const std::vector<difference>& found) {
  std::string text;
  for (const difference& f : found) text += "  " + f.text + "\n";
  return text;
}

class AgainstLibrary : public testing::TestWithParam<case_row> {};

TEST_P(AgainstLibrary, LeavesTheSame) {
  const decode_row& row = *GetParam().row;
  const library_member* const function = function_of(row);
  ASSERT_NE(function, nullptr) << row.name.view();
  const auto c = std::make_unique<test_case>();
  const auto o = std::make_unique<outcomes>();
  row_deviations known(known_differences(), row);
  const case_choice chosen = choose_cases("QUERN_CROSSCHECK", default_cases);
  for (std::uint64_t seed = chosen.first; seed != chosen.first + chosen.count; ++seed) {
    make_case(GetParam(), seed, *c);
    run_both(row, *function, *c, *o);
    std::vector<difference> found = differences(row, *c, *o);
    known.drop_known(*c, found);
    if (!found.empty())
      FAIL() << describe(row, c->word) << "\n" << lines(found) << "again by QUERN_CROSSCHECK_SEED=" << seed;
  }
  if (chosen.count < default_cases) return;
  for (const deviation* d : known.stale()) ADD_FAILURE() << "a listed difference no longer occurs: " << d->reason;
}

std::string row_name(const testing::TestParamInfo<case_row>& info) { return info.param.row->name.c_str(); }

INSTANTIATE_TEST_SUITE_P(Rows, AgainstLibrary, testing::ValuesIn(rows()), row_name);

TEST(Rows, OfDirectHandlersAreAllThere) { EXPECT_EQ(rows().size(), 803u); }

TEST(Differences, AreOfRowsThatExist) {
  for (const deviation& d : known_differences())
    EXPECT_TRUE(std::ranges::any_of(rows(), [&](const case_row& r) { return concerns(d, *r.row); })) << d.handler;
}

}  // namespace
}  // namespace quern
