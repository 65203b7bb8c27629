// The framework's functions, carried out by the one double that exists.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>

#include "framework_double.h"
#include "tests/support/caught_fault.h"

using quern::contract_violation;
using quern::framework;

file_t our_stderr = 2;

namespace {

std::string format_text(const char* format, va_list arguments) {
  char line[1024];
  std::vsnprintf(line, sizeof line, format, arguments);
  return line;
}

instr_t meta(instr_t::meta kind, reg_id_t reg = DR_REG_NULL) {
  instr_t made;
  made.kind = kind;
  if (reg != DR_REG_NULL) made.dsts = {opnd_create_reg(reg)};
  return made;
}

bool is_general(reg_id_t reg) { return reg >= DR_REG_X0 && reg <= DR_REG_X30; }

// A register that the framework's own code may use: any general one but the stolen.
void check_usable(reg_id_t reg) {
  if (!is_general(reg) || reg == framework().stolen_register)
    throw contract_violation("the framework can't use this register for its own code");
}

void check_slot(int slot) {
  if (slot < SPILL_SLOT_1 || slot > SPILL_SLOT_3)
    throw contract_violation("a spill slot that generated code can't reach");
}

void insert_slot_code(instr_t::meta kind, instrlist_t* list, instr_t* where, reg_id_t reg, dr_spill_slot_t slot) {
  check_usable(reg);
  check_slot(slot);
  instr_t made = meta(kind, reg);
  made.slot = slot;
  framework().insert_meta(list, where, made);
}

bool insert_stolen(instr_t::meta kind, instrlist_t* list, instr_t* where, reg_id_t reg) {
  check_usable(reg);
  framework().insert_meta(list, where, meta(kind, reg));
  return true;
}

instr_t* next_of_application(instr_t* instr) {
  while (instr != nullptr && framework().checked(instr).kind != instr_t::not_meta) instr = instr->next;
  return instr;
}

}  // namespace

bool dr_set_client_name(const char* name, const char* contact) {
  if (*contact == '\0') throw contract_violation("no contact");
  return framework().answer(std::string{"dr_set_client_name("} + name + ")");
}
const char* dr_get_application_name() { return "an_application"; }
void dr_register_exit_event(void (*event)()) {
  framework().answer("dr_register_exit_event");
  framework().process_exit = event;
}
void dr_register_fork_init_event(void (*event)(void* drcontext)) {
  framework().answer("dr_register_fork_init_event");
  framework().process_fork = event;
}
void dr_log(void* drcontext, uint mask, uint level, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  char where[64];
  std::snprintf(where, sizeof where, "dr_log(%s, 0x%X, %u, ", drcontext == nullptr ? "null" : "a thread", mask, level);
  framework().answer(where + format_text(format, arguments) + ")");
  va_end(arguments);
}
std::size_t dr_fprintf(file_t file, const char* format, ...) {
  if (file != our_stderr) throw contract_violation("output to an unknown file");
  va_list arguments;
  va_start(arguments, format);
  const std::string printed = format_text(format, arguments);
  framework().error_stream += printed;
  va_end(arguments);
  return printed.size();
}
void dr_abort() { throw quern::aborted{}; }
void dr_exit_process(int status) { throw quern::exited{status}; }
void* dr_get_current_drcontext() { return framework().drcontext(); }
void* dr_thread_alloc(void* drcontext, std::size_t size) {
  framework().check_context(drcontext);
  framework().live_bytes += size;
  constexpr std::size_t cache_line = 64;
  const std::size_t offset = framework().heap_offset;
  auto* const line = static_cast<byte*>(std::aligned_alloc(cache_line, (offset + size + 63) / cache_line * cache_line));
  return std::memset(line + offset, 0xA5, size);
}
void dr_thread_free(void* drcontext, void* memory, std::size_t size) {
  framework().check_context(drcontext);
  framework().live_bytes -= size;
  std::free(static_cast<byte*>(memory) - framework().heap_offset);
}
void* dr_global_alloc(std::size_t size) {
  framework().live_bytes += size;
  return std::malloc(size);
}
void dr_global_free(void* memory, std::size_t size) {
  framework().live_bytes -= size;
  std::free(memory);
}
void* dr_nonheap_alloc(std::size_t size, uint protection) {
  if (protection != (DR_MEMPROT_READ | DR_MEMPROT_WRITE | DR_MEMPROT_EXEC) || framework().code_memory != nullptr)
    throw contract_violation("memory that is not for the one piece of code");
  void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return framework().code_memory = static_cast<byte*>(memory);
}
void dr_nonheap_free(void* memory, std::size_t size) {
  if (memory != framework().code_memory) throw contract_violation("memory is freed that is none");
  munmap(memory, size);
  framework().code_memory = nullptr;
}
std::size_t dr_page_size() { return 16384; }
bool dr_query_memory_ex(const byte*, dr_mem_info_t* info) {
  *info = {framework().page_protection, DR_MEMTYPE_DATA};
  return true;
}
// In a call-out, frameworks answer registers of the client's own code and vectors in the wrong places.
bool dr_get_mcontext(void* drcontext, dr_mcontext_t* context) {
  framework().check_context(drcontext);
  std::memset(&context->r0, 0x5C, sizeof *context - offsetof(dr_mcontext_t, r0));
  return true;
}
module_data_t* dr_lookup_module(byte* pc) {
  for (auto& module : framework().modules)
    if (pc >= module.start && pc < module.end) return framework().loan(module);
  return nullptr;
}
module_data_t* dr_get_main_module() {
  return framework().modules.empty() ? nullptr : framework().loan(framework().modules.front());
}
void dr_free_module_data(module_data_t* module) {
  --framework().live_modules;
  delete module;
}
bool dr_redirect_execution(dr_mcontext_t* context) {
  if (context->size != sizeof *context || context->flags != DR_MC_ALL) throw contract_violation("not all of a context");
  throw quern::redirected{*context};
}
bool dr_double_try(void* drcontext, const std::function<void()>& attempt) {
  framework().check_context(drcontext);
  ++framework().tries;
  return !quern::caught_fault(attempt);
}
// Of any memory that is there, be it no variable's.
[[gnu::no_sanitize_address]] static void read_bytes(const void* base, std::size_t size, void* out) {
  const auto* const from = static_cast<const volatile unsigned char*>(base);
  for (std::size_t i = 0; i != size; ++i) static_cast<unsigned char*>(out)[i] = from[i];
}
bool dr_safe_read(const void* base, std::size_t size, void* out, std::size_t* bytes_read) {
  const bool readable = framework().answer("dr_safe_read");
  if (readable) read_bytes(base, size, out);
  if (bytes_read != nullptr) *bytes_read = readable ? size : 0;
  return readable;
}

