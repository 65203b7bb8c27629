// The text of the double's instructions, in assembler's notation where there is one.
#include <map>

#include "framework_double.h"

namespace quern {
namespace {

std::string numbered(char prefix, std::int64_t number) {
  std::string name{prefix};
  return name += std::to_string(number);
}

std::string register_name(reg_id_t reg) {
  static const std::map<reg_id_t, std::string> special{
      {DR_REG_XSP, "sp"},    {DR_REG_XZR, "xzr"},   {DR_REG_WSP, "wsp"},   {DR_REG_WZR, "wzr"},
      {DR_REG_NZCV, "nzcv"}, {DR_REG_FPCR, "fpcr"}, {DR_REG_FPSR, "fpsr"},
  };
  if (const auto found = special.find(reg); found != special.end()) return found->second;
  if (reg >= DR_REG_Q0) return numbered('q', reg - DR_REG_Q0);
  if (reg >= DR_REG_W0) return numbered('w', reg - DR_REG_W0);
  return numbered('x', reg - DR_REG_X0);
}

std::string joined(const std::vector<opnd_t>& operands) {
  std::string all;
  for (const opnd_t& operand : operands) all += (all.empty() ? "" : ", ") + text(operand);
  return all;
}

std::string meta_text(const instr_t& instr) {
  const std::string slot = ", slot " + std::to_string(instr.slot + 1);
  switch (instr.kind) {
    case instr_t::save_reg: return "save " + joined(instr.dsts) + slot;
    case instr_t::restore_reg: return "restore " + joined(instr.dsts) + slot;
    case instr_t::get_stolen: return "get_stolen " + joined(instr.dsts);
    case instr_t::set_stolen: return "set_stolen " + joined(instr.dsts);
    case instr_t::read_tls: return "read_tls " + joined(instr.dsts);
    case instr_t::clean_call: return "call";
    case instr_t::emulation_start: return "emulation_start";
    case instr_t::emulation_end: return "emulation_end";
    case instr_t::not_meta:
    case instr_t::own_code: break;
  }
  return "?";
}

}  // namespace

std::string text(const opnd_t& operand) {
  switch (operand.kind) {
    case opnd_t::reg: return register_name(operand.base);
    case opnd_t::immediate: return (operand.flags & DR_OPND_IS_SHIFT) != 0 ? "lsl" : numbered('#', operand.value);
    case opnd_t::memory:
      return std::string{"["}.append(register_name(operand.base)).append(", ") + numbered('#', operand.value) + "]";
    case opnd_t::none: break;
  }
  return "?";
}

std::string text(const instr_t& instr) {
  if (instr.kind > instr_t::own_code) return meta_text(instr);
  const std::string dsts = joined(instr.dsts), srcs = joined(instr.srcs);
  switch (instr.opcode) {
    case OP_add: return "add " + dsts + ", " + srcs;
    case OP_blr: return "blr " + srcs;
    case OP_br: return "br " + srcs;
    case OP_mov_immediate: return "mov " + dsts + ", immediate";
    case OP_ldp: return "ldp " + dsts + ", " + srcs;
    case OP_ldr: return "ldr " + dsts + ", " + srcs;
    case OP_mrs: return "mrs " + dsts + ", " + srcs;
    case OP_msr: return "msr " + dsts + ", " + srcs;
    case OP_stp: return "stp " + srcs + ", " + dsts;
    case OP_str: return "str " + srcs + ", " + dsts;
    default: return "native";
  }
}

std::vector<std::string> text(const instrlist_t& list) {
  std::vector<std::string> lines;
  for (const instr_t* instr = list.first; instr != nullptr; instr = instr->next) lines.push_back(text(*instr));
  return lines;
}

}  // namespace quern
