// The environment that a new program is given: it has to bring this host along, whatever the application puts into it.
#pragma once

#include <cstddef>

namespace quern {

// Notes which variables brought the host here, at the start.
void note_own_variables(char** environment);

// The bytes that environment_with_host(environment) may need.
std::size_t room_for_environment(char* const* environment);

// The environment with this host among the libraries to preload, and with the variables that were set for it, unless it
// has the library already, or LD_PRELOAD with nothing in it, by which a user says that there is to be none. Also says
// that the calling thread's vector length is inherited. Made in `room`, if there is anything to add. Null is an empty
// one. Calls nothing that a child of vfork might not.
char* const* environment_with_host(char* const* environment, void* room);

}  // namespace quern
