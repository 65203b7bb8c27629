// Any bytes as a trace file: the reader refuses it with a line, or gives records in order, as many as it sums up, twice
// the same, and its list of modules answers for each.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "utils/trace_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  dprintf(STDERR_FILENO, "trace_fuzz: not so: %s\n", what);
  std::abort();
}

// Its path, by which the reader opens it.
std::string file_of(const std::uint8_t* data, std::size_t size) {
  static const int file = memfd_create("trace", MFD_CLOEXEC);
  const bool is_written =
      file >= 0 && ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == static_cast<ssize_t>(size);
  require(is_written, "there is memory for a file");
  return "/proc/self/fd/" + std::to_string(file);
}

struct walk {
  std::uint64_t records = 0, sum = 0;
  bool operator==(const walk&) const = default;
};

walk walk_through(quern::trace_reader& reader) {
  walk found;
  std::uint64_t last = 0;
  while (const auto record = reader.next()) {
    require(record->count >= last, "records are in order");
    last = record->count;
    ++found.records;
    found.sum = found.sum * 31 + record->addr + record->size + record->pc + record->group;
    const auto& modules = reader.modules().all();
    const std::size_t module = reader.modules().find(record->pc, record->count);
    require(module == modules.size() || (modules[module].begin <= record->pc && record->pc < modules[module].end),
            "a module that is found has the address");
  }
  return found;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    quern::trace_reader reader(file_of(data, size));
    const walk first = walk_through(reader);
    require(first.records == reader.summary().records, "as many records are given as summed up");
    reader.rewind();
    require(first == walk_through(reader), "records are the same the second time");
  } catch (const quern::trace_error& error) {
    require(!error.message.empty() && error.message.find('\n') == std::string::npos,
            "what is refused is so with a line");
  }
  return 0;
}
