// Where `quern run --trace` has a program write its trace: room is made for it before, and it is looked at afterwards.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace quern {

class trace_target {
 public:
  // Makes QUERN_TRACE of --trace where that is given: absolute, since the program may run elsewhere, and known to be
  // writable. An earlier trace of that name is removed, so that this comes after all that can fail; one that somebody
  // still writes is not, nor is any other file. Throws user_error.
  explicit trace_target(const std::optional<std::string>& given);

  // Says on standard error what a user would miss in the trace of the process that has ended: the file itself, or the
  // end of a region.
  void report(pid_t process) const;

 private:
  std::string path_;  // empty where none was given
};

}  // namespace quern
