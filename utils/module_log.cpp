// Comparing what is in memory with what was noted before.
#include "utils/module_log.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "utils/trace_file.h"
#include "utils/undisturbed.h"

namespace quern {
namespace {

struct known_module {
  address_range range;
  std::uint64_t inode;
  std::uint32_t number;
  bool is_there;  // in the look that is under way
};

// What the thread that holds `is_busy` may use. A thread that finds it taken goes on: it meets the same place again, or
// the next marker looks.
struct module_log {
  static constexpr std::size_t most_modules = 1024, most_holes = 16;

  std::atomic<bool> is_busy{false};
  mapped_modules memory;
  known_module known[most_modules]{};
  std::size_t modules = 0;
  address_range holes[most_holes]{};  // ranges of code that is no module's
  std::size_t next_hole = 0;
  std::uint32_t next_number = 0;
  std::atomic<std::uint64_t> last_look{0};
  byte_chunk* chunk = nullptr;
};
constinit module_log list;

class turn {
 public:
  turn() : is_mine_(!list.is_busy.exchange(true, std::memory_order_acquire)) {}
  ~turn() {
    if (is_mine_) list.is_busy.store(false, std::memory_order_release);
  }
  turn(const turn&) = delete;
  turn& operator=(const turn&) = delete;
  bool is_mine() const { return is_mine_; }

 private:
  undisturbed guard_;  // else a handler of the same thread would find it taken for long
  bool is_mine_;
};

unsigned char* room_for(std::uint32_t size) {
  if (list.chunk != nullptr && sizeof list.chunk->bytes - list.chunk->header.count < size) {
    unmap_chunk(list.chunk);
    list.chunk = nullptr;
  }
  if (list.chunk == nullptr) list.chunk = map_byte_chunk(modules_magic);
  return list.chunk != nullptr ? list.chunk->bytes + list.chunk->header.count : nullptr;
}

void append(module_entry entry, std::string_view build_id, std::string_view path) {
  entry.build_id_bytes = static_cast<std::uint32_t>(build_id.size());
  entry.path_bytes = static_cast<std::uint32_t>(path.size());
  entry.size = (static_cast<std::uint32_t>(sizeof entry) + entry.build_id_bytes + entry.path_bytes + 7) / 8 * 8;
  entry.time = list.last_look;
  unsigned char* const to = room_for(entry.size);
  if (to == nullptr) return;
  std::memcpy(to, &entry, sizeof entry);
  std::ranges::copy(path, std::ranges::copy(build_id, to + sizeof entry).out);
  std::atomic_ref(list.chunk->header.count).fetch_add(entry.size, std::memory_order_release);
}

known_module* find(const mapped_module& module) {
  for (std::size_t i = 0; i != list.modules; ++i) {
    known_module& each = list.known[i];
    if (each.range.begin == module.begin && each.range.end == module.end && each.inode == module.inode) return &each;
  }
  return nullptr;
}

void note_presence(const mapped_module& module, std::uint64_t count) {
  if (known_module* const known = find(module); known != nullptr) {
    known->is_there = true;
    return;
  }
  if (list.modules == module_log::most_modules) return;
  list.known[list.modules++] = {{module.begin, module.end}, module.inode, list.next_number, true};
  for (address_range& hole : list.holes) hole = {};  // code may have come to where there was none
  module_entry entry{};
  entry.number = list.next_number++;
  entry.count = count;
  entry.begin = module.begin;
  entry.end = module.end;
  entry.inode = module.inode;
  append(entry, module.build_id, module.path);
}

void note_absent(std::uint64_t count) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i != list.modules; ++i) {
    const known_module each = list.known[i];
    if (each.is_there) {
      list.known[kept++] = each;
      continue;
    }
    module_entry entry{};
    entry.number = each.number;
    entry.count = count;
    append(entry, {}, {});
  }
  list.modules = kept;
}

address_range look(std::uint64_t count, std::uint64_t place) {
  constexpr address_range everything{0, ~std::uint64_t{0}};
  if (!list.memory.open(place)) return everything;
  list.last_look = nanoseconds_now();
  for (std::size_t i = 0; i != list.modules; ++i) list.known[i].is_there = false;
  mapped_module module;
  while (list.memory.next(module)) note_presence(module, count);
  list.memory.close();
  note_absent(count);
  return list.memory.around();
}

address_range known_range(std::uint64_t place) {
  for (std::size_t i = 0; i != list.modules; ++i)
    if (list.known[i].range.has(place)) return list.known[i].range;
  for (const address_range& hole : list.holes)
    if (hole.has(place)) return hole;
  return {};
}

}  // namespace

void note_modules(std::uint64_t count) {
  const turn mine;
  if (mine.is_mine() && open_trace()) look(count, 0);
}

address_range note_module_of(std::uint64_t count, std::uint64_t place) {
  const turn mine;
  if (!mine.is_mine() || !open_trace()) return {};
  const address_range known = known_range(place);
  if (known.has(place)) return known;
  const address_range found = look(count, place);
  if (!known_range(place).has(place)) list.holes[list.next_hole++ % module_log::most_holes] = found;
  return found;
}

void note_modules_now_and_then(std::uint64_t count) {
  constexpr std::uint64_t shortest_wait = 10'000'000;
  if (nanoseconds_now() - list.last_look >= shortest_wait) note_modules(count);
}

void forget_modules() {
  if (list.chunk != nullptr) unmap_chunk(list.chunk);
  list.chunk = nullptr;
  list.modules = 0;
  list.next_number = 0;
  list.last_look = 0;
  for (address_range& hole : list.holes) hole = {};
  list.is_busy = false;
}

}  // namespace quern
