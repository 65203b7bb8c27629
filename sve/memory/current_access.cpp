// Which bytes of the thread's access can be the one that faulted.
#include "sve/memory/current_access.h"

#include <algorithm>
#include <iterator>

#include "sve/memory/pages.h"

namespace quern {

constinit thread_local memory_access current_access{};
constinit bool accesses_are_noted = false;
constinit thread_local std::uint64_t lane_addresses[max_addresses]{};

namespace {

// Stands for a lane that was not reached: an odd address in the hole between the application's half and the kernel's.
constexpr std::uint64_t no_address = 0x5A5A'C3C3'9696'F0F1;

// Where pages are larger than the smallest, a byte more is listed than needed.
class suspect_list {
 public:
  explicit suspect_list(std::span<std::uint64_t, max_suspects> bytes) : bytes_(bytes) {}

  void add_block(std::uint64_t address, std::uint64_t bytes) {
    add(address);
    add(page_of(address + bytes - 1) == page_of(address) ? address : page_of(address + bytes - 1));
  }
  std::size_t size() const { return size_; }

 private:
  void add(std::uint64_t address) {
    if (size_ == 0 || page_of(bytes_[size_ - 1]) != page_of(address)) bytes_[size_++] = address;
  }

  std::span<std::uint64_t, max_suspects> bytes_;
  std::size_t size_ = 0;
};

}  // namespace

void forget_addresses() { std::fill(std::begin(lane_addresses), std::end(lane_addresses), no_address); }

std::size_t list_suspects(const memory_access& access, std::span<std::uint64_t, max_suspects> bytes) {
  suspect_list suspects(bytes);
  if (access.predicate == nullptr) {
    suspects.add_block(access.address, access.bytes);
    return suspects.size();
  }
  for (std::size_t i = 0; i != access.lanes; ++i) {
    if ((access.predicate[i * access.lane_bytes] & 1) == 0) continue;
    if (access.addresses != nullptr && access.addresses[i] == no_address) break;
    suspects.add_block(access.addresses != nullptr ? access.addresses[i] : access.address + i * access.bytes,
                       access.bytes);
  }
  return suspects.size();
}

}  // namespace quern
