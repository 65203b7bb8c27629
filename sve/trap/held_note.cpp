// The note is marked, to be told from what happened to be there.
#include "sve/trap/held_note.h"

namespace quern {
namespace {

struct held_note {
  std::uint64_t mark;
  signal_set held;
};

constexpr std::uint64_t note_mark = 0x517E0B5E9A3D4C27;
constexpr std::size_t note_offset = sizeof(sigset_t) - sizeof(held_note);
static_assert(note_offset >= sizeof(signal_set));

}  // namespace

void note_held(sigset_t& mask, signal_set held) {
  const held_note note{note_mark, held};
  std::memcpy(reinterpret_cast<unsigned char*>(&mask) + note_offset, &note, sizeof note);
}

signal_set noted_held(const sigset_t& mask) {
  held_note note;
  std::memcpy(&note, reinterpret_cast<const unsigned char*>(&mask) + note_offset, sizeof note);
  return note.mark == note_mark ? note.held : 0;
}

}  // namespace quern
