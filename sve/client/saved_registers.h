// The registers that the rewritten code needs for itself, and the framework's spill slots where the application's
// values of them stand meanwhile.
#pragma once

#include "sve/client/framework.h"

namespace quern {

inline constexpr reg_id_t scratch_register = DR_REG_X26;  // for moves through memory
inline constexpr reg_id_t state_register = DR_REG_X27;    // the address of the thread's cpu_state
inline constexpr reg_id_t stolen_register = DR_REG_X28;   // the framework's own
inline constexpr reg_id_t link_register = DR_REG_X30;

inline constexpr dr_spill_slot_t slot_x26 = SPILL_SLOT_1;
inline constexpr dr_spill_slot_t slot_x27 = SPILL_SLOT_2;
inline constexpr dr_spill_slot_t slot_x28 = SPILL_SLOT_3;

}  // namespace quern
