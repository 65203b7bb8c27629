// Building instructions into a block, and into code outside the cache.
#pragma once

#include "sve/client/framework.h"

namespace quern {

// Where instructions are inserted, and the address of the application's instruction that they stand for, if any.
struct insertion_point {
  void* drcontext;
  instrlist_t* list;
  instr_t* where;
  app_pc pc;
};

// Inserts as the application's own, not as a meta instruction, so that the framework takes care of the stolen register
// and translates a fault's address to that of the replaced instruction.
inline void insert(const insertion_point& at, instr_t* built) {
  instr_set_translation(built, at.pc);
  instrlist_preinsert(at.list, at.where, built);
}

// Inserts as code of the framework's level, which it leaves as it is.
inline void insert_meta(const insertion_point& at, instr_t* built) {
  instrlist_meta_preinsert(at.list, at.where, built);
}

// Inserts code that reads the address of the thread's cpu_state into a register.
void insert_read_state(const insertion_point& at, reg_id_t into);

// A field of the cpu_state whose address is in `base`.
inline opnd_t state_field(reg_id_t base, std::size_t offset, opnd_size_t size) {
  return opnd_create_base_disp(base, DR_REG_NULL, 0, static_cast<int>(offset), size);
}

}  // namespace quern
