// Known deviations, and what has been seen of them.
#include "tests/harness/deviation.h"

namespace quern {

bool concerns(const deviation& d, const decode_row& row) {
  if (d.handler.ends_with('*')) return row.routine().starts_with(d.handler.substr(0, d.handler.size() - 1));
  return d.handler == row.routine();
}

row_deviations::row_deviations(std::span<const deviation> table, const decode_row& row) : row_(row) {
  for (const deviation& d : table)
    if (concerns(d, row)) mine_.push_back(&d);
}

void row_deviations::drop_known(const test_case& c, std::vector<difference>& found) {
  for (const deviation* d : mine_) {
    if (!d->applies(row_, c)) continue;
    applied_.insert(d);
    seen_[d] += std::erase_if(found, [&](const difference& f) { return f.where == d->where; });
  }
}

std::size_t row_deviations::dropped() const {
  std::size_t all = 0;
  for (const auto& [d, count] : seen_) all += count;
  return all;
}

std::vector<const deviation*> row_deviations::stale() const {
  std::vector<const deviation*> found;
  for (const deviation* d : applied_)
    if (d->everywhere && seen_.at(d) == 0) found.push_back(d);
  return found;
}

}  // namespace quern
