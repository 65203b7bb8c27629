// The rounders under their own names.
#include "sve/arith/float/round.h"

std::uint16_t fp16_round_(int sgn, int exp, std::uint16_t mnt, int rm, int mode, int* flags) {
  return quern::round(sgn, exp, mnt, rm, mode, flags);
}
std::uint32_t fp32_round_(int sgn, int exp, std::uint32_t mnt, int rm, int mode, int* flags) {
  return quern::round(sgn, exp, mnt, rm, mode, flags);
}
std::uint64_t fp64_round_(int sgn, int exp, std::uint64_t mnt, int rm, int mode, int* flags) {
  return quern::round(sgn, exp, mnt, rm, mode, flags);
}
