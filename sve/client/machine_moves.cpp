// The moves of the processor's registers into a cpu_state and back.
#include "sve/client/machine_moves.h"

#include <cstddef>

#include "sve/client/saved_registers.h"
#include "sve/state/cpu_state.h"

namespace quern {
namespace {

// One way through the registers; the two ways differ in the instruction, the order is the caller's.
struct machine_moves {
  const insertion_point& at;
  bool to_state;

  // One register: X for OPSZ_8, W for OPSZ_4, Q for OPSZ_16.
  void one(reg_id_t reg, std::size_t offset, opnd_size_t size) const {
    const opnd_t value = opnd_create_reg(reg), field = state_field(state_register, offset, size);
    insert_meta(at, to_state ? instr_create_1dst_1src(at.drcontext, OP_str, field, value)
                             : instr_create_1dst_1src(at.drcontext, OP_ldr, value, field));
  }

  // Register n and the one after it.
  void pair(unsigned n) const {
    const opnd_t first = opnd_create_reg(static_cast<reg_id_t>(DR_REG_X0 + n));
    const opnd_t second = opnd_create_reg(static_cast<reg_id_t>(DR_REG_X0 + n + 1));
    const opnd_t fields = state_field(state_register, offsetof(cpu_state, x) + 8 * n, OPSZ_16);
    insert_meta(at, to_state ? instr_create_1dst_2src(at.drcontext, OP_stp, fields, first, second)
                             : instr_create_2dst_1src(at.drcontext, OP_ldp, first, second, fields));
  }

  void general_registers() const {
    for (unsigned n = 0; n <= 24; n += 2) pair(n);
    pair(29);
  }

  void vector_registers() const {
    for (unsigned n = 0; n < 32; ++n)
      one(static_cast<reg_id_t>(DR_REG_Q0 + n), offsetof(cpu_state, z) + n * VL_BYTES, OPSZ_16);
  }

  // A system register, by way of the scratch register, of which `part` goes to or comes from the field.
  void system_register(reg_id_t system, reg_id_t part, std::size_t offset, opnd_size_t size) const {
    const opnd_t there = opnd_create_reg(system), scratch = opnd_create_reg(scratch_register);
    if (to_state) insert_meta(at, instr_create_1dst_1src(at.drcontext, OP_mrs, scratch, there));
    one(part, offset, size);
    if (!to_state) insert_meta(at, instr_create_1dst_1src(at.drcontext, OP_msr, there, scratch));
  }

  void flags() const { system_register(DR_REG_NZCV, scratch_register, offsetof(cpu_state, nzcv), OPSZ_8); }
  void fp_status() const { system_register(DR_REG_FPSR, DR_REG_W26, offsetof(cpu_state, fpsr), OPSZ_4); }

  void stack_pointer() const {
    if (to_state) copy(scratch_register, DR_REG_XSP);
    one(scratch_register, offsetof(cpu_state, sp), OPSZ_8);
    if (!to_state) copy(DR_REG_XSP, scratch_register);
  }

  // An addition of 0, since register 31 of the logical instructions is zero, not SP.
  void copy(reg_id_t to, reg_id_t from) const {
    const opnd_t zero = opnd_create_immed_int(0, OPSZ_PTR);
    const opnd_t shift = opnd_add_flags(opnd_create_immed_int(DR_SHIFT_LSL, OPSZ_PTR), DR_OPND_IS_SHIFT);
    insert_meta(at, instr_create_1dst_4src(at.drcontext, OP_add, opnd_create_reg(to), opnd_create_reg(from), zero,
                                           shift, zero));
  }
};

}  // namespace

void insert_moves_to_state(const insertion_point& at) {
  const machine_moves moves{at, true};
  moves.stack_pointer();
  moves.general_registers();
  moves.vector_registers();
  moves.flags();
  moves.fp_status();
}

// The status and flags first, while X26 is free, and the stack pointer last.
void insert_moves_from_state(const insertion_point& at) {
  const machine_moves moves{at, false};
  moves.fp_status();
  moves.flags();
  moves.vector_registers();
  moves.general_registers();
  moves.stack_pointer();
}

}  // namespace quern
