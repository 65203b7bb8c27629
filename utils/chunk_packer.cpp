// Packing a thread's full chunks.
#include "utils/chunk_packer.h"

#include <sys/mman.h>

#include <atomic>
#include <cstring>

#include "utils/trace_file.h"

namespace quern {
namespace {

constexpr std::size_t least_block = sizeof(packed_block_header) + most_packed_bytes;

bool is_whole(const trace_chunk& chunk, std::uint32_t slot) {
  return chunk.records[slot].complete == chunk.header.generation;
}

void empty(trace_chunk& chunk) {
  // In this order: a chunk whose slots are not yet taken back has no records that were packed.
  std::atomic_ref(chunk.header.count).store(0, std::memory_order_release);
  chunk.header.time = nanoseconds_now();
  std::atomic_ref(chunk.header.generation).store(chunk.header.generation + 1, std::memory_order_release);
}

}  // namespace

bool chunk_packer::make_room() {
  if (model_ == nullptr) {
    void* const at = mmap(nullptr, sizeof(record_model), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (at == MAP_FAILED) return false;
    model_ = static_cast<record_model*>(at);
  }
  if (chunk_ != nullptr && sizeof chunk_->bytes - chunk_->header.count >= least_block) return true;
  if (chunk_ != nullptr) unmap_chunk(chunk_);
  chunk_ = map_byte_chunk(packed_magic);
  return chunk_ != nullptr;
}

// Answers how many records it took: those that there is room for, up to one that is not whole.
std::uint32_t chunk_packer::append_block(const trace_chunk& full, std::uint32_t first_slot) {
  unsigned char* const block = chunk_->bytes + chunk_->header.count;
  unsigned char* const last_start = chunk_->bytes + sizeof chunk_->bytes - most_packed_bytes;
  unsigned char* to = block + sizeof(packed_block_header);
  std::uint32_t slot = first_slot;
  model_->reset();
  for (; slot != trace_chunk_records && to <= last_start && is_whole(full, slot); ++slot)
    to = pack_record(*model_, full.records[slot], to);
  const auto bytes = static_cast<std::uint32_t>(to - block);
  const packed_block_header header{.size = (bytes + 7) / 8 * 8,
                                   .records = slot - first_slot,
                                   .source = static_cast<std::uint32_t>(full.header.number),
                                   .generation = full.header.generation,
                                   .time = full.header.time,
                                   .first_slot = first_slot,
                                   .packed_bytes = bytes - static_cast<std::uint32_t>(sizeof(packed_block_header))};
  std::memcpy(block, &header, sizeof header);
  std::atomic_ref(chunk_->header.count).fetch_add(header.size, std::memory_order_release);
  return header.records;
}

bool chunk_packer::pack(trace_chunk& full) {
  for (std::uint32_t slot = 0; slot != trace_chunk_records;) {
    if (!is_whole(full, slot) || !make_room()) return false;
    slot += append_block(full, slot);
  }
  empty(full);
  return true;
}

void chunk_packer::release() {
  if (chunk_ != nullptr) unmap_chunk(chunk_);
  if (model_ != nullptr) munmap(model_, sizeof *model_);
  chunk_ = nullptr;
  model_ = nullptr;
}

}  // namespace quern
