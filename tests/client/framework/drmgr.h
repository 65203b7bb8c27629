// A double of the framework's extension that orders events, as far as the client uses it.
#pragma once

#include "dr_api.h"

struct drmgr_priority_t {
  std::size_t struct_size;
  const char* name;
  const char* before;
  const char* after;
  int priority;
};

struct emulated_instr_t {
  std::size_t size;
  app_pc pc;
  instr_t* instr;
};

using drmgr_xform_cb_t = dr_emit_flags_t (*)(void* drcontext, void* tag, instrlist_t* bb, bool for_trace,
                                             bool translating);

using drmgr_kernel_xfer_t = void (*)(void* drcontext, const dr_kernel_xfer_info_t* info);
using drmgr_signal_t = dr_signal_action_t (*)(void* drcontext, dr_siginfo_t* info);

bool drmgr_init();
void drmgr_exit();
bool drmgr_register_thread_init_event(void (*event)(void* drcontext));
bool drmgr_register_thread_exit_event(void (*event)(void* drcontext));
bool drmgr_register_bb_app2app_event(drmgr_xform_cb_t event, drmgr_priority_t* priority);
bool drmgr_unregister_bb_app2app_event(drmgr_xform_cb_t event);
bool drmgr_register_kernel_xfer_event(drmgr_kernel_xfer_t event);
bool drmgr_register_signal_event(drmgr_signal_t event);
int drmgr_register_tls_field();
bool drmgr_set_tls_field(void* drcontext, int index, void* value);
void* drmgr_get_tls_field(void* drcontext, int index);
bool drmgr_insert_read_tls_field(void* drcontext, int index, instrlist_t* list, instr_t* where, reg_id_t reg);
bool drmgr_insert_emulation_start(void* drcontext, instrlist_t* list, instr_t* where, emulated_instr_t* record);
void drmgr_insert_emulation_end(void* drcontext, instrlist_t* list, instr_t* where);
