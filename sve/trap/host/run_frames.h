// Signals that find a thread in generated code. The application is to see itself between two of its instructions.
#pragma once

#include <ucontext.h>

#include <csignal>

namespace quern {

// Whether the frame's thread is within a run. If it is in generated code, but between two words of the application's,
// the frame is made that of the application there, and the answer is false.
bool is_within_run(ucontext_t& frame);

// The word that is carried out where a fault within a run finds the thread.
unsigned char* word_within_run(const ucontext_t& frame);

// Lets the run that has the frame's thread end after its present word, as a signal waits here.
void end_run_early(ucontext_t& frame);

// The same for a signal that is to arrive then: sends it again, and blocks all but the trap signals until then.
void postpone_to_early_end(int signal, const siginfo_t& info, ucontext_t& frame);

// Makes the frame of a run's early end that of the application behind the word that was done; false if it isn't one.
bool take_early_end(ucontext_t& frame);

// Makes the frame of a fault within a run that of the application at the word that has to run again.
void abandon_run(ucontext_t& frame);

}  // namespace quern
