// The known differences, drawn as encodings are.
#include "differences.h"

#include <algorithm>
#include <array>

namespace quern::test {
namespace {

constexpr const char* shifted_byte =
    "A byte has no room for an immediate shifted left by 8. ADD gives two of these words a meaning: they start and "
    "stop "
    "the trace.";
constexpr const char* no_mask =
    "A bit mask has ones and zeros, so an element of nothing but ones is none, nor is one of fewer than two bits.";
constexpr const char* no_offset =
    "The zero register is no offset, save to a first-fault load. The field is open in the row like any register.";

constexpr auto beyond = std::to_array<difference>({
    {"00100101 00 100 00- 11 1 -------- -----", shifted_byte},   // ADD, SUB
    {"00100101 00 100 011 11 1 -------- -----", shifted_byte},   // SUBR
    {"00100101 00 100 1-- 11 1 -------- -----", shifted_byte},   // SQADD, UQADD, SQSUB, UQSUB
    {"00100101 00 111 000 11 1 -------- -----", shifted_byte},   // DUP
    {"00000101 00 01 ---- 0 - 1 -------- -----", shifted_byte},  // CPY
    {"00000101 -- 0000 1 ------ 111111 -----", no_mask},         // 64-bit elements
    {"00000101 -- 0000 0 ------ 011111 -----", no_mask},         // 32
    {"00000101 -- 0000 0 ------ 101111 -----", no_mask},         // 16
    {"00000101 -- 0000 0 ------ 110111 -----", no_mask},         // 8
    {"00000101 -- 0000 0 ------ 111011 -----", no_mask},         // 4
    {"00000101 -- 0000 0 ------ 111101 -----", no_mask},         // 2
    {"00000101 -- 0000 0 ------ 11111- -----", no_mask},         // 1 or none
    {"1010010 ---- 11111 010 --- ----- -----", no_offset},       // LD1B to LD1D
    {"1010010 -- -- 11111 110 --- ----- -----", no_offset},      // LDNT1, LD2 to LD4
    {"1010010 -- 00 11111 000 --- ----- -----", no_offset},      // LD1RQ
    {"1110010 00 -- 11111 010 --- ----- -----", no_offset},      // ST1B
    {"1110010 01 01 11111 010 --- ----- -----", no_offset},      // ST1H
    {"1110010 01 1- 11111 010 --- ----- -----", no_offset},      // ST1H
    {"1110010 10 1- 11111 010 --- ----- -----", no_offset},      // ST1W
    {"1110010 11 11 11111 010 --- ----- -----", no_offset},      // ST1D
    {"1110010 -- -- 11111 011 --- ----- -----", no_offset},      // STNT1, ST2 to ST4
    {"1000010 -- 00 11111 110 --- ----- 0 ----", no_offset},     // PRFB to PRFD
});

constexpr const char* byte_minus_one =
    "A byte of -1 shifted left by 8 is -256, which GNU binutils 2.40 takes for one that fits.";

constexpr auto lax = std::to_array<difference>({
    {"00100101 00 111 000 11 1 11111111 -----", byte_minus_one},   // DUP
    {"00000101 00 01 ---- 0 - 1 11111111 -----", byte_minus_one},  // CPY
});

}  // namespace

std::span<const difference> claimed_beyond_the_architecture() { return beyond; }
std::span<const difference> taken_by_a_lax_assembler() { return lax; }

bool is_in(std::span<const difference> table, std::uint32_t word) {
  return std::any_of(table.begin(), table.end(),
                     [&](const difference& d) { return (word & d.words.mask) == d.words.value; });
}

}  // namespace quern::test
