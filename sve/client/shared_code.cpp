// The code that all rewritten places share. It stands outside the code cache: the framework has far less to do for a
// place whose code is a call than for one with a hundred moves of its own.
#include "sve/client/shared_code.h"

#include <cstddef>

#include "sve/client/call_out.h"
#include "sve/client/client_assert.h"
#include "sve/client/emulate_instruction.h"
#include "sve/client/emulated_place.h"
#include "sve/client/insertion.h"
#include "sve/client/machine_moves.h"
#include "sve/client/saved_registers.h"
#include "sve/client/thread_state.h"

app_pc quern::shared_code;

namespace quern {
namespace {

void emulate_place(const emulated_place* place) { emulate_instruction(place->word, place->pc, place->handler); }

void insert_load(const insertion_point& at, reg_id_t into, std::size_t offset) {
  insert_meta(at, instr_create_1dst_1src(at.drcontext, OP_ldr, opnd_create_reg(into),
                                         state_field(state_register, offset, OPSZ_8)));
}

void insert_store(const insertion_point& at, reg_id_t from, std::size_t offset) {
  insert_meta(at, instr_create_1dst_1src(at.drcontext, OP_str, state_field(state_register, offset, OPSZ_8),
                                         opnd_create_reg(from)));
}

// The application's X30 makes room for X28 in the slot.
void insert_way_in(const insertion_point& at) {
  insert_read_state(at, state_register);
  insert_store(at, scratch_register, offsetof(thread_block, place));
  insert_store(at, link_register, offsetof(thread_block, return_address));
  dr_restore_reg(at.drcontext, at.list, at.where, link_register, slot_x28);
  dr_insert_get_stolen_reg_value(at.drcontext, at.list, at.where, scratch_register);
  dr_save_reg(at.drcontext, at.list, at.where, scratch_register, slot_x28);
  insert_moves_to_state(at);
}

void insert_call(const insertion_point& at) {
  insert_load(at, DR_REG_X0, offsetof(thread_block, place));
  dr_insert_call_zivra(at.drcontext, at.list, at.where, at.pc, reinterpret_cast<void*>(emulate_place), 1,
                       opnd_create_reg(DR_REG_X0));
}

// The slots last, since the handler may have changed their registers too.
void insert_way_out(const insertion_point& at) {
  insert_read_state(at, state_register);
  insert_moves_from_state(at);
  dr_restore_reg(at.drcontext, at.list, at.where, scratch_register, slot_x28);
  dr_insert_set_stolen_reg_value(at.drcontext, at.list, at.where, scratch_register);
  dr_restore_reg(at.drcontext, at.list, at.where, scratch_register, slot_x26);
  insert_load(at, state_register, offsetof(thread_block, return_address));
}

}  // namespace

void make_shared_code(void* drcontext) {
  instrlist_t* const list = instrlist_create(drcontext);
  instr_t* const jump_back = instr_create_0dst_1src(drcontext, OP_br, opnd_create_reg(state_register));
  insert_meta({drcontext, list, nullptr, nullptr}, jump_back);
  const insertion_point at{drcontext, list, jump_back, nullptr};
  insert_way_in(at);
  insert_call(at);
  insert_way_out(at);

  const std::size_t room = dr_page_size();
  shared_code = static_cast<app_pc>(dr_nonheap_alloc(room, DR_MEMPROT_READ | DR_MEMPROT_WRITE | DR_MEMPROT_EXEC));
  client_assert(shared_code != nullptr, "shared_code != nullptr");
  const app_pc end = instrlist_encode(drcontext, list, shared_code, false);
  client_assert(end != nullptr && end <= shared_code + room, "end <= shared_code + room");
  __builtin___clear_cache(reinterpret_cast<char*>(shared_code), reinterpret_cast<char*>(end));
  instrlist_clear_and_destroy(drcontext, list);
}

void free_shared_code() { dr_nonheap_free(shared_code, dr_page_size()); }

}  // namespace quern
