// Reading of trace files. The first walk notes the lowest count of each place that holds records; then the places that
// overlap are merged, so that a file larger than memory can be read in order.
#include "utils/trace_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "sve/memory/trace.h"
#include "utils/block_unpacking.h"

namespace quern {
namespace {

constexpr std::uint32_t least_chunk_size = 4096;
constexpr std::uint32_t most_chunk_size = 1 << 26, most_header_size = 1 << 24;

trace_kind kind_of(const stored_record& stored) {
  if (stored.tid == tid_start_marker) return trace_kind::start_marker;
  if (stored.tid == tid_stop_marker) return trace_kind::stop_marker;
  if (stored.kind == MEM_LOAD) return trace_kind::load;
  return stored.kind == MEM_STORE ? trace_kind::store : trace_kind::unknown;
}

trace_record record_of(const stored_record& stored, std::uint32_t thread) {
  const trace_kind kind = kind_of(stored);
  const bool is_marker = kind == trace_kind::start_marker || kind == trace_kind::stop_marker;
  return {.count = stored.count,
          .size = is_marker ? 0 : stored.size,
          .addr = is_marker ? 0 : stored.addr,
          .pc = stored.pc,
          .group = stored.group,
          .time = is_marker ? stored.size : 0,
          .region = is_marker ? stored.addr : 0,
          .thread = thread,
          .kind = kind};
}

// Why a header can't be followed, or empty.
std::string complaint(const trace_file_header& header) {
  if (header.byte_order != trace_byte_order) return "was written on a machine of the other byte order";
  if (header.version == 0 || header.version > trace_version)
    return "has format version " + std::to_string(header.version) + "; this quern reads versions 1 to " +
           std::to_string(trace_version);
  if (header.record_size != sizeof(stored_record) || header.chunk_header_size != sizeof(trace_chunk_header) ||
      header.chunk_size < least_chunk_size || header.chunk_size > most_chunk_size ||
      header.header_size < sizeof header || header.header_size > most_header_size)
    return "is damaged: its header gives sizes that can't be";
  return {};
}

void widen(trace_summary& summary, const trace_record& record) {
  if (record.size == 0) return;
  const std::uint64_t room = ~record.addr;
  const std::uint64_t last = record.addr + std::min(record.size - 1, room);
  summary.first_address = std::min(summary.first_address.value_or(record.addr), record.addr);
  summary.last_address = std::max(summary.last_address.value_or(last), last);
}

void add(trace_summary& summary, const trace_record& record) {
  ++summary.records;
  summary.threads.insert(record.thread);
  switch (record.kind) {
    case trace_kind::start_marker: ++summary.starts; return;
    case trace_kind::stop_marker: ++summary.stops; return;
    case trace_kind::unknown: ++summary.unknown; return;
    case trace_kind::load:
      ++summary.loads;
      summary.loaded_bytes += record.size;
      break;
    case trace_kind::store:
      ++summary.stores;
      summary.stored_bytes += record.size;
      break;
  }
  widen(summary, record);
}

bool next_is_later(const std::vector<trace_record>& a, const std::vector<trace_record>& b) {
  return a.back().count > b.back().count;
}

}  // namespace

trace_reader::open_file::open_file(const std::string& name)
    : path(name), descriptor(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (descriptor < 0) throw trace_error{"can't open " + path + ": " + std::strerror(errno)};
}

trace_reader::open_file::~open_file() { close(descriptor); }

std::size_t trace_reader::open_file::read_at(std::uint64_t offset, void* to, std::size_t wanted) const {
  std::size_t done = 0;
  while (done != wanted) {
    const ssize_t got =
        pread(descriptor, static_cast<char*>(to) + done, wanted - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw trace_error{"can't read " + path + ": " + std::strerror(errno)};
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::uint64_t trace_reader::open_file::next_data(std::uint64_t offset) const {
  const off_t data = lseek(descriptor, static_cast<off_t>(offset), SEEK_DATA);
  if (data >= 0) return static_cast<std::uint64_t>(data);
  return errno == ENXIO ? std::max(offset, size) : offset;
}

trace_reader::trace_reader(const std::string& path, trace_progress progress)
    : file_(path), progress_(std::move(progress)) {
  read_header();
  if (header_.magic != 0) walk_chunks();
  tell(0, 1);
}

void trace_reader::read_header() {
  struct stat status {};
  if (fstat(file_.descriptor, &status) != 0)
    throw trace_error{"can't read " + file_.path + ": " + std::strerror(errno)};
  if (S_ISDIR(status.st_mode)) throw trace_error{file_.path + " is a folder, not a trace file"};
  if (!S_ISREG(status.st_mode)) throw trace_error{file_.path + " is not a regular file"};
  const std::size_t size = file_.read_at(0, &header_, sizeof header_);
  if (size == 0) throw trace_error{file_.path + " is empty, no trace file"};
  if (std::memcmp(&header_, &trace_magic, std::min(size, sizeof trace_magic)) != 0)
    throw trace_error{file_.path + " is not a trace file"};
  // The file may be growing. Its length is asked after its header was read, which says how long it was at least.
  if (fstat(file_.descriptor, &status) != 0)
    throw trace_error{"can't read " + file_.path + ": " + std::strerror(errno)};
  file_.size = static_cast<std::uint64_t>(status.st_size);
  if (size < sizeof header_) {
    cut_ = true;
    header_ = {};
    return;
  }
  header_.application[sizeof header_.application - 1] = 0;
  if (const std::string why = complaint(header_); !why.empty()) throw trace_error{file_.path + " " + why};
}

void trace_reader::walk_chunks() {
  const std::uint64_t room = file_.size - std::min<std::uint64_t>(file_.size, header_.header_size);
  cut_ = room / header_.chunk_size < header_.chunks || file_.size < header_.header_size;
  std::vector<place> unpacked;  // which of their records count is known when all blocks are
  for (std::uint64_t number = 0; number * header_.chunk_size < room; ++number) {
    const std::uint64_t offset = chunk_offset(number);
    tell(0, static_cast<double>(offset) / static_cast<double>(file_.size));
    trace_chunk_header header{};
    if (file_.read_at(offset, &header, sizeof header) < sizeof header) break;
    if (header.magic == 0) {  // the next that is in use may lie far behind a hole in the file
      number = (file_.next_data(chunk_offset(number + 1)) - header_.header_size) / header_.chunk_size - 1;
    } else if (header.magic == packed_magic && header_.version > 1) {
      walk_blocks(offset, header);
    } else if (header.magic == modules_magic && header_.version > 2) {
      walk_modules(offset, header);
    } else if (header.magic == chunk_magic) {
      unpacked.push_back({.offset = offset, .thread = header.thread});
    } else {
      ++summary_.damaged_chunks;
    }
  }
  for (const place& where : unpacked) take(where);
  std::stable_sort(places_.begin(), places_.end(),
                   [](const place& a, const place& b) { return a.lowest_count < b.lowest_count; });
  if (summary_.records != 0 && highest_count_ >= summary_.records)
    summary_.missing = highest_count_ - summary_.records + 1;
}

void trace_reader::walk_blocks(std::uint64_t offset, const trace_chunk_header& chunk) {
  const std::uint64_t end = std::min<std::uint64_t>(chunk.count, header_.chunk_size - sizeof chunk);
  const std::size_t header_bytes = packed_block_header_bytes(header_.version);
  packed_block_header block{};
  for (std::uint64_t at = 0; at < end; at += block.size) {
    const place where{.offset = offset + sizeof chunk + at, .thread = chunk.thread, .is_packed = true};
    if (file_.read_at(where.offset, &block, header_bytes) < header_bytes) return;  // cut off
    if (block.size < header_bytes || block.size > end - at || block.packed_bytes > block.size - header_bytes) {
      ++summary_.damaged_chunks;
      return;
    }
    if (where.offset + block.size > file_.size) return;
    packed_part& part = packed_[block.source];
    if (block.generation > part.generation) part = {block.generation, 0};
    if (block.generation == part.generation) part.slots = std::max(part.slots, block.first_slot + block.records);
    take(where);
  }
}

void trace_reader::walk_modules(std::uint64_t offset, const trace_chunk_header& chunk) {
  std::vector<char> bytes(std::min<std::uint64_t>(chunk.count, header_.chunk_size - sizeof chunk));
  bytes.resize(file_.read_at(offset + sizeof chunk, bytes.data(), bytes.size()));
  if (!modules_.take({bytes.data(), bytes.size()}, bytes.size() == chunk.count)) ++summary_.damaged_chunks;
}

// Sums up the records of a place, and notes where they are.
void trace_reader::take(place where) {
  const place_records found = read(where);
  summary_.incomplete += found.incomplete;
  summary_.damaged_chunks += found.damaged;
  if (found.records.empty()) return;
  for (const trace_record& record : found.records) add(summary_, record);
  highest_count_ = std::max(highest_count_, found.records.front().count);
  where.lowest_count = found.records.back().count;
  places_.push_back(where);
}

trace_reader::place_records trace_reader::read(const place& where) const {
  place_records found = where.is_packed ? read_block(where) : read_chunk(where);
  std::reverse(found.records.begin(), found.records.end());
  std::stable_sort(found.records.begin(), found.records.end(),
                   [](const trace_record& a, const trace_record& b) { return a.count > b.count; });
  return found;
}

trace_reader::place_records trace_reader::read_chunk(const place& where) const {
  std::vector<char> bytes(header_.chunk_size);
  const std::size_t size = file_.read_at(where.offset, bytes.data(), bytes.size());
  place_records found;
  trace_chunk_header header{};
  if (size < sizeof header) return found;
  std::memcpy(&header, bytes.data(), sizeof header);
  const std::uint32_t mark = header_.version == 1 ? 1 : header.generation;
  const auto packed = packed_.find(header.number);
  const bool is_partly_packed = packed != packed_.end() && packed->second.generation == header.generation;
  const std::size_t slots = std::min<std::size_t>(header.count, (size - sizeof header) / sizeof(stored_record));
  for (std::size_t slot = is_partly_packed ? packed->second.slots : 0; slot < slots; ++slot) {
    stored_record stored;
    std::memcpy(&stored, bytes.data() + sizeof header + slot * sizeof stored, sizeof stored);
    if (stored.complete == mark)
      found.records.push_back(record_of(stored, where.thread));
    else
      ++found.incomplete;
  }
  return found;
}

trace_reader::place_records trace_reader::read_block(const place& where) const {
  place_records found;
  packed_block_header header{};
  const std::size_t header_bytes = packed_block_header_bytes(header_.version);
  if (file_.read_at(where.offset, &header, header_bytes) < header_bytes) return found;
  std::vector<unsigned char> bytes(std::min(header.packed_bytes, header_.chunk_size));
  bytes.resize(file_.read_at(where.offset + header_bytes, bytes.data(), bytes.size()));
  const unpacked_block block = unpack_block(header, bytes, header_.version);
  found.damaged = block.is_damaged;
  found.records.reserve(block.records.size());
  for (const stored_record& stored : block.records) found.records.push_back(record_of(stored, where.thread));
  return found;
}

// Opens every place that may hold the next record.
void trace_reader::open_places_below_next() {
  while (next_place_ != places_.size() &&
         (merging_.empty() || places_[next_place_].lowest_count <= merging_.front().back().count)) {
    place_records found = read(places_[next_place_++]);
    if (found.records.empty()) continue;  // the file has changed since
    merging_.push_back(std::move(found.records));
    std::push_heap(merging_.begin(), merging_.end(), next_is_later);
  }
}

std::optional<trace_record> trace_reader::next() {
  open_places_below_next();
  if (merging_.empty()) {
    end_progress();
    return std::nullopt;
  }
  constexpr std::uint64_t step = 4096;
  if (given_++ % step == 0) tell(1, static_cast<double>(given_) / static_cast<double>(summary_.records + 1));
  std::pop_heap(merging_.begin(), merging_.end(), next_is_later);
  const trace_record record = merging_.back().back();
  merging_.back().pop_back();
  if (merging_.back().empty())
    merging_.pop_back();
  else
    std::push_heap(merging_.begin(), merging_.end(), next_is_later);
  return record;
}

void trace_reader::rewind() {
  given_ = 0;
  next_place_ = 0;
  merging_.clear();
}

}  // namespace quern
