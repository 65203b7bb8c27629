// Memory for generated code, near the application's: executable there, and written by a second mapping elsewhere.
#pragma once

#include "sve/trap/patch/run_code.h"

namespace quern {

// Room for the code of one run: where it is to run, and where it is written.
struct code_room {
  unsigned char* place;
  unsigned char* writable;
};

// Room for max_run_code_bytes within reach of a direct branch from `site`, either way; null pointers if there is none.
// The memory is bounded: pieces of it for sites that are all gone with the code around them are used anew. For one
// thread at a time.
code_room find_code_room(const unsigned char* site);

// Takes the first `bytes` of the room that was found last, in which a run_code stands now.
void take_code_room(const code_room& room, std::size_t bytes);

// The generated code that an instruction's address lies in, or null. Safe at any time.
const run_code* find_code(const unsigned char* pc);

// Whether the code's site still branches to it, or will again when a breakpoint is taken away: the application's code
// may have been unmapped or overwritten.
bool has_site(const run_code& code);

// The code of a site whose branch, copied with the words behind it to elsewhere, leads to `target`; null if there is
// none, or one of several. For one thread at a time.
const run_code* find_code_of_copy(const unsigned char* target);

// Where that copy of the branch is.
inline unsigned char* copied_site(const run_code& code, const unsigned char* target) {
  return code.site + (target - code.at(code.entry));
}

// Whether there may be codes whose sites are among these bytes. Safe at any time.
bool may_have_codes_of(const unsigned char* begin, std::size_t bytes);

// Calls visit(code) for each code whose site is one of these bytes and branches to it. The code's memory is kept for
// good, as threads may still be in it when the site is no longer. For one thread at a time.
void visit_codes_of(const unsigned char* begin, std::size_t bytes, void (*visit)(const run_code& code));

}  // namespace quern
