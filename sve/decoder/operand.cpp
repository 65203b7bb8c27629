// Operands as assembly.
#include "sve/decoder/operand.h"

namespace quern {

std::string format_operand(const operand& op, std::uint32_t row_size, std::uint32_t word) {
  (void)row_size;
  return op.name + std::to_string(extract(op.mask, word));
}

}  // namespace quern
