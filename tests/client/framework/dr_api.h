// A double of the framework's interface, as far as the client uses it and with its names and types, for AArch64 on
// whichever processor the tests run. What it does is in framework_double.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

using byte = unsigned char;
using app_pc = byte*;
using uint = unsigned int;
using reg_t = std::uint64_t;
using ptr_int_t = std::int64_t;
using reg_id_t = std::uint16_t;
using opnd_size_t = std::uint8_t;
using file_t = int;
using client_id_t = uint;

#define DR_EXPORT extern "C"

enum : reg_id_t {
  DR_REG_NULL = 0,
  DR_REG_X0 = 1,
  DR_REG_X3 = DR_REG_X0 + 3,
  DR_REG_X21 = DR_REG_X0 + 21,
  DR_REG_X22,
  DR_REG_X26 = DR_REG_X0 + 26,
  DR_REG_X27,
  DR_REG_X28,
  DR_REG_X29,
  DR_REG_X30,
  DR_REG_XSP,
  DR_REG_XZR,
  DR_REG_W0,
  DR_REG_W26 = DR_REG_W0 + 26,
  DR_REG_WSP = DR_REG_W0 + 31,
  DR_REG_WZR,
  DR_REG_Q0,
  DR_REG_Q31 = DR_REG_Q0 + 31,
  DR_REG_NZCV,
  DR_REG_FPCR,
  DR_REG_FPSR,
};

enum : opnd_size_t { OPSZ_NA, OPSZ_4, OPSZ_8, OPSZ_16, OPSZ_PTR = OPSZ_8 };

enum : int {
  OP_INVALID,
  OP_LABEL,
  OP_add,
  OP_blr,
  OP_br,
  OP_ldp,
  OP_ldr,
  OP_mov_immediate,
  OP_mrs,
  OP_msr,
  OP_stp,
  OP_str,
  OP_xx
};

enum dr_spill_slot_t : int { SPILL_SLOT_1, SPILL_SLOT_2, SPILL_SLOT_3, SPILL_SLOT_4, SPILL_SLOT_MAX = SPILL_SLOT_4 };
enum dr_emit_flags_t { DR_EMIT_DEFAULT = 0 };
enum dr_shift_type_t { DR_SHIFT_LSL };
enum dr_opnd_flags_t { DR_OPND_DEFAULT = 0, DR_OPND_IS_SHIFT = 8 };
enum : uint { DR_LOG_ALL = 0x00ffffff };

struct opnd_t {
  enum { none, reg, immediate, memory } kind = none;
  reg_id_t base = DR_REG_NULL;  // the register, or a memory operand's base
  opnd_size_t size = OPSZ_NA;
  int flags = DR_OPND_DEFAULT;
  std::int64_t value = 0;  // the immediate, or a memory operand's displacement
};

struct instr_t;
struct instrlist_t;

// A vector register's place, which is wider than the register, as in later frameworks.
union dr_simd_t {
  uint q[4];
  std::uint64_t u64[8];
};

struct dr_mcontext_t {
  std::size_t size = sizeof(dr_mcontext_t);
  int flags = 0;
  reg_t r0 = 0, r1 = 0, r2 = 0, r3 = 0, r4 = 0, r5 = 0, r6 = 0, r7 = 0, r8 = 0, r9 = 0, r10 = 0, r11 = 0, r12 = 0,
        r13 = 0, r14 = 0, r15 = 0, r16 = 0, r17 = 0, r18 = 0, r19 = 0, r20 = 0, r21 = 0, r22 = 0, r23 = 0, r24 = 0,
        r25 = 0, r26 = 0, r27 = 0, r28 = 0, r29 = 0, r30 = 0, xsp = 0;
  app_pc pc = nullptr;
  uint nzcv = 0, fpcr = 0, fpsr = 0;
  dr_simd_t simd[32] = {};
};
enum : int { DR_MC_ALL = 15 };

struct dr_siginfo_t {
  int sig;
  void* drcontext;
  dr_mcontext_t* mcontext;
};
enum dr_signal_action_t { DR_SIGNAL_DELIVER, DR_SIGNAL_SUPPRESS, DR_SIGNAL_BYPASS, DR_SIGNAL_REDIRECT };

enum dr_mem_type_t { DR_MEMTYPE_FREE, DR_MEMTYPE_DATA };
enum : uint { DR_MEMPROT_NONE = 0, DR_MEMPROT_READ = 1, DR_MEMPROT_WRITE = 2, DR_MEMPROT_EXEC = 4 };
struct dr_mem_info_t {
  uint prot;
  dr_mem_type_t type;
};

enum dr_kernel_xfer_type_t { DR_XFER_SIGNAL_DELIVERY, DR_XFER_SIGNAL_RETURN, DR_XFER_CLIENT_REDIRECT };

struct module_data_t {
  app_pc start;
  char* full_path;
};

struct dr_kernel_xfer_info_t {
  dr_kernel_xfer_type_t type;
  const dr_mcontext_t* source_mcontext;  // null at a return
  app_pc target_pc;
  reg_t target_xsp;
  int sig;
};

extern file_t our_stderr;