opnd_t opnd_create_reg(reg_id_t reg) { return {.kind = opnd_t::reg, .base = reg}; }
opnd_t opnd_create_immed_int(ptr_int_t value, opnd_size_t size) {
  if (size == OPSZ_4 && (value < INT32_MIN || value > UINT32_MAX)) throw contract_violation("an immediate too wide");
  return {.kind = opnd_t::immediate, .size = size, .value = value};
}
opnd_t opnd_create_base_disp(reg_id_t base, reg_id_t index, int, int displacement, opnd_size_t size) {
  if (index != DR_REG_NULL) throw contract_violation("an index register is not doubled");
  return {.kind = opnd_t::memory, .base = base, .size = size, .value = displacement};
}
opnd_t opnd_add_flags(opnd_t operand, dr_opnd_flags_t flags) {
  operand.flags |= flags;
  return operand;
}
bool opnd_is_reg(opnd_t operand) { return operand.kind == opnd_t::reg; }
reg_id_t opnd_get_reg(opnd_t operand) {
  if (operand.kind != opnd_t::reg) throw contract_violation("the register of an operand that is none");
  return operand.base;
}

instr_t* instr_create(void* drcontext) {
  framework().check_context(drcontext);
  return framework().create(OP_INVALID, {}, {});
}
instr_t* instr_create_0dst_1src(void*, int opcode, opnd_t src) { return framework().create(opcode, {}, {src}); }
instr_t* instr_create_1dst_1src(void*, int opcode, opnd_t dst, opnd_t src) {
  return framework().create(opcode, {dst}, {src});
}
instr_t* instr_create_1dst_2src(void*, int opcode, opnd_t dst, opnd_t src1, opnd_t src2) {
  return framework().create(opcode, {dst}, {src1, src2});
}
instr_t* instr_create_2dst_1src(void*, int opcode, opnd_t dst1, opnd_t dst2, opnd_t src) {
  return framework().create(opcode, {dst1, dst2}, {src});
}
instr_t* instr_create_1dst_4src(void*, int opcode, opnd_t dst, opnd_t src1, opnd_t src2, opnd_t src3, opnd_t src4) {
  return framework().create(opcode, {dst}, {src1, src2, src3, src4});
}
void instr_destroy(void* drcontext, instr_t* instr) {
  framework().check_context(drcontext);
  framework().destroy(instr);
}
void instr_set_raw_bits(instr_t* instr, byte* address, uint length) {
  instr_t& given = framework().checked(instr);
  given.raw_bits = given.translation = address;
  given.raw_length = length;
}
void instr_set_raw_bits_valid(instr_t* instr, bool valid) { framework().checked(instr).raw_valid = valid; }
byte* instr_get_raw_bits(instr_t* instr) {
  if (!framework().checked(instr).raw_valid) throw contract_violation("raw bits of an instruction that has none");
  return instr->raw_bits;
}
app_pc instr_get_app_pc(instr_t* instr) { return framework().checked(instr).translation; }
instr_t* instr_set_translation(instr_t* instr, app_pc address) {
  framework().checked(instr).translation = address;
  return instr;
}
int instr_get_opcode(instr_t* instr) { return framework().checked(instr).opcode; }
int instr_num_dsts(instr_t* instr) { return static_cast<int>(framework().checked(instr).dsts.size()); }
opnd_t instr_get_dst(instr_t* instr, uint i) { return framework().checked(instr).dsts.at(i); }
opnd_t instr_get_src(instr_t* instr, uint i) { return framework().checked(instr).srcs.at(i); }
instr_t* instr_get_next(instr_t* instr) { return framework().checked(instr).next; }
instr_t* instr_get_next_app(instr_t* instr) { return next_of_application(framework().checked(instr).next); }
instr_t* instrlist_first_app(instrlist_t* list) { return next_of_application(list->first); }
void instrlist_preinsert(instrlist_t* list, instr_t* where, instr_t* instr) {
  if (framework().checked(instr).translation == nullptr) throw contract_violation("no translation");
  (void)quern::encoding(*instr);
  framework().insert(list, where, instr);
}
void instrlist_meta_preinsert(instrlist_t* list, instr_t* where, instr_t* instr) {
  framework().checked(instr).kind = instr_t::own_code;
  (void)quern::encoding(*instr);
  framework().insert(list, where, instr);
}
void instrlist_insert_mov_immed_ptrsz(void* drcontext, ptr_int_t value, opnd_t dst, instrlist_t* list, instr_t* where,
                                      instr_t**, instr_t**) {
  framework().check_context(drcontext);
  check_usable(opnd_get_reg(dst));
  instr_t* const made = framework().create(OP_mov_immediate, {dst}, {opnd_create_immed_int(value, OPSZ_8)});
  made->kind = instr_t::own_code;
  framework().insert(list, where, made);
}
instrlist_t* instrlist_create(void* drcontext) {
  framework().check_context(drcontext);
  return &framework().lists.emplace_back();
}
// The instructions stay, to be looked at and to be run.
app_pc instrlist_encode(void* drcontext, instrlist_t* list, app_pc to, bool) {
  framework().check_context(drcontext);
  if (to != framework().code_memory) throw contract_violation("code is encoded to where it can't run");
  while (instr_t* const first = list->first) {
    framework().remove(list, first);
    framework().insert(&framework().shared_code, nullptr, first);
    to += 4;
  }
  return to;
}
void instrlist_clear_and_destroy(void*, instrlist_t* list) {
  framework().clear(*list);
  framework().lists.remove_if([&](const instrlist_t& each) { return &each == list; });
}
void instrlist_remove(instrlist_t* list, instr_t* instr) { framework().remove(list, instr); }

