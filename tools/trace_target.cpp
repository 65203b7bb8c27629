// Making room for a trace file, and looking at its header.
#include "tools/trace_target.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tools/host_setup.h"
#include "tools/printable.h"
#include "tools/user_error.h"
#include "utils/trace_format.h"

namespace quern {
namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
  throw user_error{fmt::format("the trace can't be written to {}: {}", path, why), status_cannot_run};
}

// A file that is there already, kept from the other `quern run`s that would remove it.
class earlier_file {
 public:
  explicit earlier_file(const std::string& path)
      : path_(path), descriptor_(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)) {
    if (descriptor_ >= 0)
      flock(descriptor_, LOCK_EX);
    else if (errno != ENOENT)
      refuse(path, errno == ELOOP ? "it is a symbolic link" : std::strerror(errno));
  }
  ~earlier_file() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  earlier_file(const earlier_file&) = delete;
  earlier_file& operator=(const earlier_file&) = delete;

  bool exists() const { return descriptor_ >= 0; }

  // Throws user_error unless it is a trace, or empty, and nobody writes it.
  void check() const {
    struct stat status {};
    if (fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) refuse(path_, "it is not a regular file");
    trace_file_header header{};
    if (pread(descriptor_, &header, sizeof header, 0) != 0 && header.magic != trace_magic)
      throw user_error{fmt::format("{} exists and is no trace: remove it or choose another name", path_),
                       status_cannot_run};
    if (may_be_written(header))
      throw user_error{
          fmt::format("{} is a trace that another process is writing: choose another name, or one with %p, "
                      "which stands for the process number",
                      path_),
          status_cannot_run};
  }

  // False when the name has become another file's before this one was locked.
  bool remove() const {
    struct stat own {
    }, named{};
    if (fstat(descriptor_, &own) != 0 || lstat(path_.c_str(), &named) != 0) return false;
    return own.st_dev == named.st_dev && own.st_ino == named.st_ino && unlink(path_.c_str()) == 0;
  }

 private:
  // A process that traces has the file mapped for writing to its end, and no lease is given on such a file. Where the
  // file system has no leases, a trace that does not say that its program has ended is left alone.
  bool may_be_written(const trace_file_header& header) const {
    if (fcntl(descriptor_, F_SETLEASE, F_RDLCK) == 0) return fcntl(descriptor_, F_SETLEASE, F_UNLCK) != 0;
    return errno == EAGAIN || header.finished != 1;
  }

  const std::string& path_;
  int descriptor_;
};

void clear_the_way(const std::string& path) {
  for (bool cleared = false; !cleared;) {
    const earlier_file file(path);
    if (!file.exists()) return;
    file.check();
    cleared = file.remove();
  }
}

// By a name that is this process's alone: another may be about to make its trace under the given one.
void check_writable(const std::string& path) {
  const std::string name = fmt::format("{}.{}", path, getpid());
  const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0 && errno != EEXIST) refuse(path, std::strerror(errno));
  if (file < 0) return;
  close(file);
  unlink(name.c_str());
}

std::string with_process(std::string path, pid_t process) {
  const std::string number = std::to_string(process);
  for (std::size_t at = 0; (at = path.find("%p", at)) != std::string::npos; at += number.size())
    path.replace(at, 2, number);
  return path;
}

// The header of a trace file, or nothing when there is none.
std::optional<trace_file_header> header_of(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return std::nullopt;
  trace_file_header header{};
  const bool is_whole = pread(file, &header, sizeof header, 0) == sizeof header && header.magic == trace_magic;
  close(file);
  return is_whole ? std::optional(header) : std::nullopt;
}

}  // namespace

trace_target::trace_target(const std::optional<std::string>& given) {
  if (!given) return;
  if (given->empty()) throw user_error{"--trace needs the name of a file (see quern run --help)", status_usage};
  path_ = absolute_path(*given).string();
  clear_the_way(path_);
  check_writable(path_);
  setenv("QUERN_TRACE", path_.c_str(), 1);
}

void trace_target::report(pid_t process) const {
  if (path_.empty()) return;
  const std::string name = with_process(path_, process);
  const std::optional<trace_file_header> header = header_of(name);
  if (!header)
    fmt::print(stderr,
               "quern: there is no trace {}: only what runs between two markers is traced (see quern run "
               "--help)\n",
               printable(name));
  else if (header->process == static_cast<std::uint64_t>(process) && header->open_regions != 0)
    fmt::print(stderr, "quern: the trace {} goes on to the program's end: {} executed no stop marker\n",
               printable(name),
               header->open_regions == 1 ? "a thread" : fmt::format("{} threads", header->open_regions));
}

}  // namespace quern
