// The block event: where a block's emulated instructions become call-outs.
#include "sve/client/block_rewriting.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "sve/client/client_assert.h"
#include "sve/client/emulated_place.h"
#include "sve/client/insertion.h"
#include "sve/client/saved_registers.h"
#include "sve/client/shared_code.h"
#include "sve/client/thread_state.h"
#include "sve/decoder/sve_utils.h"

namespace quern {

void insert_read_state(const insertion_point& at, reg_id_t into) {
  client_assert(drmgr_insert_read_tls_field(at.drcontext, tls_idx, at.list, at.where, into), "false");
}

namespace {

unsigned int word_at(const unsigned char* bytes) {
  unsigned int word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Tells the framework's other tools which instruction the code that follows stands for. The record's instruction
// belongs to the framework afterwards.
void insert_emulation_start(const insertion_point& at) {
  instr_t* const replaced = instr_create(at.drcontext);
  instr_set_raw_bits(replaced, at.pc, sizeof(unsigned int));
  instr_set_raw_bits_valid(replaced, true);
  emulated_instr_t record{};  // later frameworks have more fields, for which 0 is the plain case
  record.size = sizeof record;
  record.pc = at.pc;
  record.instr = replaced;
  drmgr_insert_emulation_start(at.drcontext, at.list, at.where, &record);
}

// A call of the shared code, for which X30 borrows the slot of X28. The load, which can't fault, is of the
// application's level, since the framework goes on behind the last such instruction of a block that was cut.
void insert_bracket(const insertion_point& at, const emulated_place* place) {
  const opnd_t scratch = opnd_create_reg(scratch_register), target = opnd_create_reg(state_register);
  dr_save_reg(at.drcontext, at.list, at.where, scratch_register, slot_x26);
  dr_save_reg(at.drcontext, at.list, at.where, state_register, slot_x27);
  dr_save_reg(at.drcontext, at.list, at.where, link_register, slot_x28);
  instrlist_insert_mov_immed_ptrsz(at.drcontext, reinterpret_cast<ptr_int_t>(place), scratch, at.list, at.where,
                                   nullptr, nullptr);
  static_assert(offsetof(emulated_place, shared_code) == 0);
  insert(at, instr_create_1dst_1src(at.drcontext, OP_ldr, target, state_field(scratch_register, 0, OPSZ_8)));
  insert_meta(at, instr_create_1dst_1src(at.drcontext, OP_blr, opnd_create_reg(link_register), target));
  dr_restore_reg(at.drcontext, at.list, at.where, state_register, slot_x27);
}

void replace_by_bracket(void* drcontext, instrlist_t* bb, instr_t* instr, sve_handler handler) {
  const insertion_point at{drcontext, bb, instr, instr_get_app_pc(instr)};
  client_assert(dr_get_stolen_reg() == stolen_register, "dr_get_stolen_reg() == DR_REG_X28");
  insert_emulation_start(at);
  insert_bracket(at, record_of({shared_code, word_at(at.pc), at.pc, handler, nullptr}));
  drmgr_insert_emulation_end(drcontext, bb, instr);
  instrlist_remove(bb, instr);
  instr_destroy(drcontext, instr);
}

bool writes_fpcr(instr_t* instr) {
  if (instr_get_opcode(instr) != OP_msr || instr_num_dsts(instr) != 1) return false;
  const opnd_t destination = instr_get_dst(instr, 0);
  return opnd_is_reg(destination) && opnd_get_reg(destination) == DR_REG_FPCR;
}

// The instruction itself stays, so that the host's FPCR follows the application's.
void insert_fpcr_copy(void* drcontext, instrlist_t* bb, instr_t* instr) {
  const insertion_point at{drcontext, bb, instr, instr_get_app_pc(instr)};
  const reg_id_t source = opnd_get_reg(instr_get_src(instr, 0));
  const reg_id_t scratch = source == DR_REG_X21 ? DR_REG_X22 : DR_REG_X21;
  // The W registers are numbered as the X registers are, WZR included.
  const auto low_half = static_cast<reg_id_t>(source - DR_REG_X0 + DR_REG_W0);
  dr_save_reg(drcontext, bb, instr, scratch, SPILL_SLOT_3);
  insert_read_state(at, scratch);
  insert(at, instr_create_1dst_1src(drcontext, OP_str, state_field(scratch, offsetof(cpu_state, fpcr), OPSZ_4),
                                    opnd_create_reg(low_half)));
  dr_restore_reg(drcontext, bb, instr, scratch, SPILL_SLOT_3);
}

// Takes the instruction and all that follow it out of the block.
void cut_from(void* drcontext, instrlist_t* bb, instr_t* instr) {
  while (instr != nullptr) {
    instr_t* const next = instr_get_next(instr);
    instrlist_remove(bb, instr);
    instr_destroy(drcontext, instr);
    instr = next;
  }
}

}  // namespace

dr_emit_flags_t event_instruction_change(void* drcontext, void*, instrlist_t* bb, bool, bool) {
  int replacements = 0;
  instr_t* next = nullptr;
  for (instr_t* instr = instrlist_first_app(bb); instr != nullptr; instr = next) {
    if (replacements == max_replacements) {
      cut_from(drcontext, bb, instr);
      break;
    }
    next = instr_get_next_app(instr);  // first, since the replacement destroys the instruction
    if (const sve_handler handler = get_sve_handler(word_at(instr_get_raw_bits(instr)))) {
      replace_by_bracket(drcontext, bb, instr, handler);
      ++replacements;
    } else if (writes_fpcr(instr)) {
      insert_fpcr_copy(drcontext, bb, instr);
    }
  }
  return DR_EMIT_DEFAULT;
}

}  // namespace quern
