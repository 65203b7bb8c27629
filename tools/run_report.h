// What `quern run` tells of the SVE instructions of a program that was run.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

#include "sve/report/place_report.h"
#include "tools/child_process.h"
#include "tools/hosts.h"

namespace quern {

// The file in memory that the host fills in while the program runs, and what is to be said of it afterwards.
class run_report {
 public:
  // Makes the file, and tells the host how to find it by way of this process. Where it can't be made, nothing is told,
  // unless the user asked for it: that is a user_error.
  run_report(const run_options& options, const std::filesystem::path& program);
  ~run_report();
  run_report(const run_report&) = delete;
  run_report& operator=(const run_report&) = delete;

  // The place, by its symbol, of the fault that ended the process by a signal; empty when none did.
  std::string place_of_death(pid_t process, int signal) const;

  // Says on standard error which instructions could not be emulated, and writes --stats.
  void print() const;

 private:
  std::filesystem::path program_;
  std::string stats_;  // as in run_options
  int file_;           // without a name, so that nothing is left of it even if quern is killed
  place_report* report_ = nullptr;
};

// run_to_end() with such a report.
int run_reported(const started_program& started, const run_options& options, const std::filesystem::path& program);

}  // namespace quern
