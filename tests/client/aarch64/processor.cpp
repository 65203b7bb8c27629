// Runs a rewritten block on this processor: the client's moves by their encodings, the framework's own code as short
// sequences that address a record of the thread by X28, the stolen register.
#include <sys/mman.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "machine.h"

namespace quern {
namespace {

// What X28 points to while the block runs.
struct thread_record {
  machine registers;  // to load before the block, and as they are after it
  std::uint64_t slots[3];
  void* tls_field;
  void* call_out;
  std::uint64_t return_address, application_sp;  // during a call-out
  std::uint64_t host_sp, host_fpcr, host_fpsr;   // of the code that runs the block
  std::uint64_t argument;                        // of a call-out
};

// The assembly code below has these offsets as literals.
static_assert(offsetof(machine, stolen_x28) == 248 && offsetof(machine, sp) == 256 && offsetof(machine, nzcv) == 264);
static_assert(offsetof(machine, fpsr) == 272 && offsetof(machine, fpcr) == 280 && offsetof(machine, q) == 288);
static_assert(offsetof(thread_record, return_address) == 840 && offsetof(thread_record, application_sp) == 848);
static_assert(offsetof(thread_record, host_sp) == 856 && offsetof(thread_record, host_fpcr) == 864);
static_assert(offsetof(thread_record, host_fpsr) == 872);

}  // namespace
}  // namespace quern

