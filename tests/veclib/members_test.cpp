// The library's functions against the decoder's rows: each row that does something has a function of its name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "sve/decoder/decode_map.h"
#include "tests/veclib/library_members.h"

namespace {

using namespace quern;

std::set<std::string> wanted_names() {
  std::set<std::string> names;
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows)
      if (row.way != route::none) names.emplace(row.name.view());
  return names;
}

TEST(Members, AreListedOnceEach) {
  std::set<std::string> seen;
  for (const library_member& each : library_members()) EXPECT_TRUE(seen.emplace(each.name).second) << each.name;
}

TEST(Members, HaveNamesOfRowsOnly) {
  const std::set<std::string> wanted = wanted_names();
  for (const library_member& each : library_members())
    EXPECT_TRUE(wanted.contains(std::string{each.name})) << each.name;
}

TEST(Members, AreThereForEveryRowThatDoesSomething) {
  std::set<std::string> missing = wanted_names();
  EXPECT_EQ(missing.size(), 1447u);
  for (const library_member& each : library_members()) missing.erase(std::string{each.name});
  EXPECT_THAT(missing, testing::IsEmpty());
}

}  // namespace
