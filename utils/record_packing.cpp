// The model of a thread's records, and records as their differences from it.
#include "utils/record_packing.h"

#include "sve/memory/trace.h"

namespace quern {
namespace {

// The fields in the order in which they are written, those that are as expected left out.
enum field_flag : unsigned char {
  other_count = 1,   // difference from the last plus one
  other_pc = 2,      // difference from the expected one
  other_tid = 4,     // itself
  other_kind = 8,    // itself
  other_group = 16,  // itself
  other_size = 32,   // itself
  other_addr = 64,   // difference from the place's last
};

// Seven bits a byte, lowest first; the highest bit says that more follow.
unsigned char* put(unsigned char* to, std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) *to++ = static_cast<unsigned char>(number | 0x80);
  *to++ = static_cast<unsigned char>(number);
  return to;
}

// Small differences of either sign become small numbers: the sign is the lowest bit.
constexpr std::uint64_t fold(std::uint64_t difference) { return difference << 1 ^ (0 - (difference >> 63)); }
constexpr std::uint64_t unfold(std::uint64_t number) { return number >> 1 ^ (0 - (number & 1)); }

class field_reader {
 public:
  field_reader(const unsigned char* from, const unsigned char* end) : at_(from), end_(end) {}
  std::uint64_t next() {
    std::uint64_t number = 0;
    for (unsigned shift = 0; at_ != end_ && shift < 64; shift += 7) {
      const unsigned char byte = *at_++;
      number |= std::uint64_t{byte & 0x7Fu} << shift;
      if (byte < 0x80) return number;
    }
    is_whole_ = false;
    return 0;
  }
  std::uint32_t next_word() { return static_cast<std::uint32_t>(next()); }
  const unsigned char* end() const { return is_whole_ ? at_ : nullptr; }

 private:
  const unsigned char* at_;
  const unsigned char* end_;
  bool is_whole_ = true;
};

}  // namespace

std::uint64_t record_model::next_pc() const {
  const place& last = places_[last_];
  const bool goes_on = (last.group & (trace_group_member | trace_group_last)) == trace_group_member;
  return goes_on ? last.pc : last.next_pc;
}

record_model::place& record_model::place_of(std::uint64_t pc) {
  place& found = places_[pc / 4 % places];
  if (found.pc != pc)
    found = {.pc = pc, .addr = 0, .stride = 0, .size = 0, .next_pc = 0, .tid = 0, .group = 0, .kind = 0};
  return found;
}

// A group is 3, 2, ..., 2, 6, or 7 alone; a contiguous access has none.
std::uint32_t record_model::next_group(std::uint32_t group) {
  constexpr std::uint32_t begins = trace_group_first | trace_group_member, alone = begins | trace_group_last;
  if (group == alone || group == 0) return group;
  return (group & trace_group_last) != 0 ? begins : trace_group_member;
}

void record_model::learn(place& at, const stored_record& record) {
  places_[last_].next_pc = record.pc;
  last_ = static_cast<std::size_t>(&at - places_);
  last_count_ = record.count;
  at.stride = record.addr - at.addr;
  at.addr = record.addr;
  at.size = record.size;
  at.tid = record.tid;
  at.group = record.group;
  at.kind = record.kind;
}

unsigned char* pack_record(record_model& model, const stored_record& record, unsigned char& flags, unsigned char* to) {
  unsigned others = 0;
  const auto put_if = [&](bool differs, field_flag flag, std::uint64_t value) {
    if (!differs) return;
    others |= flag;
    to = put(to, value);
  };
  const std::uint64_t next_pc = model.next_pc();
  put_if(record.count != model.next_count(), other_count, fold(record.count - model.next_count()));
  put_if(record.pc != next_pc, other_pc, fold(record.pc - next_pc));
  record_model::place& place = model.place_of(record.pc);
  put_if(record.tid != place.tid, other_tid, record.tid);
  put_if(record.kind != place.kind, other_kind, record.kind);
  put_if(record.group != record_model::next_group(place.group), other_group, record.group);
  put_if(record.size != place.size, other_size, record.size);
  put_if(record.addr != place.addr + place.stride, other_addr, fold(record.addr - place.addr));
  flags = static_cast<unsigned char>(others);
  model.learn(place, record);
  return to;
}

const unsigned char* unpack_record(record_model& model, unsigned char flags, const unsigned char* from,
                                   const unsigned char* end, stored_record& record) {
  constexpr unsigned known = 2 * other_addr - 1;
  if (flags > known) return nullptr;
  const unsigned others = flags;
  field_reader fields(from, end);
  record = {};
  record.count = model.next_count() + ((others & other_count) != 0 ? unfold(fields.next()) : 0);
  record.pc = model.next_pc() + ((others & other_pc) != 0 ? unfold(fields.next()) : 0);
  record_model::place& place = model.place_of(record.pc);
  record.tid = (others & other_tid) != 0 ? fields.next_word() : place.tid;
  record.kind = (others & other_kind) != 0 ? fields.next_word() : place.kind;
  record.group = (others & other_group) != 0 ? fields.next_word() : record_model::next_group(place.group);
  record.size = (others & other_size) != 0 ? fields.next() : place.size;
  record.addr = place.addr + ((others & other_addr) != 0 ? unfold(fields.next()) : place.stride);
  if (fields.end() != nullptr) model.learn(place, record);
  return fields.end();
}

}  // namespace quern
