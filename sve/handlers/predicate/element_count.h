// Scalars and vectors moved by a count of elements: by a pattern's, or by a predicate's set elements. The product of a
// pattern's count and the multiplier has 32 bits. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

// Xdn = Xdn + count * multiplier. Number 31: nothing happens.
handler_rii sve_incb_rii;  // INCB
handler_rii sve_inch_rii;  // INCH (scalar)
handler_rii sve_incw_rii;  // INCW (scalar)
handler_rii sve_incd_rii;  // INCD (scalar)

// Xdn = Xdn - count * multiplier. Number 31: nothing happens.
handler_rii sve_decb_rii;  // DECB
handler_rii sve_dech_rii;  // DECH (scalar)
handler_rii sve_decw_rii;  // DECW (scalar)
handler_rii sve_decd_rii;  // DECD (scalar)

// Rdn = Rdn - count * multiplier, but at least 0: on X when dsize is 3, else on W, zero-extended. Number 31: nothing
// happens.
handler_rii sve_uqdecb_rii;  // UQDECB
handler_rii sve_uqdecw_rii;  // UQDECW (scalar); no row of the decoder comes here
handler_rii sve_uqdecd_rii;  // UQDECD (scalar); no row of the decoder comes here

// Xd = the number of elements in a vector * multiplier, whatever the pattern. Number 31: nothing happens. No row of the
// decoder comes here: CNTB and its like go to the vector library.
handler_rii sve_cntb_rii;
handler_rii sve_cnth_rii;
handler_rii sve_cntw_rii;
handler_rii sve_cntd_rii;

// Each element of Zdn gains (loses) count * multiplier, wrapping.
handler_zii sve_inch_zii;  // INCH (vector)
handler_zii sve_incw_zii;  // INCW (vector)
handler_zii sve_incd_zii;  // INCD (vector)
handler_zii sve_dech_zii;  // DECH (vector)
handler_zii sve_decw_zii;  // DECW (vector)
handler_zii sve_decd_zii;  // DECD (vector)

// Xd = the number of elements active in Pg and set in Pn. Number 31: nothing happens. B, H, S, D by Pn's size (CNTP).
aarch64_decode_rc sve_cntp_rpp(cpu_state* state, aarch64_i_reg xd, aarch64_p_reg pg, aarch64_p_reg pn);

// Xdn = Xdn + the number of elements set in Pm. Number 31: nothing happens. B, H, S, D by Pm's size (INCP, scalar).
aarch64_decode_rc sve_incp_rp(cpu_state* state, aarch64_i_reg xdn, aarch64_p_reg pm);
