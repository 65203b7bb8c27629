// What the application is told of its processor when it asks: that it has SVE, of this one vector length, and nothing
// that quern does not emulate.
#pragma once

namespace quern {

// Changes the auxiliary vector, which stands behind `environment`, so that it tells of SVE, unless the user does not
// want that, or the processor has SVE itself; and of the stack that a signal handler needs.
void show_processor(char** environment);

// In the environment, this takes PR_SVE_VL_INHERIT to a new program.
inline constexpr const char* inherit_variable = "QUERN_INHERITS_LENGTH";

// Whether the calling thread has set PR_SVE_VL_INHERIT, which the threads that it starts take over.
bool inherits_vector_length();
void set_inherits_vector_length(bool inherits);

}  // namespace quern
