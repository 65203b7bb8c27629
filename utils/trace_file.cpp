// Making and growing the trace file.
#include "utils/trace_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "sve/state/vector_length.h"
#include "utils/trace_path.h"
#include "utils/undisturbed.h"

namespace quern {
namespace {

enum class phase : int { untouched, opening, open, stopped };

// The process's one trace. All but the atomics is written only by set_up_trace, before any record, and by the thread
// that brought the phase to `opening`.
struct process_trace {
  std::atomic<phase> now{phase::untouched};
  std::atomic<std::uint32_t> next_chunk{0};
  trace_path path;
  path_text name;  // of the file
  char application[sizeof(trace_file_header::application)]{};
  trace_file_header* header = nullptr;  // mapped
  dev_t device = 0;
  ino_t inode = 0;
  pid_t owner = 0;
  std::uint32_t vector_bytes = VL_BYTES;
  bool forked = false;
};
constinit process_trace trace;

using message_text = fixed_text<2 * PATH_MAX + 512>;

void print_line(message_text& message) {
  message << "\n";
  [[maybe_unused]] const auto written = write(STDERR_FILENO, message.c_str(), message.view().size());
}

message_text& begin_message() {
  static constinit message_text message;
  message.clear();
  return message << "quern: ";
}

std::string_view error_text(int error) {
  const char* const text = strerrordesc_np(error);
  return text != nullptr ? text : "unknown error";
}

class file_descriptor {
 public:
  explicit file_descriptor(int number) : number_(number) {}
  ~file_descriptor() {
    if (number_ >= 0) close(number_);
  }
  file_descriptor(const file_descriptor&) = delete;
  file_descriptor& operator=(const file_descriptor&) = delete;
  int number() const { return number_; }
  bool is_open() const { return number_ >= 0; }

 private:
  int number_;
};

// DynamoRIO puts a function of its own in the place of open(), which reports no error in errno; it leaves openat()
// alone.
int open_file(const char* name, int flags) { return openat(AT_FDCWD, name, flags | O_RDWR | O_CLOEXEC, 0666); }

// Real blocks, so that a full disk is an error here and no SIGBUS at a store. Answers 0 or an errno. The limit on file
// sizes is asked first, since meeting it raises SIGXFSZ.
int grow(int file, std::uint64_t offset, std::uint64_t size) {
  rlimit limit{};
  if (getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && offset + size > limit.rlim_cur)
    return EFBIG;
  return posix_fallocate(file, static_cast<off_t>(offset), static_cast<off_t>(size));
}

// Null with errno set on failure.
template <class T>
T* map_shared(int file, std::uint64_t offset, std::size_t size) {
  void* const at = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, static_cast<off_t>(offset));
  return at == MAP_FAILED ? nullptr : static_cast<T*>(at);
}

std::uint32_t header_size() { return static_cast<std::uint32_t>(sysconf(_SC_PAGESIZE)); }

void fill_header(trace_file_header& header) {
  header.version = trace_version;
  header.byte_order = trace_byte_order;
  header.header_size = header_size();
  header.chunk_size = trace_chunk_size;
  header.chunk_header_size = sizeof(trace_chunk_header);
  header.record_size = sizeof(stored_record);
  header.vector_bytes = trace.vector_bytes;
  header.page_size = header_size();
  header.start_time = nanoseconds_now();
  header.process = static_cast<std::uint64_t>(getpid());
  header.parent = static_cast<std::uint64_t>(getppid());
  std::memcpy(header.application, trace.application, sizeof header.application);
  header.magic = trace_magic;
}

// The file by the first of its names that is not taken, or -1 with errno set.
int create_file() {
  constexpr unsigned most_names = 1000;
  for (unsigned attempt = 0; attempt != most_names; ++attempt) {
    trace_name(trace.name, trace.path, getpid(), trace.forked, attempt);
    if (!trace.name.complete() || !trace.path.pattern.complete()) {
      errno = ENAMETOOLONG;
      return -1;
    }
    const int file = open_file(trace.name.c_str(), O_CREAT | O_EXCL);
    if (file < 0 && errno == EEXIST) continue;
    if (file >= 0 && attempt != 0)
      print_line(begin_message() << "the trace file's own name is taken by an earlier one; this process writes "
                                 << trace.name.view());
    return file;
  }
  return -1;
}

bool map_header(int file) {
  struct stat status {};
  const int error = grow(file, 0, header_size());
  if (error != 0) errno = error;
  trace.header = error == 0 ? map_shared<trace_file_header>(file, 0, header_size()) : nullptr;
  if (trace.header == nullptr || fstat(file, &status) != 0) return false;
  trace.device = status.st_dev;
  trace.inode = status.st_ino;
  fill_header(*trace.header);
  return true;
}

bool create_trace() {
  trace.owner = getpid();
  if (trace.path.pattern.view().empty()) choose_trace_path(trace.path, chosen_trace_path());  // no sve_init came
  const file_descriptor file(create_file());
  if (file.is_open() && map_header(file.number())) return true;
  const int error = errno;
  if (file.is_open()) unlink(trace.name.c_str());
  print_line(begin_message() << "can't make the trace file " << trace.name.view() << ": " << error_text(error)
                             << "; the program runs on without a trace (set QUERN_TRACE to a path that can be "
                                "written)");
  return false;
}

// The file is opened anew for each chunk: a descriptor kept open might be closed by the application, and its number
// become a file of the application's. -1 with errno set when it is not there any more.
int reopen_file() {
  const int file = open_file(trace.name.c_str(), 0);
  if (file < 0) return -1;
  struct stat status {};
  if (fstat(file, &status) == 0 && status.st_dev == trace.device && status.st_ino == trace.inode) return file;
  close(file);
  errno = ESTALE;
  return -1;
}

// Null with errno set on failure.
template <class Chunk>
Chunk* extend_file(std::uint32_t number) {
  const file_descriptor file(reopen_file());
  if (!file.is_open()) return nullptr;
  const std::uint64_t offset = header_size() + std::uint64_t{number} * trace_chunk_size;
  const int error = grow(file.number(), offset, trace_chunk_size);
  if (error == 0) return map_shared<Chunk>(file.number(), offset, trace_chunk_size);
  errno = error;
  return nullptr;
}

void raise_to(std::uint64_t& value, std::uint64_t least) {
  const std::atomic_ref shared(value);
  std::uint64_t seen = shared.load();
  while (seen < least && !shared.compare_exchange_weak(seen, least)) continue;
}

void stop_trace(int error) {
  phase seen = phase::open;
  if (!trace.now.compare_exchange_strong(seen, phase::stopped)) return;
  std::atomic_ref(trace.header->stop_error).store(static_cast<std::uint32_t>(error));
  message_text& message = begin_message() << "the trace file " << trace.name.view();
  if (error == ENOENT || error == ESTALE)
    message << " is not there any more; the program runs on without a trace, and the records so far are lost if the "
               "file was removed";
  else
    message << " can't be extended: " << error_text(error)
            << "; the program runs on, and the records so far are kept (set QUERN_TRACE to a path with more room)";
  print_line(message);
}

// Null when there is no trace any more.
template <class Chunk>
Chunk* new_chunk(std::uint64_t magic) {
  if (!open_trace()) return nullptr;
  const std::uint32_t number = trace.next_chunk.fetch_add(1, std::memory_order_relaxed);
  Chunk* const chunk = extend_file<Chunk>(number);
  if (chunk == nullptr) {
    stop_trace(errno);
    return nullptr;
  }
  chunk->header.number = number;
  chunk->header.pthread = static_cast<std::uint64_t>(pthread_self());
  chunk->header.thread = static_cast<std::uint32_t>(gettid());
  chunk->header.time = nanoseconds_now();
  chunk->header.generation = 1;
  chunk->header.magic = magic;
  raise_to(trace.header->chunks, std::uint64_t{number} + 1);
  return chunk;
}

// Tries the name that is free for this process alone, so that two processes never meet in the attempt.
bool can_create(const trace_path& path) {
  static path_text name;
  trace_name(name, path, getpid(), false, 1);
  if (!name.complete()) {
    errno = ENAMETOOLONG;
    return false;
  }
  const file_descriptor file(open_file(name.c_str(), O_CREAT | O_EXCL));
  if (!file.is_open()) return errno == EEXIST;
  return unlink(name.c_str()) == 0;
}

// 0, or the errno that says why no trace file of that name can be made.
int refusal(trace_path& path) {
  static path_text name;
  trace_name(name, path, getpid(), false, 0);
  struct stat status {};
  if (stat(name.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!S_ISREG(status.st_mode)) return ENOTSUP;
  }
  return can_create(path) ? 0 : errno;
}

void refuse(std::string_view value, int error) {
  const std::string_view why = error == ENOTSUP ? "not a regular file" : error_text(error);
  print_line(begin_message() << "QUERN_TRACE is '" << value << "', where no trace can be written: " << why
                             << " (set it to a path in a folder that exists and can be written, or unset it)");
}

}  // namespace

