// The build ID of an ELF file: a number that the linker makes of what it links, so that a file is known again.
#pragma once

#include <elf.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quern {

// Bytes that are taken of one; linkers make 8 to 20, or what the user gives.
inline constexpr std::size_t most_build_id_bytes = 64;

// Finds the build ID among a note segment's notes, which lie at multiples of `alignment`. Empty if none is there.
inline std::string_view find_build_id(std::string_view notes, std::uint64_t alignment) {
  const std::uint64_t unit = alignment == 8 ? 8 : 4;
  const auto padded = [unit](std::uint64_t size) { return (size + unit - 1) / unit * unit; };
  Elf64_Nhdr note;
  for (std::uint64_t at = 0; at <= notes.size() && notes.size() - at >= sizeof note;) {
    std::memcpy(&note, notes.data() + at, sizeof note);
    const std::uint64_t name = at + sizeof note, description = name + padded(note.n_namesz);
    const std::uint64_t end = description + note.n_descsz;
    if (end > notes.size()) break;
    const bool is_gnu = note.n_namesz == 4 && std::memcmp(notes.data() + name, "GNU", 4) == 0;
    if (is_gnu && note.n_type == NT_GNU_BUILD_ID)
      return {notes.data() + description, note.n_descsz < most_build_id_bytes ? note.n_descsz : most_build_id_bytes};
    at = description + padded(note.n_descsz);
  }
  return {};
}

}  // namespace quern
