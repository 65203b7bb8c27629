// Digests of what instructions leave, by routine, and the file that holds the ones agreed on.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace quern {

// A direct handler's name, or a library family's, to digest.
using digest_table = std::map<std::string, std::uint64_t>;

// The digest of every routine: over the rows that reach it, and for each over registers and memory
// after the same cases on every platform.
digest_table compute_digests();

// One line an entry: the name, a blank, 16 hexadecimal digits. An unreadable file or line ends the process with a
// message.
digest_table read_digests(const char* path);
void write_digests(const char* path, const digest_table& table);

}  // namespace quern
