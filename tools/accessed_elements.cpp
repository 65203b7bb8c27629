// From a record's form to its elements.
#include "tools/accessed_elements.h"

#include "sve/decoder/decode_map.h"

namespace quern {

std::optional<element_form> element_form_of(std::uint32_t word) {
  const decode_row* const row = decode_word(word).row;
  if (row == nullptr || !row->memory.touches_memory() || row->way != route::direct) return std::nullopt;
  const memory_extent extent = row->memory.extent;
  if (extent != memory_extent::consecutive && extent != memory_extent::scattered) return std::nullopt;
  return element_form{row->memory.element_bytes, std::uint32_t{1} << row->size};
}

std::optional<std::uint64_t> elements_of(const trace_record& record, const element_form& form,
                                         std::uint64_t vector_bytes) {
  if (record.group != 0) return record.size == form.memory_bytes ? std::optional<std::uint64_t>(1) : std::nullopt;
  // All lanes are a whole vector in the record, however narrow their elements are. No fewer lanes have as many bytes.
  if (record.size == vector_bytes) return vector_bytes / form.lane_bytes;
  if (record.size == 0 || record.size > vector_bytes || record.size % form.memory_bytes != 0) return std::nullopt;
  return record.size / form.memory_bytes;
}

}  // namespace quern