// Process, threads, memory.
bool dr_set_client_name(const char* name, const char* contact);
const char* dr_get_application_name();
void dr_register_exit_event(void (*event)());
void dr_register_fork_init_event(void (*event)(void* drcontext));
void dr_log(void* drcontext, uint mask, uint level, const char* format, ...) __attribute__((format(printf, 4, 5)));
std::size_t dr_fprintf(file_t file, const char* format, ...) __attribute__((format(printf, 2, 3)));
void dr_abort();
void dr_exit_process(int status);
void* dr_get_current_drcontext();
void* dr_thread_alloc(void* drcontext, std::size_t size);
void dr_thread_free(void* drcontext, void* memory, std::size_t size);
void* dr_global_alloc(std::size_t size);
void dr_global_free(void* memory, std::size_t size);
void* dr_nonheap_alloc(std::size_t size, uint protection);
void dr_nonheap_free(void* memory, std::size_t size);
std::size_t dr_page_size();
bool dr_query_memory_ex(const byte* address, dr_mem_info_t* info);
module_data_t* dr_lookup_module(byte* pc);
module_data_t* dr_get_main_module();
void dr_free_module_data(module_data_t* module);
bool dr_get_mcontext(void* drcontext, dr_mcontext_t* context);
bool dr_redirect_execution(dr_mcontext_t* context);
bool dr_safe_read(const void* base, std::size_t size, void* out, std::size_t* bytes_read);

// Operands.
opnd_t opnd_create_reg(reg_id_t reg);
opnd_t opnd_create_immed_int(ptr_int_t value, opnd_size_t size);
opnd_t opnd_create_base_disp(reg_id_t base, reg_id_t index, int scale, int displacement, opnd_size_t size);
opnd_t opnd_add_flags(opnd_t operand, dr_opnd_flags_t flags);
bool opnd_is_reg(opnd_t operand);
reg_id_t opnd_get_reg(opnd_t operand);

// Instructions.
instr_t* instr_create(void* drcontext);
instr_t* instr_create_0dst_1src(void* drcontext, int opcode, opnd_t src);
instr_t* instr_create_1dst_1src(void* drcontext, int opcode, opnd_t dst, opnd_t src);
instr_t* instr_create_1dst_2src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2);
instr_t* instr_create_2dst_1src(void* drcontext, int opcode, opnd_t dst1, opnd_t dst2, opnd_t src);
instr_t* instr_create_1dst_4src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2, opnd_t src3,
                                opnd_t src4);
void instr_destroy(void* drcontext, instr_t* instr);
void instr_set_raw_bits(instr_t* instr, byte* address, uint length);
void instr_set_raw_bits_valid(instr_t* instr, bool valid);
byte* instr_get_raw_bits(instr_t* instr);
app_pc instr_get_app_pc(instr_t* instr);
instr_t* instr_set_translation(instr_t* instr, app_pc address);
int instr_get_opcode(instr_t* instr);
int instr_num_dsts(instr_t* instr);
opnd_t instr_get_dst(instr_t* instr, uint i);
opnd_t instr_get_src(instr_t* instr, uint i);
instr_t* instr_get_next(instr_t* instr);
instr_t* instr_get_next_app(instr_t* instr);
instr_t* instrlist_first_app(instrlist_t* list);
void instrlist_preinsert(instrlist_t* list, instr_t* where, instr_t* instr);
void instrlist_meta_preinsert(instrlist_t* list, instr_t* where, instr_t* instr);
void instrlist_insert_mov_immed_ptrsz(void* drcontext, ptr_int_t value, opnd_t dst, instrlist_t* list, instr_t* where,
                                      instr_t** first, instr_t** last);
void instrlist_remove(instrlist_t* list, instr_t* instr);
instrlist_t* instrlist_create(void* drcontext);
app_pc instrlist_encode(void* drcontext, instrlist_t* list, app_pc to, bool has_instr_jump_targets);
void instrlist_clear_and_destroy(void* drcontext, instrlist_t* list);

// Code of the framework's own.
void dr_save_reg(void* drcontext, instrlist_t* list, instr_t* where, reg_id_t reg, dr_spill_slot_t slot);
void dr_restore_reg(void* drcontext, instrlist_t* list, instr_t* where, reg_id_t reg, dr_spill_slot_t slot);
reg_t dr_read_saved_reg(void* drcontext, dr_spill_slot_t slot);
void dr_write_saved_reg(void* drcontext, dr_spill_slot_t slot, reg_t value);
reg_id_t dr_get_stolen_reg();
bool dr_insert_get_stolen_reg_value(void* drcontext, instrlist_t* list, instr_t* where, reg_id_t reg);
bool dr_insert_set_stolen_reg_value(void* drcontext, instrlist_t* list, instr_t* where, reg_id_t reg);
void dr_insert_clean_call(void* drcontext, instrlist_t* list, instr_t* where, void* callee, bool save_fpstate,
                          uint count, ...);

// Survives faults in the first statement, after which the second one runs. Faults are real here too.
#define DR_TRY_EXCEPT(drcontext, try_statement, except_statement)      \
  do {                                                                 \
    if (!dr_double_try(drcontext, [&] try_statement)) except_statement \
  } while (0)
bool dr_double_try(void* drcontext, const std::function<void()>& attempt);

DR_EXPORT void dr_client_main(client_id_t id, int argc, const char* argv[]);
