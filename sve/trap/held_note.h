// A note in a saved mask of the C library's length, behind what the kernel fills, where the C library stores
// nothing: whether SIGILL was held, as the kernel knows nothing of that.
#pragma once

#include "sve/trap/signal_set.h"

namespace quern {

// Notes `held`, which is what held_signals() answers.
void note_held(sigset_t& mask, signal_set held);

// What was noted in this mask, or in the one that it is a copy of; nothing if it was filled behind our back.
signal_set noted_held(const sigset_t& mask);

}  // namespace quern
