// Text from outside (names, words, contents of files) as it may be shown on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace quern {

// The text with all that is no letter or sign spelled as \xNN: control characters, which a terminal would obey, and
// bytes that are no UTF-8.
std::string printable(std::string_view text);

}  // namespace quern
