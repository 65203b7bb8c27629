// The stack of lines.
#include "tools/reuse_distance.h"

namespace quern {

reuse_distance::index reuse_distance::find(std::uint64_t line) const {
  index at = by_hash_[hash_of(line)];
  while (at != none && nodes_[at].line != line) at = nodes_[at].same_hash;
  return at;
}

void reuse_distance::unlink(index at) {
  const node& gone = nodes_[at];
  (gone.above == none ? top_ : nodes_[gone.above].below) = gone.below;
  (gone.below == none ? bottom_ : nodes_[gone.below].above) = gone.above;
}

void reuse_distance::push(index at) {
  nodes_[at].above = none;
  nodes_[at].below = top_;
  (top_ == none ? bottom_ : nodes_[top_].above) = at;
  top_ = at;
  nodes_[at].bin = 0;
}

// All lines from the top down to the bin's have moved down by one: its last goes to the next bin.
void reuse_distance::pass_on(unsigned bin) {
  nodes_[last_[bin]].bin = bin + 1;
  last_[bin] = nodes_[last_[bin]].above;
}

// A node for a line that is not in the stack: a new one, or that of the line at the bottom.
reuse_distance::index reuse_distance::take_room() {
  if (nodes_.size() != most_lines) {
    nodes_.push_back({});
    return static_cast<index>(nodes_.size() - 1);
  }
  const index at = bottom_;
  unlink(at);
  index* link = &by_hash_[hash_of(nodes_[at].line)];
  while (*link != at) link = &nodes_[*link].same_hash;
  *link = nodes_[at].same_hash;
  return at;
}

unsigned reuse_distance::access(std::uint64_t line) {
  index at = find(line);
  if (at == none) {
    at = take_room();
    index& first = by_hash_[hash_of(line)];
    nodes_[at].line = line;
    nodes_[at].same_hash = first;
    first = at;
    push(at);
    const auto lines = static_cast<index>(nodes_.size());
    const bool fills_bin = std::has_single_bit(lines);  // with the line at the bottom, in a full stack each time
    const auto full = static_cast<unsigned>(std::bit_width(lines)) - (fills_bin ? 1 : 0);
    for (unsigned bin = 0; bin != full; ++bin) pass_on(bin);
    if (fills_bin) last_[full] = bottom_;
    return far;
  }
  const unsigned found = nodes_[at].bin;
  if (found == 0) return 0;
  if (last_[found] == at) last_[found] = nodes_[at].above;
  unlink(at);
  push(at);
  for (unsigned bin = 0; bin != found; ++bin) pass_on(bin);
  return found;
}

}  // namespace quern
