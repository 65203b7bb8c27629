// Patched places: an emulated word that has trapped once becomes a branch to code that is generated for it.
#pragma once

#include <cstddef>
#include <cstdint>

// No further place is patched: by the user's choice, or since the application has confined itself to some system calls,
// of which patching needs others. Written by syscall() and prctl().
extern "C" __attribute__((visibility("hidden"))) bool quern_patching_is_off;

namespace quern {

// Reads QUERN_PATCH: with "off" nothing is patched, nor in a process that a debugger has started.
void read_patch_choice();

// Where the branch leads that `word` is at `pc`, if it is one of ours; else null. A thread may still trap at a place
// that another has patched.
const unsigned char* patched_way(const unsigned char* pc, std::uint32_t word);

// Makes code for an emulated word that has just trapped, patches its place, and answers where to go on. Null when the
// word is to be emulated by its trap: where text can't be made writable, where no
// memory is in reach, and in code that no file holds or that can be written, which a program may move or change.
const unsigned char* patch(unsigned char* pc);

// Carries out a system call that is about these bytes, by which they move, or may be written from then on: they have
// the program's own words then, as branches must not move, and runs not have words that change. The places are patched
// anew afterwards, but not while they may be written. Answers what the kernel does.
long call_with_own_words(long number, unsigned char* begin, std::size_t bytes, long third, long fourth, long fifth);

// For a thread that has come to `pc`, where it can't go on: if it came there by a copy of one of our branches, which
// leads astray, puts the program's own word there, and answers where. Else null.
const unsigned char* mend_copied_branch(const unsigned char* pc);

// In the child of a fork: no other thread is there that could be making code.
void forget_patching();

}  // namespace quern
