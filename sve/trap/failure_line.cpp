// "Error: failed to emulate SVE instruction 0x%08x at PC %p\n"
#include "sve/trap/failure_line.h"

namespace quern {

text_line failure_line(std::uint32_t word, const void* pc) {
  text_line line;
  line.put("Error: failed to emulate SVE instruction 0x").put_hex(word, 8);
  line.put(" at PC 0x").put_hex(reinterpret_cast<std::uintptr_t>(pc)).put("\n");
  return line;
}

}  // namespace quern
