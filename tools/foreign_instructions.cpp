// Vector instructions that are not emulated, so that they can be called by their names.
#include "tools/foreign_instructions.h"

#include <algorithm>

namespace quern {
namespace {

// "01000101 --0 ----- 111110 ----- -----", bit 31 first. A drawing of another length does not compile.
consteval foreign_instruction drawn(const char* extension, const char* mnemonic, const char* drawing) {
  foreign_instruction form{extension, mnemonic, 0, 0};
  int bits = 0;
  for (; *drawing != 0; ++drawing) {
    if (*drawing == ' ') continue;
    form.mask = form.mask << 1 | (*drawing != '-');
    form.value = form.value << 1 | (*drawing == '1');
    ++bits;
  }
  if (bits != 32) throw "an encoding has 32 bits";
  return form;
}

constexpr foreign_instruction forms[] = {
#define FOREIGN(extension, mnemonic, drawing) drawn(extension, mnemonic, drawing),
#include "tools/foreign_instructions.def"
#undef FOREIGN
};

}  // namespace

std::span<const foreign_instruction> foreign_instructions() { return forms; }

const foreign_instruction* find_foreign(std::uint32_t word) {
  const auto* const found =
      std::ranges::find_if(forms, [=](const foreign_instruction& form) { return form.has(word); });
  return found == std::end(forms) ? nullptr : found;
}

}  // namespace quern
