// The classes of such instructions, each with the bits that leave no undefined encoding in it.
#include "sve/trap/patch/plain_instruction.h"

#include "sve/trap/patch/instruction_classes.h"
#include "sve/trap/patch/instruction_effect.h"

namespace quern {
namespace {

constexpr std::uint32_t none = 31;

using namespace aarch64;

struct plain_class {
  word_class words;
  std::uint32_t flags;  // the bits that say, all set, that it sets flags; 0: it does not
  bool has_d, has_n, has_m;
  bool has_sp;  // register 31 is, or may be, the stack pointer
};
constexpr plain_class classes[] = {
    {{0xFFFFFFFF, nop}, 0, false, false, false, false},               // NOP
    {{0x1F800000, 0x11000000}, 0x20000000, true, true, false, true},  // ADD, SUB (immediate)
    {{0x9FE00000, 0x8B000000}, 0x20000000, true, true, true, false},  // ADD, SUB (shifted register: LSL), X
    {{0x9FE08000, 0x0B000000}, 0x20000000, true, true, true, false},  // the same, W
    {{0x9FC00000, 0x8A000000}, 0x60000000, true, true, true, false},  // AND, ORR, EOR and kin (LSL), X
    {{0x9FC08000, 0x0A000000}, 0x60000000, true, true, true, false},  // the same, W
    {{0xBF800000, 0x92800000}, 0, true, false, false, false},         // MOVN, MOVZ, X
    {{0xBFC00000, 0x12800000}, 0, true, false, false, false},         // the same, W
    {{0xBFC00000, 0x93400000}, 0, true, true, false, false},          // SBFM, UBFM (shifts, extensions), X
    {{0xBFE08000, 0x13000000}, 0, true, true, false, false},          // the same, W
    {{0x7FE0FC00, 0x1B007C00}, 0, true, true, true, false},           // MUL
};

const plain_class* class_of(std::uint32_t word) {
  for (const plain_class& c : classes)
    if (c.words(word)) return &c;
  return nullptr;
}

// The register in the field, or none; and `own` put in its place.
std::uint32_t replace(bool has_it, int low, std::uint32_t own, std::uint32_t& word) {
  const std::uint32_t number = word >> low & 31;
  if (!has_it || number == 31) return none;
  word = (word & ~(31u << low)) | own << low;
  return number;
}

}  // namespace

std::optional<plain_instruction> plain_instruction_of(std::uint32_t word) {
  const plain_class* const c = class_of(word);
  if (!c) return {};
  plain_instruction i{word, none, none, none, c->flags != 0 && (word & c->flags) == c->flags};
  i.d = replace(c->has_d, 0, 0, i.word);
  i.n = replace(c->has_n, 5, 1, i.word);
  i.m = replace(c->has_m, 16, 2, i.word);
  const bool may_have_sp = c->has_sp && (i.n == none || (i.d == none && !i.sets_flags));
  return may_have_sp ? std::nullopt : std::optional(i);
}

std::optional<plain_branch> plain_branch_of(std::uint32_t word) {
  const bool tests_flags = is::branch_on_flags(word), tests_register = is::branch_on_zero(word);
  if (!tests_flags && !tests_register) return {};
  constexpr std::uint32_t distance = 0x00FFFFE0;
  plain_branch b{word & ~distance, none, tests_flags, way_on_of(word).distance};
  b.tested = replace(tests_register, 0, 0, b.word);
  return b;
}

}  // namespace quern
