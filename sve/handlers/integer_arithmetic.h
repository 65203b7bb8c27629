// Unpredicated and merging integer arithmetic and logic of whole elements.
#pragma once

#include "sve/state/cpu_state.h"

// Zd = Zn + Zm, every lane, wrapping (ADD, vectors, unpredicated). B, H, S, D by Zd's size.
aarch64_decode_rc sve_add_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
