// The floating-point unit that direct handlers compute on. Handlers are written once, against this interface: on
// AArch64 it is the host's own unit, whose instructions define the results; elsewhere the software library.
//
//   host_fp fp(state)      for the time of one instruction. Controls are those of the host's FPCR, or of state.fpcr in
//                          software; flags gather in the host's FPSR, which the thunk moves in and out, or go to
//                          state.fpsr when the unit is destroyed.
//   fp.fadd(a, b), ...     the architecture's instruction of that name on each lane of a group (sve/state/
//                          lane_group.h) of singles or doubles, which are bit patterns. Comparisons answer all ones or
//                          zeros a lane.
#pragma once

#ifdef __aarch64__
#include "sve/arith/unit/neon_fp.h"
namespace quern {
using host_fp = neon_fp;
}
#else
#include "sve/arith/unit/software_fp.h"
namespace quern {
using host_fp = software_fp;
}
#endif
