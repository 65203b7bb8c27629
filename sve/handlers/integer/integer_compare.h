// Integer comparisons into a predicate: an active element of Pd is 1 where the comparison holds and 0 where not, an
// inactive one 0. All set NZCV by the result under Pg, as it was before Pd changed. B, H, S, D by Zn's size.
// (Pd, Pg, Zn, Zm or immediate); an immediate is narrowed to the element first.
#pragma once

#include "sve/handlers/handler_types.h"

handler_ppzz sve_cmpeq_ppzz;  // Zn == Zm (CMPEQ, vectors)
handler_ppzz sve_cmpne_ppzz;  // Zn != Zm (CMPNE, vectors)
handler_ppzz sve_cmpge_ppzz;  // Zn >= Zm, signed (CMPGE, vectors)
handler_ppzz sve_cmpgt_ppzz;  // Zn > Zm, signed (CMPGT, vectors)
handler_ppzz sve_cmphs_ppzz;  // Zn >= Zm, unsigned (CMPHS, vectors)
handler_ppzz sve_cmphi_ppzz;  // Zn > Zm, unsigned (CMPHI, vectors)

handler_ppzi_signed sve_cmpeq_ppzi;  // Zn == imm (CMPEQ, immediate)
handler_ppzi_signed sve_cmpne_ppzi;  // Zn != imm (CMPNE, immediate)
handler_ppzi_signed sve_cmpgt_ppzi;  // Zn > imm, signed (CMPGT, immediate)
handler_ppzi_signed sve_cmplt_ppzi;  // Zn < imm, signed (CMPLT, immediate)
handler_ppzi_signed sve_cmple_ppzi;  // Zn <= imm, signed (CMPLE, immediate)
handler_ppzi sve_cmphi_ppzi;         // Zn > imm, unsigned (CMPHI, immediate)
handler_ppzi sve_cmplo_ppzi;         // Zn < imm, unsigned (CMPLO, immediate)
