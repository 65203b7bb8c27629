// The decoder's one question.
#pragma once

#include "sve/state/cpu_state.h"

// The routine that carries out an instruction word, or null when the word is not an emulated instruction. Safe on any
// number of threads at once; no side effects.
sve_handler get_sve_handler(unsigned int word);
