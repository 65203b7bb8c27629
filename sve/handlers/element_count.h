// Scalars and vectors moved by a count of elements: by a pattern's, or by a predicate's set elements. Flags stay.
#pragma once

#include "sve/handlers/handler_shapes.h"

namespace quern {
// pattern: 0 to 31. multiplier: 1 to 16; its product with the pattern's count has 32 bits.
using handler_rii = aarch64_decode_rc(cpu_state*, aarch64_i_reg rdn, unsigned int pattern, unsigned int multiplier);
using handler_zii = aarch64_decode_rc(cpu_state*, aarch64_z_reg zdn, unsigned int pattern, unsigned int multiplier);
}  // namespace quern

// Xdn = Xdn + count * multiplier. Number 31: nothing happens.
quern::handler_rii sve_incb_rii;  // INCB
quern::handler_rii sve_inch_rii;  // INCH (scalar)
quern::handler_rii sve_incw_rii;  // INCW (scalar)
quern::handler_rii sve_incd_rii;  // INCD (scalar)

// Xdn = Xdn - count * multiplier. Number 31: nothing happens.
quern::handler_rii sve_decb_rii;  // DECB
quern::handler_rii sve_dech_rii;  // DECH (scalar)
quern::handler_rii sve_decw_rii;  // DECW (scalar)
quern::handler_rii sve_decd_rii;  // DECD (scalar)

// Rdn = Rdn - count * multiplier, but at least 0: on X when dsize is 3, else on W, zero-extended. Number 31: nothing
// happens.
quern::handler_rii sve_uqdecb_rii;  // UQDECB
quern::handler_rii sve_uqdecw_rii;  // UQDECW (scalar); no row of the decoder comes here
quern::handler_rii sve_uqdecd_rii;  // UQDECD (scalar); no row of the decoder comes here

// Xd = the number of elements in a vector * multiplier, whatever the pattern. Number 31: nothing happens. No row of the
// decoder comes here: CNTB and its like go to the vector library.
quern::handler_rii sve_cntb_rii;
quern::handler_rii sve_cnth_rii;
quern::handler_rii sve_cntw_rii;
quern::handler_rii sve_cntd_rii;

// Each element of Zdn gains (loses) count * multiplier, wrapping.
quern::handler_zii sve_inch_zii;  // INCH (vector)
quern::handler_zii sve_incw_zii;  // INCW (vector)
quern::handler_zii sve_incd_zii;  // INCD (vector)
quern::handler_zii sve_dech_zii;  // DECH (vector)
quern::handler_zii sve_decw_zii;  // DECW (vector)
quern::handler_zii sve_decd_zii;  // DECD (vector)

// Xd = the number of elements active in Pg and set in Pn. Number 31: nothing happens. B, H, S, D by Pn's size (CNTP).
aarch64_decode_rc sve_cntp_rpp(cpu_state* state, aarch64_i_reg xd, aarch64_p_reg pg, aarch64_p_reg pn);

// Xdn = Xdn + the number of elements set in Pm. Number 31: nothing happens. B, H, S, D by Pm's size (INCP, scalar).
aarch64_decode_rc sve_incp_rp(cpu_state* state, aarch64_i_reg xdn, aarch64_p_reg pm);
