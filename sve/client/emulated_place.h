// What a place in the application's code gives to the code that all places share.
#pragma once

#include "sve/client/framework.h"
#include "sve/state/cpu_state.h"

namespace quern {

// A rewritten instruction.
struct emulated_place {
  app_pc shared_code;  // the first field, as rewritten code goes there by way of it
  unsigned int word;
  unsigned char* pc;
  sve_handler handler;
  const emulated_place* next;  // for the table's own use

  bool is_same(const emulated_place& other) const {
    return word == other.word && pc == other.pc && handler == other.handler;
  }
};

// The one record that has these values, at the same address whenever it is asked for. Any thread may ask, at any time;
// no lock is taken.
const emulated_place* record_of(const emulated_place& wanted);

// Frees all records, at the end of the process.
void free_places();

}  // namespace quern
