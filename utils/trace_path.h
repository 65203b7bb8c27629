// Where a process's trace goes: QUERN_TRACE or the default, and the names that are tried one after the other so that no
// file is overwritten.
#pragma once

#include <sys/types.h>

#include <climits>

#include "utils/fixed_text.h"

namespace quern {

using path_text = fixed_text<PATH_MAX - 1>;

struct trace_path {
  path_text pattern;            // absolute, unless the current folder could not be told
  std::size_t folder_size = 0;  // of the current folder in front of it, in which %p stands for itself
  bool has_process = false;     // whether %p is in it
};

// QUERN_TRACE's value, or null when the default holds.
const char* chosen_trace_path();

// Takes the pattern from chosen_trace_path's answer and the current folder. False with errno set
// when the result is too long or the current folder can't be told; the pattern is then left relative.
bool choose_trace_path(trace_path& path, const char* value);

// The name to try after `attempt` others were taken: the pattern itself, then with the process number where it lacks
// that, then with .1, .2 and so on. A forked child never takes a pattern without %p as it is: that is its parent's.
void trace_name(path_text& name, const trace_path& path, pid_t process, bool forked, unsigned attempt);

}  // namespace quern
