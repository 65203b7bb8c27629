// First and last active elements, and the flags that follow from them.
#include <bit>
#include <cstddef>
#include <iterator>

#include "sve/arith/predicate/predicate_support.h"

namespace {

constexpr std::size_t word_count = sizeof(PredV) / sizeof(std::uint64_t);

constexpr std::uint64_t ones(std::size_t count) {
  return count < 64 ? (std::uint64_t{1} << count) - 1 : ~std::uint64_t{0};
}

// The bits of element 0.
std::uint64_t element_bits(int esize) { return ones(static_cast<unsigned>(esize) / 8); }

[[gnu::noinline]] PredV first_bits(const PredV& value, std::size_t count) {
  PredV first;
  for (std::size_t w = 0; w != word_count; ++w)
    first.words[w] = value.words[w] & ones(count < 64 * w ? 0 : count - 64 * w);
  return first;
}

// The active elements, each as its lowest bit alone. Element widths divide 64 bits, so that all of them end together.
inline PredV active_elements(const PredV& mask, int esize, const CpuContext& ctx) {
  if (esize == 0) return {};
  const std::uint64_t lowest_bits = ~std::uint64_t{0} / element_bits(esize);
  PredV active;
  for (std::size_t w = 0; w != word_count; ++w) active.words[w] = mask.words[w] & lowest_bits;
  const std::size_t in_use = std::size_t{ctx.vl_units} * 8;
  if (in_use < 64 * word_count) [[unlikely]]
    return first_bits(active, in_use);
  return active;
}

constexpr int none = -1;

int lowest_bit(const PredV& value) {
  for (std::size_t w = 0; w != word_count; ++w)
    if (value.words[w] != 0) return static_cast<int>(64 * w) + std::countr_zero(value.words[w]);
  return none;
}

int highest_bit(const PredV& value) {
  for (std::size_t w = word_count; w-- != 0;)
    if (value.words[w] != 0) return static_cast<int>(64 * w) + 63 - std::countl_zero(value.words[w]);
  return none;
}

int element_of(int bit, int esize) { return bit == none ? none : bit / (esize / 8); }

// The bits of `value` from `bit` to the end of its word, at the bottom.
std::uint64_t bits_from(const PredV& value, int bit) { return value.words[bit / 64] >> bit % 64; }

constexpr std::uint32_t flag_n = 1u << 31, flag_z = 1u << 30, flag_c = 1u << 29, flag_v = 1u << 28;

// The flags of a result, V being 0.
std::uint32_t flags_of(const PredV& mask, const PredV& result, int esize, const CpuContext& ctx) {
  const PredV active = active_elements(mask, esize, ctx);
  const std::uint64_t element = element_bits(esize);
  std::uint64_t any = 0;
  for (std::size_t w = 0; w != word_count; ++w) any |= result.words[w] & active.words[w] * element;
  if (any == 0) return flag_z | flag_c;
  const bool first_is_set = (bits_from(result, lowest_bit(active)) & 1) != 0;
  const bool last_is_clear = (bits_from(result, highest_bit(active)) & element) == 0;
  return (first_is_set ? flag_n : 0) | (last_is_clear ? flag_c : 0);
}

// Replaces the flags that `written` has.
void replace_flags(CpuContext& ctx, std::uint32_t written, std::uint32_t flags) {
  ctx.nzcv = (ctx.nzcv & ~written) | (flags & written);
}

}  // namespace

int FindFirstActive(PredV mask, int esize, CpuContext* ctx) {
  return element_of(lowest_bit(active_elements(mask, esize, *ctx)), esize);
}

int FindLastActive(PredV mask, int esize, CpuContext* ctx) {
  return element_of(highest_bit(active_elements(mask, esize, *ctx)), esize);
}

void PredSetNZC(PredV mask, PredV result, int esize, CpuContext* ctx) {
  replace_flags(*ctx, flag_n | flag_z | flag_c, flags_of(mask, result, esize, *ctx));
}

void PredSetNZCV(PredV mask, PredV result, int esize, CpuContext* ctx) {
  replace_flags(*ctx, flag_n | flag_z | flag_c | flag_v, flags_of(mask, result, esize, *ctx));
}

void PredSetNC(PredV mask, PredV result, int esize, CpuContext* ctx) {
  replace_flags(*ctx, flag_n | flag_c, flags_of(mask, result, esize, *ctx));
}

void PredSetNCV(PredV mask, PredV result, int esize, CpuContext* ctx) {
  replace_flags(*ctx, flag_n | flag_c | flag_v, flags_of(mask, result, esize, *ctx));
}
