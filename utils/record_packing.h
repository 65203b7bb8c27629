// Records in a few bytes each. Both sides keep the same model of what comes next; a record is the list of what differs
// from it: a byte of flags, and a number for each field that was not as expected. docs/trace-format.md tells the same
// to other programs. No heap and no system call: signal handlers pack.
#pragma once

#include <cstddef>
#include <cstdint>

#include "utils/trace_format.h"

namespace quern {

// What comes next, as far as the records so far tell. A loop's instructions follow one another in the same order, each
// with an address one stride on; all that is told is what was so the last time.
class record_model {
 public:
  // One instruction's last record.
  struct place {
    std::uint64_t pc, addr, stride, size;
    std::uint64_t next_pc;  // of the record that came after it
    std::uint32_t tid, group, kind;
  };

  void reset() { *this = {}; }
  std::uint64_t next_count() const { return last_count_ + 1; }
  std::uint64_t next_pc() const;
  place& place_of(std::uint64_t pc);  // all 0 beside the pc when it is new
  static std::uint32_t next_group(std::uint32_t group);

  // Takes the record as the next, and as its place's last.
  void learn(place& at, const stored_record& record);

 private:
  static constexpr std::size_t places = 128;  // by their addresses' low bits; one that meets another's takes its room
  place places_[places]{};
  std::size_t last_ = 0;  // the last record's place
  std::uint64_t last_count_ = ~std::uint64_t{0};
};

// The bytes that one record's numbers take at most.
inline constexpr std::size_t most_number_bytes = 56;

// Packs `record` to `flags` and to `to`, where most_number_bytes are free. Answers the end of what it wrote there. The
// field `complete` is left out.
unsigned char* pack_record(record_model& model, const stored_record& record, unsigned char& flags, unsigned char* to);

// Unpacks the record of these flags, whose numbers are the first of the bytes up to `end`. Answers the end of what it
// read, or null when there is no whole record.
const unsigned char* unpack_record(record_model& model, unsigned char flags, const unsigned char* from,
                                   const unsigned char* end, stored_record& record);

}  // namespace quern
