// Rows of prefetches.
#pragma once

#include "sve/decoder/rows/shapes.h"

namespace quern::rows {

constexpr auto prefetch_rows = group(
    row<U8>("Prefetch1LSS", "1000010 00 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<1>),
    row<U16>("Prefetch2LSS", "1000010 01 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<2>),
    row<U32>("Prefetch4LSS", "1000010 10 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<4>),
    row<U64>("Prefetch8LSS", "1000010 11 00 mmmmm 110 ggg nnnnn 0 oooo", prefetch_scalar<8>),
    // Where 32-bit and 64-bit lanes differ in bit 30 alone, the types give its value.
    row<U32.at(0), U64.at(1)>("Prefetch1VI", "1z00010 00 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<1>),
    row<U32.at(0), U64.at(1)>("Prefetch2VI", "1z00010 01 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<2>),
    row<U32.at(0), U64.at(1)>("Prefetch4VI", "1z00010 10 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<4>),
    row<U32.at(0), U64.at(1)>("Prefetch8VI", "1z00010 11 00 iiiii 111 ggg nnnnn 0 oooo", prefetch_base<8>),
    row<U64>("Prefetch1SV", "1100010 00 11 mmmmm 100 ggg nnnnn 0 oooo", prefetch_vector<Zm>),
    row<U64>("Prefetch2SV", "1100010 00 11 mmmmm 101 ggg nnnnn 0 oooo", prefetch_vector<Zm.times(2)>),
    row<U64>("Prefetch4SV", "1100010 00 11 mmmmm 110 ggg nnnnn 0 oooo", prefetch_vector<Zm.times(4)>),
    row<U64>("Prefetch8SV", "1100010 00 11 mmmmm 111 ggg nnnnn 0 oooo", prefetch_vector<Zm.times(8)>),
    row<U32.at(0), U64.at(1)>("Prefetch1YSV", "1z00010 00 01 mmmmm 000 ggg nnnnn 0 oooo", prefetch_vector<Zm_uxtw>),
    row<U32.at(0), U64.at(1)>("Prefetch2YSV", "1z00010 00 01 mmmmm 001 ggg nnnnn 0 oooo",
                              prefetch_vector<Zm_uxtw.times(2)>),
    row<U32.at(0), U64.at(1)>("Prefetch4YSV", "1z00010 00 01 mmmmm 010 ggg nnnnn 0 oooo",
                              prefetch_vector<Zm_uxtw.times(4)>),
    row<U32.at(0), U64.at(1)>("Prefetch8YSV", "1z00010 00 01 mmmmm 011 ggg nnnnn 0 oooo",
                              prefetch_vector<Zm_uxtw.times(8)>),
    row<U32.at(0), U64.at(1)>("Prefetch1XSV", "1z00010 00 11 mmmmm 000 ggg nnnnn 0 oooo", prefetch_vector<Zm_sxtw>),
    row<U32.at(0), U64.at(1)>("Prefetch2XSV", "1z00010 00 11 mmmmm 001 ggg nnnnn 0 oooo",
                              prefetch_vector<Zm_sxtw.times(2)>),
    row<U32.at(0), U64.at(1)>("Prefetch4XSV", "1z00010 00 11 mmmmm 010 ggg nnnnn 0 oooo",
                              prefetch_vector<Zm_sxtw.times(4)>),
    row<U32.at(0), U64.at(1)>("Prefetch8XSV", "1z00010 00 11 mmmmm 011 ggg nnnnn 0 oooo",
                              prefetch_vector<Zm_sxtw.times(8)>),
    row<U8>("Prefetch1SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", prefetch_imm),
    row<U16>("Prefetch2SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", prefetch_imm),
    row<U32>("Prefetch4SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", prefetch_imm),
    row<U64>("Prefetch8SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", prefetch_imm));

}  // namespace quern::rows
