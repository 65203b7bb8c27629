// The registers as run_word.S loads and stores them. The file is read by the assembler too.
#pragma once

#define IMAGE_SP 248
#define IMAGE_NZCV 256
#define IMAGE_FPSR 264
#define IMAGE_HOST_SP 272
#define IMAGE_HOST_TPIDR 280
#define IMAGE_Z 288
#define WORD_PAGES 65536  // the largest page size in use

#ifndef __ASSEMBLER__
#include <cstddef>
#include <cstdint>

#include "sve/state/cpu_state.h"
#include "sve/state/predicate_bits.h"

namespace quern {

struct processor_image {
  std::uint64_t x[31];
  std::uint64_t sp;
  std::uint64_t nzcv;
  std::uint64_t fpsr;
  std::uint64_t host_sp, host_tpidr;  // the caller's, kept while the word runs
  alignas(16) unsigned char z[32][VL_BYTES];
  unsigned char p[16][predicate_image_bytes];
  unsigned char ffr[predicate_image_bytes];
};

static_assert(offsetof(processor_image, sp) == IMAGE_SP && offsetof(processor_image, nzcv) == IMAGE_NZCV);
static_assert(offsetof(processor_image, fpsr) == IMAGE_FPSR && offsetof(processor_image, z) == IMAGE_Z);
static_assert(offsetof(processor_image, host_sp) == IMAGE_HOST_SP &&
              offsetof(processor_image, host_tpidr) == IMAGE_HOST_TPIDR);
static_assert(offsetof(processor_image, p) == IMAGE_Z + 32 * VL_BYTES &&
              offsetof(processor_image, ffr) == offsetof(processor_image, p) + 16 * predicate_image_bytes);

}  // namespace quern
#endif
