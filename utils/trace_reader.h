// Reads trace files: whole ones, those of processes that were killed or still run, and those cut off anywhere. Nothing
// in a file is trusted.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "utils/trace_format.h"
#include "utils/trace_modules.h"

namespace quern {

// Thrown when a file is no trace that can be read: one line that says why.
struct trace_error {
  std::string message;
};

enum class trace_kind : std::uint8_t { store, load, start_marker, stop_marker, unknown };

struct trace_record {
  std::uint64_t count;
  std::uint64_t size;
  std::uint64_t addr;
  std::uint64_t pc;
  std::uint32_t group;
  std::uint64_t time;    // of a marker: nanoseconds since 1970, or 0 where the file does not tell
  std::uint64_t region;  // of a marker: the number of the one that it begins or ends, or 0
  std::uint32_t thread;  // the kernel's number of the thread, also in markers
  trace_kind kind;

  bool is_access() const { return kind == trace_kind::load || kind == trace_kind::store; }
  bool is_marker() const { return kind == trace_kind::start_marker || kind == trace_kind::stop_marker; }
  // Of an access: that of its first byte where it has none, and at most that of the address space.
  std::uint64_t last_byte() const { return addr + (size == 0 ? 0 : std::min(size - 1, ~addr)); }
};

struct trace_summary {
  std::uint64_t records = 0;
  std::uint64_t loads = 0, stores = 0, starts = 0, stops = 0, unknown = 0;
  std::uint64_t loaded_bytes = 0, stored_bytes = 0;
  std::optional<std::uint64_t> first_address, last_address;  // of the bytes that were loaded or stored
  std::uint64_t incomplete = 0;                              // records that a thread had begun and not ended
  std::uint64_t missing = 0;         // counts below the highest for which the file has no record
  std::uint64_t damaged_chunks = 0;  // that hold something, but not what a chunk has
  std::set<std::uint32_t> threads;
};

// Is told now and then how much has been done of the walk through the chunks (pass 0) and of giving out the records
// (pass 1), from 0 to 1.
using trace_progress = std::function<void(unsigned pass, double done)>;

class trace_reader {
 public:
  // Reads the header and walks once through all chunks. Throws trace_error.
  explicit trace_reader(const std::string& path, trace_progress progress = {});

  const trace_file_header& header() const { return header_; }  // all 0 in a file that is cut inside of it
  const trace_summary& summary() const { return summary_; }
  const trace_modules& modules() const { return modules_; }
  std::uint64_t file_size() const { return file_.size; }
  bool is_cut() const { return cut_; }

  // The next record in the order of `count`, or nothing when there is none left. Throws trace_error when the file can't
  // be read any more.
  std::optional<trace_record> next();

  // Begins anew with the first record.
  void rewind();

  // Tells that no more records will be asked for.
  void end_progress() const { tell(1, 1); }

 private:
  struct open_file {
    explicit open_file(const std::string& path);
    ~open_file();
    open_file(const open_file&) = delete;
    open_file& operator=(const open_file&) = delete;
    std::size_t read_at(std::uint64_t offset, void* to, std::size_t wanted) const;  // answers how much there was
    std::uint64_t next_data(std::uint64_t offset) const;  // where the file goes on after a hole; its end if nowhere

    std::string path;
    int descriptor;
    std::uint64_t size = 0;
  };
  // Where records lie that one thread stored one after the other: a chunk of them, or a block of packed ones.
  struct place {
    std::uint64_t lowest_count = 0;
    std::uint64_t offset = 0;  // in the file
    std::uint32_t thread = 0;
    bool is_packed = false;
  };
  // A place's whole records by falling count, the next to be given out at the back.
  struct place_records {
    std::vector<trace_record> records;
    std::uint64_t incomplete = 0;
    bool damaged = false;
  };
  // How much of a chunk has been packed.
  struct packed_part {
    std::uint32_t generation = 0, slots = 0;
  };

  void read_header();
  void walk_chunks();
  void walk_blocks(std::uint64_t offset, const trace_chunk_header& header);
  void walk_modules(std::uint64_t offset, const trace_chunk_header& header);
  void take(place where);
  place_records read(const place& where) const;
  place_records read_chunk(const place& where) const;
  place_records read_block(const place& where) const;
  std::uint64_t chunk_offset(std::uint64_t number) const { return header_.header_size + number * header_.chunk_size; }
  void open_places_below_next();
  void tell(unsigned pass, double done) const {
    if (progress_) progress_(pass, done);
  }

  open_file file_;
  trace_progress progress_;
  std::uint64_t given_ = 0;
  bool cut_ = false;
  trace_file_header header_{};
  trace_summary summary_;
  trace_modules modules_;
  std::uint64_t highest_count_ = 0;
  std::map<std::uint64_t, packed_part> packed_;  // by the chunk's number
  std::vector<place> places_;                    // by lowest count
  std::size_t next_place_ = 0;
  std::vector<std::vector<trace_record>> merging_;  // a heap by the next count
};

}  // namespace quern
