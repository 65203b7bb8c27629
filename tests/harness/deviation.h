// Where two judges of a row differ on purpose, each with its reason, and what has been seen of that.
#pragma once

#include <map>
#include <set>
#include <span>
#include <string_view>
#include <vector>

#include "tests/harness/comparison.h"
#include "tests/random_cases/test_case.h"

namespace quern {

struct deviation {
  std::string_view handler;  // or family, of the rows that it concerns; or its start and an asterisk
  part where;                // what differs
  bool (*applies)(const decode_row& row, const test_case& c);  // in which cases it may
  bool everywhere;                                             // whether it shows wherever the test runs
  const char* reason;
};

// Whether the deviation is one of the row's.
bool concerns(const deviation& d, const decode_row& row);

// The deviations of a table that concern one row, and which of them its cases have shown.
class row_deviations {
 public:
  row_deviations(std::span<const deviation> table, const decode_row& row);

  // Drops what a deviation allows in the case, and notes that it came.
  void drop_known(const test_case& c, std::vector<difference>& found);
  // How many differences have been dropped.
  std::size_t dropped() const;
  // Those that some case allowed, should show everywhere, and have come in none.
  std::vector<const deviation*> stale() const;

 private:
  const decode_row& row_;
  std::vector<const deviation*> mine_;
  std::set<const deviation*> applied_;
  std::map<const deviation*, std::size_t> seen_;
};

}  // namespace quern