void dr_save_reg(void*, instrlist_t* list, instr_t* where, reg_id_t reg, dr_spill_slot_t slot) {
  insert_slot_code(instr_t::save_reg, list, where, reg, slot);
}
void dr_restore_reg(void*, instrlist_t* list, instr_t* where, reg_id_t reg, dr_spill_slot_t slot) {
  insert_slot_code(instr_t::restore_reg, list, where, reg, slot);
}
reg_t dr_read_saved_reg(void* drcontext, dr_spill_slot_t slot) {
  framework().check_context(drcontext);
  check_slot(slot);
  return framework().slots[slot];
}
void dr_write_saved_reg(void* drcontext, dr_spill_slot_t slot, reg_t value) {
  framework().check_context(drcontext);
  check_slot(slot);
  framework().calls.push_back("dr_write_saved_reg(" + std::to_string(slot + 1) + ")");
  framework().slots[slot] = value;
}
reg_id_t dr_get_stolen_reg() { return framework().stolen_register; }
bool dr_insert_get_stolen_reg_value(void*, instrlist_t* list, instr_t* where, reg_id_t reg) {
  return insert_stolen(instr_t::get_stolen, list, where, reg);
}
bool dr_insert_set_stolen_reg_value(void*, instrlist_t* list, instr_t* where, reg_id_t reg) {
  return insert_stolen(instr_t::set_stolen, list, where, reg);
}
void dr_insert_clean_call(void*, instrlist_t* list, instr_t* where, void* callee, bool, uint count, ...) {
  instr_t made = meta(instr_t::clean_call);
  made.callee = callee;
  va_list arguments;
  va_start(arguments, count);
  for (uint i = 0; i < count; ++i) made.srcs.push_back(va_arg(arguments, opnd_t));
  va_end(arguments);
  framework().insert_meta(list, where, made);
}