// quern_enter_block and quern_leave_block are copied before and after a block's code; each ends at its label _end, and
// together they are a function of the thread_record.
__asm__(R"(
  .text
  .global quern_enter_block, quern_enter_block_end, quern_leave_block, quern_leave_block_end, quern_call_out
  .macro callee_saved move
  \move x19, x20, [sp, #16]
  \move x21, x22, [sp, #32]
  \move x23, x24, [sp, #48]
  \move x25, x26, [sp, #64]
  \move x27, x28, [sp, #80]
  \move d8, d9, [sp, #96]
  \move d10, d11, [sp, #112]
  \move d12, d13, [sp, #128]
  \move d14, d15, [sp, #144]
  .endm
quern_enter_block:
  stp x29, x30, [sp, #-160]!
  callee_saved stp
  mov x28, x0
  mov x0, sp
  mrs x1, fpcr
  mrs x2, fpsr
  str x0, [x28, #856]
  str x1, [x28, #864]
  str x2, [x28, #872]
  ldr x0, [x28, #256]
  mov sp, x0
  ldr x0, [x28, #264]
  msr nzcv, x0
  ldr x0, [x28, #272]
  msr fpsr, x0
  ldr x0, [x28, #280]
  msr fpcr, x0
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  ldr q\n, [x28, #(288 + 16 * \n)]
  .endr
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,29,30
  ldr x\n, [x28, #(8 * \n)]
  .endr
quern_enter_block_end:

quern_leave_block:
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,29,30
  str x\n, [x28, #(8 * \n)]
  .endr
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  str q\n, [x28, #(288 + 16 * \n)]
  .endr
  mov x0, sp
  str x0, [x28, #256]
  mrs x0, nzcv
  str x0, [x28, #264]
  mrs x0, fpsr
  str x0, [x28, #272]
  mrs x0, fpcr
  str x0, [x28, #280]
  ldr x0, [x28, #856]
  ldr x1, [x28, #864]
  ldr x2, [x28, #872]
  mov sp, x0
  msr fpcr, x1
  msr fpsr, x2
  callee_saved ldp
  ldp x29, x30, [sp], #160
  ret
quern_leave_block_end:

// A call-out on the stack of the code that runs the block, with the call's instr_t in X0. Afterwards every register has
// rubbish in it but X28, SP and FPCR.
quern_call_out:
  str x30, [x28, #840]
  mov x1, sp
  str x1, [x28, #848]
  ldr x1, [x28, #856]
  mov sp, x1
  mov x1, x28
  bl quern_make_call
  ldr x0, [x28, #848]
  mov sp, x0
  mov x0, #0xE0000000
  msr nzcv, x0
  mov x0, #0x80
  msr fpsr, x0
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  movi v\n\().16b, #0xEE
  .endr
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,29
  mov x\n, #0xEEEEEEEEEEEEEEEE
  .endr
  ldr x30, [x28, #840]
  ret
  .purgem callee_saved
)");

extern "C" {
extern const unsigned char quern_enter_block[], quern_enter_block_end[], quern_leave_block[], quern_leave_block_end[];
void quern_call_out();

// The callee reads and writes the framework's slots.
__attribute__((used)) void quern_make_call(const instr_t* call, quern::thread_record* thread) {
  std::memcpy(quern::framework().slots, thread->slots, sizeof thread->slots);
  quern::call_callee(*call, thread->argument);
  std::memcpy(thread->slots, quern::framework().slots, sizeof thread->slots);
}
}

namespace quern {
namespace {

constexpr std::uint32_t x28 = 28;

struct code_buffer {
  std::vector<std::uint32_t> words;

  void add(std::uint32_t word) { words.push_back(word); }
  void add(const unsigned char* begin, const unsigned char* end) {
    for (; begin != end; begin += 4) std::memcpy(&words.emplace_back(), begin, 4);
  }
  // ldr and str of Xreg at a field of the thread_record.
  void load(std::uint32_t reg, std::size_t field) {
    add(0xF9400000 | (static_cast<std::uint32_t>(field) / 8) << 10 | x28 << 5 | reg);
  }
  void store(std::uint32_t reg, std::size_t field) {
    add(0xF9000000 | (static_cast<std::uint32_t>(field) / 8) << 10 | x28 << 5 | reg);
  }
  // movz and three movk.
  void set(std::uint32_t reg, std::uint64_t value) {
    for (std::uint32_t part = 0; part < 4; ++part)
      add((part == 0 ? 0xD2800000 : 0xF2800000) | part << 21 | (value >> (16 * part) & 0xFFFF) << 5 | reg);
  }
};

void add_framework_code(code_buffer& code, const instr_t& instr) {
  const auto reg = [&] { return static_cast<std::uint32_t>(instr.dsts.at(0).base - DR_REG_X0); };
  const auto slot = [&] { return offsetof(thread_record, slots) + 8 * static_cast<std::size_t>(instr.slot); };
  switch (instr.kind) {
    case instr_t::save_reg: code.store(reg(), slot()); break;
    case instr_t::restore_reg: code.load(reg(), slot()); break;
    case instr_t::get_stolen: code.load(reg(), offsetof(machine, stolen_x28)); break;
    case instr_t::set_stolen: code.store(reg(), offsetof(machine, stolen_x28)); break;
    case instr_t::read_tls: code.load(reg(), offsetof(thread_record, tls_field)); break;
    case instr_t::clean_call:
      code.store(static_cast<std::uint32_t>(instr.srcs.at(0).base - DR_REG_X0), offsetof(thread_record, argument));
      code.set(0, reinterpret_cast<std::uint64_t>(&instr));
      code.load(30, offsetof(thread_record, call_out));
      code.add(0xD63F03C0);  // blr x30
      break;
    case instr_t::emulation_start:
    case instr_t::emulation_end:
    case instr_t::not_meta:
    case instr_t::own_code: break;
  }
}

// The framework would rewrite an application's instruction that names the stolen register; here there is none.
void check_stolen(const instr_t& instr) {
  for (const auto* operands : {&instr.dsts, &instr.srcs})
    for (const opnd_t& operand : *operands)
      if (operand.base == DR_REG_X28 || operand.base == DR_REG_W0 + x28)
        throw contract_violation("the stolen register in: " + text(instr));
}

void add_application_code(code_buffer& code, const instr_t& instr) {
  check_stolen(instr);
  if (instr.opcode == OP_mov_immediate)
    return code.set(static_cast<std::uint32_t>(instr.dsts.at(0).base - DR_REG_X0),
                    static_cast<std::uint64_t>(instr.srcs.at(0).value));
  if (instr.opcode != OP_xx) return code.add(encoding(instr));
  std::uint32_t word;
  std::memcpy(&word, instr.raw_bits, sizeof word);
  code.add(word);
}

void add_list(code_buffer& code, const instrlist_t& list) {
  for (const instr_t* instr = list.first; instr != nullptr; instr = instr->next)
    (instr->kind <= instr_t::own_code ? add_application_code : add_framework_code)(code, *instr);
}

// Puts words where the processor may run them.
void place_code(const std::vector<std::uint32_t>& words, void* at) {
  const std::size_t size = words.size() * sizeof words[0];
  if (mprotect(at, size, PROT_READ | PROT_WRITE) != 0) throw std::runtime_error("no right to write the code");
  std::memcpy(at, words.data(), size);
  if (mprotect(at, size, PROT_READ | PROT_EXEC) != 0) throw std::runtime_error("no right to run the code");
  __builtin___clear_cache(static_cast<char*>(at), static_cast<char*>(at) + size);
}

}  // namespace

void run_on_processor(machine& m, const instrlist_t& block, const native_effect&) {
  code_buffer shared, whole;
  add_list(shared, framework().shared_code);
  place_code(shared.words, framework().code_memory);
  whole.add(quern_enter_block, quern_enter_block_end);
  add_list(whole, block);
  whole.add(quern_leave_block, quern_leave_block_end);
  const std::size_t size = whole.words.size() * sizeof whole.words[0];
  void* const code = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (code == MAP_FAILED) throw std::runtime_error("no memory for the block's code");
  place_code(whole.words, code);

  thread_record thread{};
  thread.registers = m;
  thread.tls_field = framework().tls_field;
  thread.call_out = reinterpret_cast<void*>(quern_call_out);
  reinterpret_cast<void (*)(thread_record*)>(code)(&thread);
  m = thread.registers;
  munmap(code, size);
}

}  // namespace quern
