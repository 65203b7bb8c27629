// Names of trace files.
#include "utils/trace_path.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace quern {
namespace {

constexpr std::string_view process_mark = "%p";
constexpr std::string_view default_pattern = "quern.%p.trace";

// The kernel's own call: libc's falls back on the heap.
bool append_current_folder(path_text& text) {
  static char folder[PATH_MAX];
  const long size = syscall(SYS_getcwd, folder, sizeof folder);
  if (size <= 0) return false;
  if (folder[0] != '/') {  // "(unreachable)...": outside of the process's root
    errno = ENOENT;
    return false;
  }
  text << std::string_view(folder) << "/";
  return true;
}

// (substr() would bring in the library of the exceptions that it can throw.)
std::string_view first(std::string_view text, std::size_t size) { return {text.data(), size}; }

void expand(path_text& name, std::string_view pattern, pid_t process) {
  for (;;) {
    const std::size_t at = pattern.find(process_mark);
    if (at == std::string_view::npos) break;
    name << first(pattern, at) << static_cast<std::uint64_t>(process);
    pattern.remove_prefix(at + process_mark.size());
  }
  name << pattern;
}

}  // namespace

const char* chosen_trace_path() {
  const char* const value = getenv("QUERN_TRACE");
  return value != nullptr && *value != 0 ? value : nullptr;
}

bool choose_trace_path(trace_path& path, const char* value) {
  const std::string_view given = value != nullptr ? std::string_view(value) : default_pattern;
  path.has_process = given.find(process_mark) != std::string_view::npos;
  path.pattern.clear();
  const bool absolute = given.front() == '/' || append_current_folder(path.pattern);
  path.folder_size = path.pattern.view().size();
  path.pattern << given;
  if (!path.pattern.complete()) errno = ENAMETOOLONG;
  return absolute && path.pattern.complete();
}

void trace_name(path_text& name, const trace_path& path, pid_t process, bool forked, unsigned attempt) {
  name.clear();
  std::string_view pattern = path.pattern.view();
  name << first(pattern, path.folder_size);
  pattern.remove_prefix(path.folder_size);
  expand(name, pattern, process);
  const bool as_given = path.has_process || (attempt == 0 && !forked);
  if (!as_given) name << "." << static_cast<std::uint64_t>(process);
  const unsigned number = path.has_process || forked ? attempt : attempt - (attempt != 0);
  if (number != 0) name << "." << number;
}

}  // namespace quern
