// The library's functions against the decoder's rows: each row that does something has a function of its name.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "tests/veclib/library_members.h"

namespace {

using namespace quern;

// Operations whose functions are still to be written, for some of their types or all.
const std::string pending_stems =
    " "
    "AddPLX AddVLX VLX ";

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

// "VecU16AddVVM" is "AddVVM": a tag ends with its digits, or P.
std::string stem_of(const std::string& name) {
  static const std::regex tag("Vec(P(8|16|32|64)?|[SU](8|16_2|32_4|64_4|64_8|16|32|64|128)|[BDFH][0-9]+)");
  return std::regex_replace(name, tag, "", std::regex_constants::format_first_only);
}

TEST(Members, AreThereForEveryRowThatDoesSomething) {
  std::set<std::string> missing = wanted_names();
  EXPECT_EQ(missing.size(), 1447u);
  for (const library_member& each : library_members()) missing.erase(std::string{each.name});
  std::string unexpected;
  for (const std::string& name : missing)
    if (pending_stems.find(' ' + stem_of(name) + ' ') == std::string::npos) unexpected += name + ' ';
  EXPECT_EQ(unexpected, "");
}

}  // namespace
