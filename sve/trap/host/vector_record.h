// The scalable registers in the context that a signal handler is given, where the kernel of a processor with SVE has
// them: a handler leaves those of the code that it interrupted alone, can read them, and can change them.
#pragma once

#include <asm/sigcontext.h>
#include <ucontext.h>

#include "sve/state/vector_length.h"

namespace quern {

inline constexpr int quadwords = VL_BITS / 128;

// The kernel's record, and the end of the list that it stands in.
struct alignas(16) vector_record {
  unsigned char bytes[SVE_SIG_CONTEXT_SIZE(quadwords)];
  unsigned char end[16];
};

// What a signal handler of the application takes of its stack beyond what the kernel takes: the record, the functions
// that call the handler, and the frame of an emulated instruction in it.
inline constexpr int handler_stack_bytes = sizeof(vector_record) + 8192;

// Puts the thread's registers, with the frame's V registers as the low ends of Z, in `record`, and `record` in the
// frame's list of records.
void show_vectors(ucontext_t& frame, vector_record& record);

// Takes the record out of the frame again, as the kernel would not know it, and makes its registers the thread's. The
// low ends of Z are the frame's V registers still, as with the kernel.
void take_vectors(ucontext_t& frame, const vector_record& record);

}  // namespace quern
