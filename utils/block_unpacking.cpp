// The two layouts of a block: flags and numbers apart and compressed, and, before version 4, record by record.
#include "utils/block_unpacking.h"

#include <lz4.h>

#include <memory>

#include "utils/record_packing.h"

namespace quern {
namespace {

// A chunk has no more slots that a block could be packed from.
bool can_be(const packed_block_header& header) {
  constexpr std::size_t most_ratio = 255, most_chunk_bytes = 1 << 26;  // of LZ4; of any chunk
  return header.records <= header.unpacked_bytes && header.records <= most_chunk_bytes / sizeof(stored_record) &&
         header.unpacked_bytes - header.records <= header.records * most_number_bytes &&
         header.unpacked_bytes / most_ratio <= header.packed_bytes;
}

// Empty where the bytes are not what the header says.
std::vector<unsigned char> decompressed(const packed_block_header& header, std::span<const unsigned char> packed) {
  if (!can_be(header) || packed.size() != header.packed_bytes) return {};
  std::vector<unsigned char> bytes(header.unpacked_bytes);
  const int size =
      LZ4_decompress_safe(reinterpret_cast<const char*>(packed.data()), reinterpret_cast<char*>(bytes.data()),
                          static_cast<int>(packed.size()), static_cast<int>(bytes.size()));
  if (size < 0 || static_cast<std::size_t>(size) != bytes.size()) return {};
  return bytes;
}

// Appends to the block's records those whose numbers are in the bytes up to `end`; next_flags(at) gives the flags of
// the next, and may take them from the bytes.
template <class Flags>
void unpack_records(unpacked_block& block, std::uint32_t count, const unsigned char* at, const unsigned char* end,
                    Flags next_flags) {
  const auto model = std::make_unique<record_model>();
  for (std::uint32_t left = count; left != 0; --left) {
    stored_record record;
    const unsigned char* const flags = next_flags(at);
    at = flags != nullptr ? unpack_record(*model, *flags, at, end, record) : nullptr;
    block.is_damaged = at == nullptr;
    if (block.is_damaged) return;
    block.records.push_back(record);
  }
}

}  // namespace

unpacked_block unpack_block(const packed_block_header& header, std::span<const unsigned char> packed,
                            std::uint32_t version) {
  unpacked_block block;
  if (version < 4) {
    const unsigned char* const end = packed.data() + packed.size();
    unpack_records(block, header.records, packed.data(), end,
                   [end](const unsigned char*& at) { return at != end ? at++ : nullptr; });
    return block;
  }
  const std::vector<unsigned char> bytes = decompressed(header, packed);
  block.is_damaged = bytes.empty() && header.records != 0;
  if (bytes.empty()) return block;
  const unsigned char* flags = bytes.data();
  unpack_records(block, header.records, bytes.data() + header.records, bytes.data() + bytes.size(),
                 [&flags](const unsigned char*&) { return flags++; });
  return block;
}

}  // namespace quern
