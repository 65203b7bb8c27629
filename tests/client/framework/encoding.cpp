// The encodings of what the client may build: loads and stores with a scaled offset, additions of an immediate, moves
// of system registers. Anything else is a violation.
#include "framework_double.h"

namespace quern {
namespace {

[[noreturn]] void refuse(const instr_t& instr) { throw contract_violation("no encoding for: " + text(instr)); }

struct register_field {
  std::uint32_t number;
  opnd_size_t size;
  bool vector;
};

// A register as the field of a load, a store or a system move: 31 is the zero register there.
register_field data_register(const instr_t& instr, const opnd_t& operand) {
  const reg_id_t reg = operand.base;
  if (operand.kind != opnd_t::reg) refuse(instr);
  if (reg == DR_REG_XZR) return {31, OPSZ_8, false};
  if (reg == DR_REG_WZR) return {31, OPSZ_4, false};
  if (reg >= DR_REG_X0 && reg <= DR_REG_X30) return {static_cast<std::uint32_t>(reg - DR_REG_X0), OPSZ_8, false};
  if (reg >= DR_REG_W0 && reg < DR_REG_WSP) return {static_cast<std::uint32_t>(reg - DR_REG_W0), OPSZ_4, false};
  if (reg >= DR_REG_Q0 && reg <= DR_REG_Q31) return {static_cast<std::uint32_t>(reg - DR_REG_Q0), OPSZ_16, true};
  refuse(instr);
}

// A register as a base or as an operand of an addition: 31 is SP there.
std::uint32_t address_register(const instr_t& instr, reg_id_t reg) {
  if (reg == DR_REG_XSP) return 31;
  if (reg < DR_REG_X0 || reg > DR_REG_X30) refuse(instr);
  return static_cast<std::uint32_t>(reg - DR_REG_X0);
}

std::uint32_t scaled(const instr_t& instr, std::int64_t offset, int bytes, std::int64_t low, std::int64_t high) {
  if (offset % bytes != 0 || offset / bytes < low || offset / bytes > high) refuse(instr);
  return static_cast<std::uint32_t>(offset / bytes);
}

std::uint32_t one_register(const instr_t& instr, const opnd_t& data, const opnd_t& memory, bool load) {
  const register_field field = data_register(instr, data);
  if (memory.kind != opnd_t::memory || memory.size != field.size) refuse(instr);
  const int bytes = field.size == OPSZ_4 ? 4 : field.size == OPSZ_8 ? 8 : 16;
  const std::uint32_t kind = field.size == OPSZ_4 ? 0xB9000000 : field.size == OPSZ_8 ? 0xF9000000 : 0x3D800000;
  return kind | (load ? 1u << 22 : 0) | scaled(instr, memory.value, bytes, 0, 4095) << 10 |
         address_register(instr, memory.base) << 5 | field.number;
}

std::uint32_t two_registers(const instr_t& instr, const opnd_t& first, const opnd_t& second, const opnd_t& memory,
                            bool load) {
  const register_field a = data_register(instr, first), b = data_register(instr, second);
  if (a.size != OPSZ_8 || b.size != OPSZ_8 || memory.kind != opnd_t::memory || memory.size != OPSZ_16) refuse(instr);
  if (load && a.number == b.number) refuse(instr);
  return 0xA9000000 | (load ? 1u << 22 : 0) | (scaled(instr, memory.value, 8, -64, 63) & 0x7F) << 15 | b.number << 10 |
         address_register(instr, memory.base) << 5 | a.number;
}

std::uint32_t system_register(const instr_t& instr, const opnd_t& operand) {
  if (operand.kind != opnd_t::reg) refuse(instr);
  switch (operand.base) {
    case DR_REG_NZCV: return 0x1B4200;
    case DR_REG_FPCR: return 0x1B4400;
    case DR_REG_FPSR: return 0x1B4420;
    default: refuse(instr);
  }
}

std::uint32_t addition(const instr_t& instr) {
  const opnd_t &amount = instr.srcs[1], &shift = instr.srcs[2], &shift_amount = instr.srcs[3];
  for (const opnd_t* operand : {&amount, &shift, &shift_amount})
    if (operand->kind != opnd_t::immediate) refuse(instr);
  if (amount.value < 0 || amount.value > 4095 || shift_amount.value != 0) refuse(instr);
  if (shift.value != DR_SHIFT_LSL || (shift.flags & DR_OPND_IS_SHIFT) == 0) refuse(instr);
  return 0x91000000 | static_cast<std::uint32_t>(amount.value) << 10 |
         address_register(instr, opnd_get_reg(instr.srcs[0])) << 5 | address_register(instr, instr.dsts[0].base);
}

}  // namespace

std::uint32_t encoding(const instr_t& instr) {
  const auto shaped = [&](std::size_t dsts, std::size_t srcs) {
    if (instr.dsts.size() != dsts || instr.srcs.size() != srcs) refuse(instr);
  };
  switch (instr.opcode) {
    case OP_str: shaped(1, 1); return one_register(instr, instr.srcs[0], instr.dsts[0], false);
    case OP_ldr: shaped(1, 1); return one_register(instr, instr.dsts[0], instr.srcs[0], true);
    case OP_stp: shaped(1, 2); return two_registers(instr, instr.srcs[0], instr.srcs[1], instr.dsts[0], false);
    case OP_ldp: shaped(2, 1); return two_registers(instr, instr.dsts[0], instr.dsts[1], instr.srcs[0], true);
    case OP_mrs:
      shaped(1, 1);
      return 0xD5200000 | system_register(instr, instr.srcs[0]) | data_register(instr, instr.dsts[0]).number;
    case OP_msr:
      shaped(1, 1);
      return 0xD5000000 | system_register(instr, instr.dsts[0]) | data_register(instr, instr.srcs[0]).number;
    case OP_add: shaped(1, 4); return addition(instr);
    case OP_br: shaped(0, 1); return 0xD61F0000 | data_register(instr, instr.srcs[0]).number << 5;
    case OP_blr:
      shaped(1, 1);
      if (instr.dsts[0].base != DR_REG_X30) refuse(instr);
      return 0xD63F0000 | data_register(instr, instr.srcs[0]).number << 5;
    default: refuse(instr);
  }
}

}  // namespace quern
