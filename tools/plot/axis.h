// Where the ticks of an axis are, and how numbers are written beside them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quern {

// Ticks from `first`, or 0, to `end`, one step apart and at most `most` steps: a step is 1, 2 or 5 times a power of
// ten, or a power of two. `end` is above where they begin.
std::vector<double> decimal_ticks(double first, double end, unsigned most);
std::vector<double> binary_ticks(double end, unsigned most);

// "0", "250", "2.5 k", "10 M"; "0 B", "64 B", "1.5 KiB". As many digits as a tick needs, three at most.
std::string short_number(double number);
std::string short_bytes(double bytes);
std::string short_signed_bytes(double bytes);  // "+64 B", "−1.5 KiB", "0 B"
std::string short_binary(double number);       // "64", "4 Ki"

// "87 %", "0.3 %", "<0.1 %"; "100 %" of nothing less than all.
std::string percent_text(double part, double whole);

}  // namespace quern