std::uint64_t nanoseconds_now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(now.tv_nsec);
}

void set_vector_bytes(std::uint32_t bytes) { trace.vector_bytes = bytes; }

bool set_up_trace(const char* application) {
  const undisturbed guard;
  std::strncpy(trace.application, application != nullptr ? application : "", sizeof trace.application - 1);
  trace.owner = getpid();
  const char* const value = chosen_trace_path();
  int error = choose_trace_path(trace.path, value) ? 0 : errno;
  if (value == nullptr) return true;  // what is wrong with the default shows when there is something to write
  if (error == 0) error = refusal(trace.path);
  if (error != 0) refuse(value, error);
  return error == 0;
}

// The first thread to come makes the file; others wait for that moment only.
bool open_trace() {
  phase seen = phase::untouched;
  if (trace.now.compare_exchange_strong(seen, phase::opening, std::memory_order_acquire)) {
    seen = create_trace() ? phase::open : phase::stopped;
    trace.now.store(seen, std::memory_order_release);
  }
  while (seen == phase::opening) {
    const timespec pause{0, 50'000};
    nanosleep(&pause, nullptr);
    seen = trace.now.load(std::memory_order_acquire);
  }
  return seen == phase::open;
}

trace_chunk* map_chunk() { return new_chunk<trace_chunk>(chunk_magic); }
byte_chunk* map_byte_chunk(std::uint64_t magic) { return new_chunk<byte_chunk>(magic); }

bool trace_stopped() { return trace.now.load(std::memory_order_relaxed) == phase::stopped; }

void unmap_chunk(void* chunk) { munmap(chunk, trace_chunk_size); }

void note_region(bool is_open) {
  if (trace.header != nullptr) std::atomic_ref(trace.header->open_regions).fetch_add(is_open ? 1 : -1u);
}

bool trace_is_ours_and_open() {
  return trace.now.load(std::memory_order_acquire) == phase::open && getpid() == trace.owner;
}

void finish_trace() { std::atomic_ref(trace.header->finished).store(1); }

bool leave_parents_trace() {
  if (getpid() == trace.owner) return false;
  if (trace.header != nullptr) munmap(trace.header, header_size());
  trace.header = nullptr;
  trace.next_chunk = 0;
  trace.owner = getpid();
  trace.forked = true;
  trace.now = phase::untouched;
  return true;
}

}  // namespace quern
