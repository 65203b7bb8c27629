// The elements that a record is about. The emulator's records have none; the instruction tells, where its word is
// known.
#pragma once

#include <cstdint>
#include <optional>

#include "utils/trace_reader.h"

namespace quern {

// What an instruction makes of a lane.
struct element_form {
  std::uint32_t memory_bytes, lane_bytes;
};

// Of the instructions that are traced: loads and stores of an element a lane. Nothing for other words.
std::optional<element_form> element_form_of(std::uint32_t word);

// How many elements of the form the record is about: nothing where it can't be of such an instruction. One for each
// lane that a load was to read, whether it did or not.
std::optional<std::uint64_t> elements_of(const trace_record& record, const element_form& form,
                                         std::uint64_t vector_bytes);

}  // namespace quern
