// Rows of address arithmetic: ADR, and arithmetic with the vector length.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/address.h"
#include "sve/veclib/integer/address.h"

namespace quern::rows {

constexpr auto address_rows =
    group(row<S64>("VLX", "00000100 101 11111 01010 iiiiii ddddd", direct<sve_rdvl_ri, Xd, imm6_s>),
          row<S64>("AddVLX", "00000100 001 nnnnn 01010 iiiiii ddddd", direct<sve_addvl_rri, Xd_sp, Xn16_sp, imm6_s>),
          row<S64>("AddPLX", "00000100 011 nnnnn 01010 iiiiii ddddd", direct<sve_addpl_rri, Xd_sp, Xn16_sp, imm6_s>),
          // The packed forms take the offsets as they stand, in words or doublewords.
          row<U64>("LEA1VV", "00000100 111 mmmmm 101000 nnnnn ddddd", vectors<sve_adr_scaled_zzz>),
          row<U32>("LEA1VV", "00000100 101 mmmmm 101000 nnnnn ddddd", library_vectors<LEA1VV>),
          row<U64>("LEA1XVV", "00000100 001 mmmmm 101000 nnnnn ddddd", library<LEA1XVV, Zd, Zn, Zm_sxtw>),
          row<U64>("LEA1YVV", "00000100 011 mmmmm 101000 nnnnn ddddd", library<LEA1YVV, Zd, Zn, Zm_uxtw>),
          row<U64>("LEA2VV", "00000100 111 mmmmm 101001 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm.times(2)>),
          row<U32>("LEA2VV", "00000100 101 mmmmm 101001 nnnnn ddddd", library<LEA2VV, Zd, Zn, Zm.times(2)>),
          row<U64>("LEA2XVV", "00000100 001 mmmmm 101001 nnnnn ddddd", library<LEA2XVV, Zd, Zn, Zm_sxtw.times(2)>),
          row<U64>("LEA2YVV", "00000100 011 mmmmm 101001 nnnnn ddddd", library<LEA2YVV, Zd, Zn, Zm_uxtw.times(2)>),
          row<U64>("LEA4VV", "00000100 111 mmmmm 101010 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm.times(4)>),
          row<U32>("LEA4VV", "00000100 101 mmmmm 101010 nnnnn ddddd", library<LEA4VV, Zd, Zn, Zm.times(4)>),
          row<U64>("LEA4XVV", "00000100 001 mmmmm 101010 nnnnn ddddd", library<LEA4XVV, Zd, Zn, Zm_sxtw.times(4)>),
          row<U64>("LEA4YVV", "00000100 011 mmmmm 101010 nnnnn ddddd", library<LEA4YVV, Zd, Zn, Zm_uxtw.times(4)>),
          row<U64>("LEA8VV", "00000100 111 mmmmm 101011 nnnnn ddddd", direct<sve_adr_scaled_zzz, Zd, Zn, Zm.times(8)>),
          row<U32>("LEA8VV", "00000100 101 mmmmm 101011 nnnnn ddddd", library<LEA8VV, Zd, Zn, Zm.times(8)>),
          row<U64>("LEA8XVV", "00000100 001 mmmmm 101011 nnnnn ddddd", library<LEA8XVV, Zd, Zn, Zm_sxtw.times(8)>),
          row<U64>("LEA8YVV", "00000100 011 mmmmm 101011 nnnnn ddddd", library<LEA8YVV, Zd, Zn, Zm_uxtw.times(8)>));

}  // namespace quern::rows
