// Rows of permutes: reversal, unpacking, table look-up, EXT, SPLICE and COMPACT.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/permute/permute.h"
#include "sve/veclib/permute/permute.h"

namespace quern::rows {

constexpr auto permute_rows =
    group(row<U8, U16, U32, U64>("ReverseV", "00000101 zz 111000 001110 nnnnn ddddd", vector<sve_rev_zz>),
          row<S16>("UnpackLoV", "00000101 zz 110000 001110 nnnnn ddddd", library<UnpackLoV, Zd, Zn.of(size_b)>),
          row<S32>("UnpackLoV", "00000101 zz 110000 001110 nnnnn ddddd", library<UnpackLoV, Zd, Zn.of(size_h)>),
          row<S64>("UnpackLoV", "00000101 zz 110000 001110 nnnnn ddddd", direct<sve_sunpklo_s2d_zz, Zd, Zn.of(size_s)>),
          row<S16>("UnpackHiV", "00000101 zz 110001 001110 nnnnn ddddd", library<UnpackHiV, Zd, Zn.of(size_b)>),
          row<S32>("UnpackHiV", "00000101 zz 110001 001110 nnnnn ddddd", library<UnpackHiV, Zd, Zn.of(size_h)>),
          row<S64>("UnpackHiV", "00000101 zz 110001 001110 nnnnn ddddd", direct<sve_sunpkhi_s2d_zz, Zd, Zn.of(size_s)>),
          row<U16>("UnpackLoV", "00000101 zz 110010 001110 nnnnn ddddd", direct<sve_uunpklo_b2h_zz, Zd, Zn.of(size_b)>),
          row<U32>("UnpackLoV", "00000101 zz 110010 001110 nnnnn ddddd", direct<sve_uunpklo_h2s_zz, Zd, Zn.of(size_h)>),
          row<U64>("UnpackLoV", "00000101 zz 110010 001110 nnnnn ddddd", direct<sve_uunpklo_s2d_zz, Zd, Zn.of(size_s)>),
          row<U16>("UnpackHiV", "00000101 zz 110011 001110 nnnnn ddddd", direct<sve_uunpkhi_b2h_zz, Zd, Zn.of(size_b)>),
          row<U32>("UnpackHiV", "00000101 zz 110011 001110 nnnnn ddddd", direct<sve_uunpkhi_h2s_zz, Zd, Zn.of(size_h)>),
          row<U64>("UnpackHiV", "00000101 zz 110011 001110 nnnnn ddddd", direct<sve_uunpkhi_s2d_zz, Zd, Zn.of(size_s)>),
          row<U8>("SlideVI", "00000101 001 iiiii 000 iii mmmmm ddddd", direct<sve_ext_zzi, Zdn, Zm5, imm_ext>),
          row<U32, U64>("CompressVV", "00000101 zz 100001 100 ggg nnnnn ddddd", library<CompressVV, Zd, Pg, Zn>),
          row<U8, U16, U32, U64>("SpliceVV", "00000101 zz 101100 100 ggg mmmmm ddddd", library_selection<SpliceVV>),
          row<P>("UnpackLoP", "00000101 00 110000 0100000 nnnn 0 dddd", direct<sve_punpklo_pp, Pd.of(size_h), Pn>),
          row<P>("UnpackHiP", "00000101 00 110001 0100000 nnnn 0 dddd", direct<sve_punpkhi_pp, Pd.of(size_h), Pn>),
          row<P8, P16, P32, P64>("ReverseP", "00000101 zz 110100 0100000 nnnn 0 dddd", direct<sve_rev_pp, Pd, Pn>),
          row<U8, U16, U32, U64>("TblVV", "00000101 zz 1 mmmmm 001100 nnnnn ddddd",
                                 direct<sve_tbl_zzz, Zd, Zn.as(operand_kind::z_list), Zm>));

}  // namespace quern::rows
