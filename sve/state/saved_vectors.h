// What a signal handler of the application must not change for the code that it interrupts: the scalable registers. The
// kernel of a processor with SVE keeps them in the signal frame; here they are kept when a handler first needs them.
#pragma once

#include <cstddef>

#include "sve/state/cpu_state.h"

namespace quern {

// The registers that live in cpu_state alone.
struct saved_vectors {
  unsigned char z[sizeof cpu_state::z];
  unsigned char p[sizeof cpu_state::p];
  unsigned char ffr[sizeof cpu_state::ffr];
};

// Takes a copy of the scalable registers into a free place of the process's store, which holds saved_vectors_capacity
// of them; null when all are in use. Needs neither heap nor lock, so it may be called in a signal handler.
saved_vectors* save_vectors(const cpu_state& state);

// Brings a copy back. The copy stays.
void restore_vectors(const saved_vectors& saved, cpu_state& state);

// Gives the place of a copy free. Null is allowed.
void release_vectors(saved_vectors* saved);

inline constexpr std::size_t saved_vectors_capacity = 1024;

}  // namespace quern
