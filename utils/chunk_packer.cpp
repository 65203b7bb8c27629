// Packing a thread's full chunks.
#include "utils/chunk_packer.h"

#include <lz4.h>
#include <sys/mman.h>

#include <atomic>
#include <cstring>

#include "utils/record_packing.h"
#include "utils/trace_file.h"

namespace quern {

// What a thread packs with, so that neither the heap nor the stack is needed.
struct chunk_packer::workspace {
  // A block is closed when its numbers have taken this much. What is compressed has to fit into an empty chunk, even if
  // that makes it longer.
  static constexpr std::size_t number_bytes = 32 << 10;
  static constexpr std::size_t most_bytes = trace_chunk_records + number_bytes;
  static_assert(sizeof(packed_block_header) + LZ4_COMPRESSBOUND(most_bytes) <= sizeof(byte_chunk::bytes));

  std::uint32_t pack(const trace_chunk& full, std::uint32_t first_slot);
  int compress(unsigned char* to, std::size_t room);

  record_model model;
  LZ4_stream_t state;
  std::uint32_t begin, end;         // of what is packed
  unsigned char bytes[most_bytes];  // the flags of all records, then their numbers
};

namespace {

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

// Answers how many records it took: those that there is room for, up to one that is not whole.
std::uint32_t chunk_packer::workspace::pack(const trace_chunk& full, std::uint32_t first_slot) {
  const unsigned char* const last_start = bytes + sizeof bytes - most_number_bytes;
  unsigned char* to = bytes + trace_chunk_records;
  std::uint32_t records = 0;
  model.reset();
  for (std::uint32_t slot = first_slot; slot != trace_chunk_records && to <= last_start && is_whole(full, slot); ++slot)
    to = pack_record(model, full.records[slot], bytes[records++], to);
  begin = trace_chunk_records - records;
  end = static_cast<std::uint32_t>(to - bytes);
  if (begin != 0) std::memmove(bytes + begin, bytes, records);
  return records;
}

// Answers how many bytes it wrote, or 0 when there is no room for them.
int chunk_packer::workspace::compress(unsigned char* to, std::size_t room) {
  constexpr int acceleration = 1;  // the best compression; faster ones save nothing where there is much to compress
  return LZ4_compress_fast_extState(&state, reinterpret_cast<const char*>(bytes + begin), reinterpret_cast<char*>(to),
                                    static_cast<int>(end - begin), static_cast<int>(room), acceleration);
}

bool chunk_packer::make_workspace() {
  if (work_ != nullptr) return true;
  void* const at = mmap(nullptr, sizeof(workspace), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (at == MAP_FAILED) return false;
  work_ = static_cast<workspace*>(at);
  return true;
}

bool chunk_packer::begin_chunk() {
  if (chunk_ != nullptr) unmap_chunk(chunk_);
  chunk_ = map_byte_chunk(packed_magic);
  return chunk_ != nullptr;
}

// Compresses what is packed to the room behind the last block and a header. Answers its bytes, or 0 if there is no
// room.
std::uint32_t chunk_packer::compress_behind_header() {
  constexpr std::size_t header = sizeof(packed_block_header);
  const std::size_t room = sizeof chunk_->bytes - chunk_->header.count;
  if (room <= header) return 0;
  return static_cast<std::uint32_t>(work_->compress(chunk_->bytes + chunk_->header.count + header, room - header));
}

// Answers how many records it took, or 0 when the next is not whole or there is no chunk to put it into.
std::uint32_t chunk_packer::append_block(const trace_chunk& full, std::uint32_t first_slot) {
  const std::uint32_t records = work_->pack(full, first_slot);
  if (records == 0) return 0;
  std::uint32_t packed_bytes = chunk_ != nullptr ? compress_behind_header() : 0;
  if (packed_bytes == 0 && begin_chunk()) packed_bytes = compress_behind_header();
  if (packed_bytes == 0) return 0;
  constexpr std::uint32_t unit = alignof(packed_block_header);
  const packed_block_header header{
      .size = (static_cast<std::uint32_t>(sizeof header) + packed_bytes + unit - 1) / unit * unit,
      .records = records,
      .source = static_cast<std::uint32_t>(full.header.number),
      .generation = full.header.generation,
      .time = full.header.time,
      .first_slot = first_slot,
      .packed_bytes = packed_bytes,
      .unpacked_bytes = work_->end - work_->begin,
      .reserved = 0};
  std::memcpy(chunk_->bytes + chunk_->header.count, &header, sizeof header);
  std::atomic_ref(chunk_->header.count).fetch_add(header.size, std::memory_order_release);
  return records;
}

bool chunk_packer::pack(trace_chunk& full) {
  if (!make_workspace()) return false;
  for (std::uint32_t slot = 0; slot != trace_chunk_records;) {
    const std::uint32_t records = append_block(full, slot);
    if (records == 0) return false;
    slot += records;
  }
  empty(full);
  return true;
}

void chunk_packer::release() {
  if (chunk_ != nullptr) unmap_chunk(chunk_);
  if (work_ != nullptr) munmap(work_, sizeof *work_);
  chunk_ = nullptr;
  work_ = nullptr;
}

}  // namespace quern