bool drmgr_init() { return framework().answer("drmgr_init"); }
void drmgr_exit() { framework().answer("drmgr_exit"); }
bool drmgr_register_thread_init_event(void (*event)(void*)) {
  framework().thread_init = event;
  return framework().answer("drmgr_register_thread_init_event");
}
bool drmgr_register_thread_exit_event(void (*event)(void*)) {
  framework().thread_exit = event;
  return framework().answer("drmgr_register_thread_exit_event");
}
bool drmgr_register_bb_app2app_event(drmgr_xform_cb_t event, drmgr_priority_t* p) {
  if (p->struct_size != sizeof *p || p->before != nullptr || p->after != nullptr)
    throw contract_violation("the priority record is not the agreed one");
  framework().block_event = event;
  return framework().answer("drmgr_register_bb_app2app_event(" + std::string{p->name} + ", " +
                            std::to_string(p->priority) + ")");
}
bool drmgr_unregister_bb_app2app_event(drmgr_xform_cb_t event) {
  return framework().answer("drmgr_unregister_bb_app2app_event") && event == framework().block_event;
}
bool drmgr_register_kernel_xfer_event(drmgr_kernel_xfer_t event) {
  framework().kernel_transfer = event;
  return framework().answer("drmgr_register_kernel_xfer_event");
}
bool drmgr_register_signal_event(drmgr_signal_t event) {
  framework().signal = event;
  return framework().answer("drmgr_register_signal_event");
}
int drmgr_register_tls_field() { return framework().answer("drmgr_register_tls_field") ? 5 : -1; }
bool drmgr_set_tls_field(void* drcontext, int index, void* value) {
  framework().check_context(drcontext);
  framework().tls_field = value;
  return framework().answer("drmgr_set_tls_field(" + std::to_string(index) + ")");
}
void* drmgr_get_tls_field(void* drcontext, int index) {
  framework().check_context(drcontext);
  if (index != 5) throw contract_violation("a thread-local field that is not the client's");
  return framework().tls_field;
}
bool drmgr_insert_read_tls_field(void* drcontext, int index, instrlist_t* list, instr_t* where, reg_id_t reg) {
  framework().check_context(drcontext);
  check_usable(reg);
  if (index != 5) throw contract_violation("a thread-local field that is not the client's");
  if (framework().tls_reads++ == framework().failing_tls_read) return false;
  framework().insert_meta(list, where, meta(instr_t::read_tls, reg));
  return true;
}
bool drmgr_insert_emulation_start(void*, instrlist_t* list, instr_t* where, emulated_instr_t* record) {
  if (record->size != sizeof *record) throw contract_violation("the emulation record is of another size");
  framework().checked(record->instr);
  instr_t made = meta(instr_t::emulation_start);
  made.emulated = *record;
  framework().insert_meta(list, where, made);
  return true;
}
void drmgr_insert_emulation_end(void*, instrlist_t* list, instr_t* where) {
  framework().insert_meta(list, where, meta(instr_t::emulation_end));
}

drreg_status_t drreg_exit() { return framework().answer("drreg_exit") ? DRREG_SUCCESS : DRREG_ERROR; }
