// A thread's packed chunk, behind whose blocks the records of its full chunks are put. Async-signal-safe; to be called
// undisturbed.
#pragma once

#include <cstdint>

#include "utils/trace_format.h"

namespace quern {

class chunk_packer {
 public:
  // Packs all records of the chunk, and makes it empty. False when that can't be done: no room on the disk or in
  // memory, or a slot that was never filled. The chunk then keeps its records; some may be packed as well.
  bool pack(trace_chunk& full);

  // Gives back what it has mapped; what is packed stays in the file.
  void release();

 private:
  struct workspace;

  bool make_workspace();
  bool begin_chunk();
  std::uint32_t compress_behind_header();
  std::uint32_t append_block(const trace_chunk& full, std::uint32_t first_slot);

  workspace* work_ = nullptr;  // mapped: thread-local storage is scarce, and the application's stack short
  byte_chunk* chunk_ = nullptr;
};

}  // namespace quern
