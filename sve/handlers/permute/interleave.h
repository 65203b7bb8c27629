// Interleaving, de-interleaving and transposing the elements of two registers. Whole elements move; in a predicate an
// element has as many bytes as in a vector, and only its first byte counts later. Flags stay. B, H, S, D by the
// destination's size.
#pragma once

#include "sve/handlers/handler_types.h"

// An element size code as an enumeration.
enum element_size : std::uint32_t {
  ELEMENT_B = size_b,
  ELEMENT_H = size_h,
  ELEMENT_S = size_s,
  ELEMENT_D = size_d,
};

// The work on VL_BYTES bytes, vectors and predicates alike. All bytes of `destination` are written before the sources
// are read to their end, so it must be neither of them; the sources are only read.
void sve_zip1(char* destination, char* first, char* second, element_size size);
void sve_zip2(char* destination, char* first, char* second, element_size size);
void sve_uzp1(char* destination, char* first, char* second, element_size size);

handler_zzz sve_zip1_zzz;  // elements of the low halves of Zn and Zm in turn (ZIP1)
handler_zzz sve_zip2_zzz;  // elements of the high halves of Zn and Zm in turn (ZIP2)
handler_zzz sve_uzp1_zzz;  // the even elements of Zn, then those of Zm (UZP1)
handler_zzz sve_uzp2_zzz;  // the odd elements of Zn, then those of Zm (UZP2)
handler_zzz sve_trn1_zzz;  // the even elements of Zn and Zm in turn (TRN1)
handler_zzz sve_trn2_zzz;  // the odd elements of Zn and Zm in turn (TRN2)

handler_ppp sve_zip1_ppp;  // ZIP1 (predicates)
handler_ppp sve_zip2_ppp;  // ZIP2 (predicates)
handler_ppp sve_uzp1_ppp;  // UZP1 (predicates)
handler_ppp sve_trn1_ppp;  // TRN1 (predicates), elements cut to bit 0; no row of the decoder comes here
