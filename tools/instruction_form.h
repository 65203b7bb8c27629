// What `quern decode` and `quern list` tell of an instruction form: its parts as text.
#pragma once

#include <string>

#include "sve/decoder/decode_map.h"

namespace quern {

// "direct", "library" or "none"; that a direct form moves FPSR is told apart, by moves_fpsr().
std::string_view route_name(const decode_row& row);
bool moves_fpsr(const decode_row& row);

// The routine that carries it out: a direct handler, or the vector library's function; empty if it does nothing.
std::string_view handler_name(const decode_row& row);

// "00000100001 mmmmm 000000 nnnnn ddddd", bit 31 first: fixed bits, operands by their letters, '-' for ignored bits.
std::string pattern_of(const decode_map& map, const decode_row& row);

// The operands in the order that the routine takes them: "Zdn.s", "Pg/m", "Xn|SP", "imm4".
std::string operand_form(const operand& op, const decode_row& row);
std::string operand_forms(const decode_row& row);

}  // namespace quern
