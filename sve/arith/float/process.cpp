// One value through unpacking, NaN selection and rounding: as scaling does it, here by 1.
#include "sve/arith/float/process.h"

#include "sve/arith/float/scale.h"

std::uint16_t FPProcess16(std::uint16_t value, FPSCR& fpscr) { return FPScale16(value, 0, fpscr); }
std::uint32_t FPProcess32(std::uint32_t value, FPSCR& fpscr) { return FPScale32(value, 0, fpscr); }
std::uint64_t FPProcess64(std::uint64_t value, FPSCR& fpscr) { return FPScale64(value, 0, fpscr); }
