// The pieces of memory for generated code.
#include "sve/trap/host/code_pool.h"

#include <linux/memfd.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <atomic>

#include "sve/trap/host/breakpoint.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/host/system_call.h"
#include "sve/trap/patch/instructions.h"

namespace quern {
namespace {

constexpr std::size_t piece_bytes = 262144;
constexpr std::size_t max_pieces = 256;
// Less than a branch reaches, as it starts and ends within a piece.
constexpr std::int64_t reach = aarch64::branch_reach - (2 << 20);
constexpr std::int64_t step = 1 << 20;

struct code_piece {
  std::atomic<unsigned char*> place;  // null: none
  unsigned char* writable;
  std::atomic<std::size_t> used;
  long process;  // that made it: in the child of a fork it is full, since it is shared with the parent
  bool is_kept;  // for good
  std::atomic<const unsigned char*> lowest_site, highest_site;
};

constinit std::array<code_piece, max_pieces> pieces{};

std::size_t round_up(std::size_t bytes) { return (bytes + run_code::alignment - 1) & ~(run_code::alignment - 1); }

bool is_near(const unsigned char* place, const unsigned char* site) {
  const std::int64_t distance = place - site;
  return distance > -reach && distance < reach;
}

unsigned char* map(std::int64_t address, int protection, int flags, long file) {
  const long at = kernel::call(SYS_mmap, address, piece_bytes, protection, MAP_SHARED | flags, file, 0);
  return at < 0 && at > -4096 ? nullptr : reinterpret_cast<unsigned char*>(at);
}

void unmap(unsigned char* at) { kernel::call(SYS_munmap, kernel::argument(at), piece_bytes); }

unsigned char* map_at(std::int64_t address, long file) {
  if (address < step) return nullptr;
  unsigned char* const at = map(address, PROT_READ | PROT_EXEC, MAP_FIXED_NOREPLACE, file);
  if (!at || at == reinterpret_cast<unsigned char*>(address)) return at;
  unmap(at);  // an older kernel takes the address as a wish
  return nullptr;
}

// Below the site first: above an executable its heap grows. Above, the farthest first for the same reason.
unsigned char* map_near(const unsigned char* site, long file) {
  const std::int64_t around = reinterpret_cast<std::intptr_t>(site) & ~(step - 1);
  for (std::int64_t distance = step; distance < reach; distance += step)
    if (unsigned char* const at = map_at(around - distance, file)) return at;
  for (std::int64_t distance = reach - 2 * step; distance > 0; distance -= step)
    if (unsigned char* const at = map_at(around + distance, file)) return at;
  return nullptr;
}

bool fill(code_piece& piece, const unsigned char* site, long process) {
  const long file = kernel::call(SYS_memfd_create, kernel::argument("quern"), MFD_CLOEXEC);
  if (file < 0) return false;
  unsigned char *writable = nullptr, *place = nullptr;
  if (kernel::call(SYS_ftruncate, file, piece_bytes) == 0) place = map_near(site, file);
  if (place) writable = map(0, PROT_READ | PROT_WRITE, 0, file);  // afterwards: it may be anywhere, but not in the way
  kernel::call(SYS_close, file);
  if (place && !writable) unmap(place);
  if (!writable) return false;
  piece.writable = writable;
  piece.process = process;
  piece.is_kept = false;
  piece.lowest_site = reinterpret_cast<unsigned char*>(UINTPTR_MAX);
  piece.highest_site = nullptr;
  piece.used.store(0, std::memory_order_relaxed);
  piece.place.store(place, std::memory_order_release);
  return true;
}

// Calls visit(code) for each code of the piece until it answers true; answers whether it did.
template <typename Visit>
bool any_code(const code_piece& piece, Visit visit) {
  const unsigned char* const place = piece.place.load(std::memory_order_acquire);
  const std::size_t used = piece.used.load(std::memory_order_acquire);
  for (std::size_t at = 0; at < used;) {
    const auto& code = *reinterpret_cast<const run_code*>(place + at);
    if (visit(code)) return true;
    at += round_up(code.end);
  }
  return false;
}

// Whether the application's code is no longer there: its memory is no longer mapped, or has come from a file anew, or
// the word behind the run, to which a thread in it goes on, is another one (but no branch of ours). A thread that is
// still in the run then has had the code taken away while it executes it, which has no meaning on a processor either.
// It is not gone where the application has only put another word in the site's place, or taken the right to read it.
bool is_gone(const run_code& code) {
  if (has_site(code)) return false;
  const auto site = reinterpret_cast<std::uintptr_t>(code.site),
             behind = reinterpret_cast<std::uintptr_t>(code.behind_site());
  if (!kernel::can_read(site)) return !kernel::is_mapped(site);
  if (word_at(code.site) == code.literals[0].word || !kernel::can_read(behind)) return true;
  const std::uint32_t word = word_at(code.behind_site());
  return word != code.behind && !aarch64::is_b(word);
}

// Gives back the pieces whose sites are all gone. No thread is in them: a run is as one instruction to the program,
// whose signal handlers never find it within.
void release_dead_pieces() {
  for (code_piece& piece : pieces) {
    unsigned char* const place = piece.place.load(std::memory_order_relaxed);
    if (!place || piece.is_kept || any_code(piece, [](const run_code& code) { return !is_gone(code); })) continue;
    piece.place.store(nullptr, std::memory_order_release);
    unmap(place);
    unmap(piece.writable);
  }
}

// Whether some site of the piece may be among the bytes.
bool is_about(const code_piece& piece, const unsigned char* begin, std::size_t bytes) {
  return piece.place.load(std::memory_order_relaxed) && piece.lowest_site < begin + bytes &&
         piece.highest_site >= begin;
}

// Whether the branch and the words behind it stand there, though some may be branches by now.
bool is_copy(const run_code& code, const unsigned char* place) {
  if (place == code.site || !kernel::can_read(reinterpret_cast<std::uintptr_t>(place))) return false;
  if (word_at(place) != aarch64::b(code.at(code.entry) - code.site)) return false;
  for (std::size_t i = 1; i != code.words; ++i) {
    const unsigned char* const at = place + i * sizeof(aarch64::word);
    if (!kernel::can_read(reinterpret_cast<std::uintptr_t>(at))) return false;
    if (word_at(at) != code.literals[i].word && !aarch64::is_b(word_at(at))) return false;
  }
  return true;
}

code_room room_in_pieces(const unsigned char* site, long process) {
  for (const code_piece& piece : pieces) {
    unsigned char* const place = piece.place.load(std::memory_order_relaxed);
    const std::size_t used = piece.used.load(std::memory_order_relaxed);
    if (place && piece.process == process && used + max_run_code_bytes <= piece_bytes && is_near(place, site))
      return {place + used, piece.writable + used};
  }
  return {};
}

bool add_piece(const unsigned char* site, long process) {
  for (code_piece& piece : pieces)
    if (!piece.place.load(std::memory_order_relaxed)) return fill(piece, site, process);
  return false;
}

}  // namespace

code_room find_code_room(const unsigned char* site) {
  const long process = kernel::call(SYS_getpid);
  if (const code_room room = room_in_pieces(site, process); room.place) return room;
  if (!add_piece(site, process)) {
    release_dead_pieces();
    if (!add_piece(site, process)) return {};
  }
  return room_in_pieces(site, process);
}

void take_code_room(const code_room& room, std::size_t bytes) {
  for (code_piece& piece : pieces) {
    const std::size_t used = piece.used.load(std::memory_order_relaxed);
    if (piece.place.load(std::memory_order_relaxed) + used != room.place) continue;
    const unsigned char* const site = reinterpret_cast<run_code*>(room.writable)->site;
    piece.lowest_site = std::min(piece.lowest_site.load(), site);
    piece.highest_site = std::max(piece.highest_site.load(), site);
    piece.used.store(used + round_up(bytes), std::memory_order_release);
    return;
  }
}

const run_code* find_code(const unsigned char* pc) {
  const run_code* found = nullptr;
  for (const code_piece& piece : pieces) {
    const unsigned char* const place = piece.place.load(std::memory_order_acquire);
    if (!place || pc < place || pc >= place + piece_bytes) continue;
    any_code(piece, [&](const run_code& code) { return code.holds(pc) && (found = &code); });
    return found;
  }
  return nullptr;
}

const run_code* find_code_of_copy(const unsigned char* target) {
  const run_code* found = nullptr;
  bool several = false;
  for (const code_piece& piece : pieces) {
    any_code(piece, [&](const run_code& code) {
      if (!is_copy(code, copied_site(code, target))) return false;
      several = several || (found && found->literals[0].word != code.literals[0].word);
      found = &code;
      return several;
    });
  }
  return several ? nullptr : found;
}

bool may_have_codes_of(const unsigned char* begin, std::size_t bytes) {
  return std::any_of(pieces.begin(), pieces.end(),
                     [&](const code_piece& piece) { return is_about(piece, begin, bytes); });
}

void visit_codes_of(const unsigned char* begin, std::size_t bytes, void (*visit)(const run_code& code)) {
  for (code_piece& piece : pieces) {
    if (!is_about(piece, begin, bytes)) continue;
    any_code(piece, [&](const run_code& code) {
      if (code.site < begin || code.site >= begin + bytes || !has_site(code)) return false;
      piece.is_kept = true;
      visit(code);
      return false;
    });
  }
}

bool has_site(const run_code& code) {
  if (!kernel::can_read(reinterpret_cast<std::uintptr_t>(code.site))) return false;
  const std::uint32_t word = word_at(code.site);
  return is_breakpoint(word) || word == aarch64::b(code.at(code.entry) - code.site);
}

}  // namespace quern
