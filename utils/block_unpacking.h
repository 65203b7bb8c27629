// Reads blocks of packed records, of every version of the file. Nothing in them is trusted.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "utils/trace_format.h"

namespace quern {

struct unpacked_block {
  std::vector<stored_record> records;  // those before the damage, if there is any
  bool is_damaged = false;
};

// `packed` is what follows the header, all of it or up to the file's end.
unpacked_block unpack_block(const packed_block_header& header, std::span<const unsigned char> packed,
                            std::uint32_t version);

}  // namespace quern
