// What one AArch64 instruction does to registers and to the way on, as far as compiled code has need.
#pragma once

#include <cstdint>
#include <optional>

#include "sve/trap/patch/written_registers.h"

namespace quern {

// The registers that an instruction may write; those of vectors it may write in part. More than those, where its class
// tells too little. Nothing for one that is not known, and for jumps and calls, which `way_on` knows.
std::optional<written_registers> effect_of(std::uint32_t word);

// Where an instruction leads.
struct way_on {
  enum class kind {
    next,           // to the next instruction
    jump,           // `distance` bytes on
    jump_and_next,  // to both: a condition, or a call, which comes back
    none,           // to the caller, or nowhere
    elsewhere       // to where a register says
  };
  kind to = kind::next;
  std::int64_t distance = 0;
  bool is_call = false;
};
way_on way_on_of(std::uint32_t word);

// The address that a library's stub for another one's function takes its target from: ADRP X16; LDR X17, [X16, ...];
// ADD X16, ...; BR X17. Null, if `jump` is not the last instruction of one.
const unsigned char* const* slot_of_stub(const unsigned char* jump);

}  // namespace quern
