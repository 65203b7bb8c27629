// The emulated register file of one thread, and the type of the routines that carry out an instruction on it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sve/state/operands.h"
#include "sve/state/vector_length.h"

// One thread's emulated registers. Values are little-endian. No field is initialised by the emulator.
//
// A predicate (p, ffr) has one byte for each byte of a vector, and only bit 0 of an element's first byte tells whether
// the element is active; every writer stores 0 or 1. The vector's bytes 16 and up, p and ffr live here alone; what the
// host processor has too is brought in and out around each instruction by the program that hosts the emulator.
struct cpu_state {
  std::uint64_t x[31];  // X0 to X30. Register number 31 never indexes this array.
  std::uint64_t sp;
  unsigned char* pc;   // the emulated instruction, in the application's code
  std::uint64_t nzcv;  // N, Z, C, V in bits 31 to 28, as MRS delivers them; writers of the flags keep the other bits
  std::uint32_t fpsr;
  std::uint32_t fpcr;                         // what the application last wrote, not what the host's register holds
  std::uint64_t unused[5];                    // z begins a cache line where the whole does, and so do its vectors
  alignas(16) unsigned char z[32][VL_BYTES];  // element i of size s is bytes i*s to i*s+s-1; the first 16 are Vn
  unsigned char p[16][VL_BYTES];
  unsigned char ffr[VL_BYTES];
  std::uint64_t instr_word;  // the word of the last instruction that went to a direct handler
};

// Generated code and signal frames address these fields; Q registers are stored with a scaled 16-byte offset.
static_assert(offsetof(cpu_state, x) == 0 && offsetof(cpu_state, sp) == 31 * 8);
static_assert(offsetof(cpu_state, pc) == 256 && offsetof(cpu_state, nzcv) == 264);
static_assert(offsetof(cpu_state, fpsr) == 272 && offsetof(cpu_state, fpcr) == 276);
static_assert(offsetof(cpu_state, z) == 320 && offsetof(cpu_state, z) % 64 == 0);
static_assert(offsetof(cpu_state, p) == 320 + 32 * VL_BYTES);

// What a thunk or a handler answers. Callers test for non-zero only.
enum aarch64_decode_rc : std::uint32_t {
  DECODE_OK = 0,             // the instruction was emulated
  DECODE_UNIMPLEMENTED = 2,  // reported on standard error, and nothing done
};

// A routine that carries out one instruction word on a register file.
using sve_handler = aarch64_decode_rc (*)(cpu_state* state, unsigned int word);
