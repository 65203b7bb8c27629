// The process's trace file: made at the first record, grown by a chunk at a time, each mapped by the thread that fills
// it. Async-signal-safe throughout.
#pragma once

#include "utils/trace_format.h"

namespace quern {

// Notes where the trace goes and for whom. False, with a line on standard error, when QUERN_TRACE names what can't be
// written; no file is left behind.
bool set_up_trace(const char* application);

// Notes the vector length of the process, which is the build's own unless told.
void set_vector_bytes(std::uint32_t bytes);

// Whether there is a file to write to, which the first to ask makes. To be called undisturbed, as the two below.
bool open_trace();

// A chunk of the file for the calling thread alone, or null when there is no trace any more; the first time that is so,
// a line on standard error says why.
trace_chunk* map_chunk();
byte_chunk* map_byte_chunk(std::uint64_t magic);
void unmap_chunk(void* chunk);

// Nanoseconds since 1970.
std::uint64_t nanoseconds_now();

// Notes in the file that a thread is in a region of interest from now on, or no longer.
void note_region(bool is_open);

// Whether there is a trace, and it is not that of the process that this one was forked from.
bool trace_is_ours_and_open();

// Notes in the file that the program ended in good order. To be asked for of an own trace that is open.
void finish_trace();

// Whether an error ended the trace.
bool trace_stopped();

// Forgets the parent's file in a forked child; its own is made at its first record. False, and nothing happens,
// elsewhere.
bool leave_parents_trace();

}  // namespace quern
