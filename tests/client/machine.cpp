// The model of the processor, and what both processors share.
#include "machine.h"

#include <cstring>

namespace quern {
namespace {

unsigned char* address(const machine& m, const opnd_t& memory) {
  return reinterpret_cast<unsigned char*>(m.x.at(memory.base - DR_REG_X0) + static_cast<std::uint64_t>(memory.value));
}

std::uint64_t& system_register(machine& m, const opnd_t& operand) {
  return operand.base == DR_REG_NZCV ? m.nzcv : operand.base == DR_REG_FPSR ? m.fpsr : m.fpcr;
}

std::uint64_t& sp_or_general(machine& m, const opnd_t& operand) {
  return operand.base == DR_REG_XSP ? m.sp : m.x.at(operand.base - DR_REG_X0);
}

void store(machine& m, const opnd_t& reg, unsigned char* to) {
  if (reg.base == DR_REG_WZR)
    std::memset(to, 0, 4);
  else if (reg.base >= DR_REG_Q0)
    std::memcpy(to, m.q.at(reg.base - DR_REG_Q0).data(), 16);
  else if (reg.base >= DR_REG_W0)
    std::memcpy(to, &m.x.at(reg.base - DR_REG_W0), 4);
  else
    std::memcpy(to, &m.x.at(reg.base - DR_REG_X0), 8);
}

void load(machine& m, const opnd_t& reg, const unsigned char* from) {
  if (reg.base >= DR_REG_Q0) {
    std::memcpy(m.q.at(reg.base - DR_REG_Q0).data(), from, 16);
  } else if (reg.base >= DR_REG_W0) {
    m.x.at(reg.base - DR_REG_W0) = 0;
    std::memcpy(&m.x.at(reg.base - DR_REG_W0), from, 4);
  } else {
    std::memcpy(&m.x.at(reg.base - DR_REG_X0), from, 8);
  }
}

void call_out(machine& m, const instr_t& call) {
  call_callee(call, m.x.at(call.srcs.at(0).base - DR_REG_X0));
  const std::uint64_t x28 = m.x[28], sp = m.sp, fpcr = m.fpcr, application_x28 = m.stolen_x28;
  std::memset(static_cast<void*>(&m), 0xEE, sizeof m);
  m.x[28] = x28;
  m.sp = sp;
  m.fpcr = fpcr;
  m.stolen_x28 = application_x28;
}

void run_framework_code(machine& m, const instr_t& instr) {
  const auto reg = [&]() -> std::uint64_t& { return m.x.at(instr.dsts.at(0).base - DR_REG_X0); };
  switch (instr.kind) {
    case instr_t::save_reg: framework().slots[instr.slot] = reg(); break;
    case instr_t::restore_reg: reg() = framework().slots[instr.slot]; break;
    case instr_t::get_stolen: reg() = m.stolen_x28; break;
    case instr_t::set_stolen: m.stolen_x28 = reg(); break;
    case instr_t::read_tls: reg() = reinterpret_cast<std::uint64_t>(framework().tls_field); break;
    case instr_t::clean_call: call_out(m, instr); break;
    case instr_t::emulation_start:
    case instr_t::emulation_end:
    case instr_t::not_meta:
    case instr_t::own_code: break;
  }
}

void run_move(machine& m, const instr_t& instr) {
  const std::vector<opnd_t>&to = instr.dsts, &from = instr.srcs;
  switch (instr.opcode) {
    case OP_str: store(m, from[0], address(m, to[0])); break;
    case OP_ldr: load(m, to[0], address(m, from[0])); break;
    case OP_stp:
      store(m, from[0], address(m, to[0]));
      store(m, from[1], address(m, to[0]) + 8);
      break;
    case OP_ldp: {
      const unsigned char* const pair = address(m, from[0]);
      load(m, to[0], pair);
      load(m, to[1], pair + 8);
      break;
    }
    case OP_mrs: sp_or_general(m, to[0]) = system_register(m, from[0]); break;
    case OP_msr: system_register(m, to[0]) = from[0].base == DR_REG_XZR ? 0 : sp_or_general(m, from[0]); break;
    case OP_mov_immediate: sp_or_general(m, to[0]) = static_cast<std::uint64_t>(from[0].value); break;
    case OP_add: sp_or_general(m, to[0]) = sp_or_general(m, from[0]) + static_cast<std::uint64_t>(from[1].value); break;
    default: break;
  }
}

constexpr std::uint64_t return_address = 0xCAC4E000;

void expect_equal(std::uint64_t value, std::uint64_t expected, const char* otherwise) {
  if (value != expected) throw contract_violation(otherwise);
}

void run_shared_code(machine& m, std::uint64_t target) {
  expect_equal(target, reinterpret_cast<std::uint64_t>(framework().code_memory),
               "a call of what is not the shared code");
  m.x[30] = return_address;
  run_on_model(m, framework().shared_code, {});
}

}  // namespace

void call_callee(const instr_t& call, std::uint64_t argument) {
  reinterpret_cast<void (*)(std::uint64_t)>(call.callee)(argument);
}

void run_on_model(machine& m, const instrlist_t& block, const native_effect& native) {
  for (const instr_t* instr = block.first; instr != nullptr; instr = instr->next) {
    if (instr->kind > instr_t::own_code)
      run_framework_code(m, *instr);
    else if (instr->opcode == OP_xx)
      native(m);
    else if (instr->opcode == OP_blr)
      run_shared_code(m, m.x.at(instr->srcs.at(0).base - DR_REG_X0));
    else if (instr->opcode == OP_br)
      expect_equal(m.x.at(instr->srcs.at(0).base - DR_REG_X0), return_address, "the shared code returns elsewhere");
    else
      run_move(m, *instr);
  }
}

machine numbered_machine() {
  machine m{};
  for (std::size_t n = 0; n < 31; ++n) m.x[n] = 0x1111000011110000 + n;
  m.stolen_x28 = 0x2828282828282828;
  m.sp = 0x7FFFFFF000;
  m.nzcv = 0x60000000;  // and not what an uninitialised register file has
  m.fpsr = 0x0800001F;
  m.fpcr = 0x00400000;
  for (std::size_t n = 0; n < 32; ++n)
    for (std::size_t i = 0; i < 16; ++i) m.q[n][i] = static_cast<unsigned char>(n * 7 + i);
  return m;
}

}  // namespace quern
