// A plugin for qemu-aarch64 that counts executed instructions, exactly, between two marks: `hint #0x7e` begins and
// `hint #0x7f` ends, which no program has otherwise and which do nothing. At each end it writes a comma and the number
// to the standard output. With the argument sve=on it counts those alone whose encoding is in the space of SVE. The
// declarations are those that QEMU documents for plugins; not every system has its header.
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

struct qemu_plugin_tb;
struct qemu_plugin_insn;
extern void qemu_plugin_register_vcpu_tb_trans_cb(uint64_t id, void (*)(uint64_t, struct qemu_plugin_tb*));
extern size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb*);
extern struct qemu_plugin_insn* qemu_plugin_tb_get_insn(const struct qemu_plugin_tb*, size_t);
extern const void* qemu_plugin_insn_data(const struct qemu_plugin_insn*);
extern void qemu_plugin_register_vcpu_insn_exec_inline(struct qemu_plugin_insn*, int op, void* counter, uint64_t by);
extern void qemu_plugin_register_vcpu_insn_exec_cb(struct qemu_plugin_insn*, void (*)(unsigned, void*), int flags,
                                                   void*);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;

enum { add = 0, no_registers = 0 };
static const uint32_t begin_mark = 0xD5032FDF, end_mark = 0xD5032FFF;
static uint64_t executed, at_begin;
static int sve_only;

// The top-level encoding group of SVE.
static int is_sve(uint32_t word) { return (word >> 25 & 0xF) == 2; }

static void begin(unsigned cpu, void* unused) {
  (void)cpu, (void)unused;
  at_begin = executed;
}

static void end(unsigned cpu, void* unused) {
  (void)cpu, (void)unused;
  dprintf(1, ",%" PRIu64, executed - at_begin);
}

static void translate(uint64_t id, struct qemu_plugin_tb* block) {
  (void)id;
  for (size_t i = 0; i != qemu_plugin_tb_n_insns(block); ++i) {
    struct qemu_plugin_insn* const insn = qemu_plugin_tb_get_insn(block, i);
    uint32_t word;
    memcpy(&word, qemu_plugin_insn_data(insn), sizeof word);
    if (word == begin_mark || word == end_mark) {
      qemu_plugin_register_vcpu_insn_exec_cb(insn, word == begin_mark ? begin : end, no_registers, NULL);
    } else if (!sve_only || is_sve(word)) {
      qemu_plugin_register_vcpu_insn_exec_inline(insn, add, &executed, 1);
    }
  }
}

__attribute__((visibility("default"))) int qemu_plugin_install(uint64_t id, const void* info, int count, char** args) {
  (void)info;
  sve_only = count == 1 && strcmp(args[0], "sve=on") == 0;
  qemu_plugin_register_vcpu_tb_trans_cb(id, translate);
  return 0;
}
