// What tests see of the framework's double: the calls that it was given, the blocks, and a thread's slots. A client
// that does what the framework would not stand ends in a contract_violation.
#pragma once

#include <list>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "drmgr.h"
#include "drreg.h"

// An instruction. The framework's own insertions are kept whole, as one meta instruction each.
struct instr_t {
  enum meta {
    not_meta,
    own_code,  // an instruction that the client built, of the framework's level
    save_reg,
    restore_reg,
    get_stolen,
    set_stolen,
    read_tls,
    clean_call,
    emulation_start,
    emulation_end
  };
  int opcode = OP_INVALID;
  meta kind = not_meta;
  std::vector<opnd_t> dsts, srcs;  // a meta instruction's register is its only destination
  byte* raw_bits = nullptr;
  uint raw_length = 0;
  bool raw_valid = false;
  app_pc translation = nullptr;
  instrlist_t* list = nullptr;
  int slot = -1;                // save_reg, restore_reg
  void* callee = nullptr;       // clean_call, with its arguments in srcs
  emulated_instr_t emulated{};  // emulation_start, which owns the record's instruction
  instr_t *previous = nullptr, *next = nullptr;
};

struct instrlist_t {
  instr_t *first = nullptr, *last = nullptr;
};

namespace quern {

// The client broke the framework's rules.
struct contract_violation : std::logic_error {
  using logic_error::logic_error;
};

// dr_abort was called.
struct aborted {};

// dr_exit_process was called.
struct exited {
  int status;
};

// A file that is loaded into the process.
struct loaded_module {
  byte *start, *end;
  std::string path;
};

// The framework in one process with one thread. One exists at a time.
class framework_double {
 public:
  framework_double();
  ~framework_double();
  framework_double(const framework_double&) = delete;
  framework_double& operator=(const framework_double&) = delete;

  void* drcontext() { return this; }

  // To be set: which calls fail, by name; the n-th insertion of a TLS read that fails (0 is the first); the stolen
  // register; the application's name.
  std::set<std::string> failing;
  int failing_tls_read = -1;
  reg_id_t stolen_register = DR_REG_X28;
  uint page_protection = DR_MEMPROT_NONE;
  std::size_t heap_offset = 16;  // of a thread's memory in a cache line

  // To be looked at: calls in their order, as text, and what was written to our_stderr.
  std::vector<std::string> calls;
  std::string error_stream;
  std::uint32_t told_vector_bytes = 0;
  void (*thread_init)(void*) = nullptr;
  void (*thread_exit)(void*) = nullptr;
  void (*process_exit)() = nullptr;
  void (*process_fork)(void*) = nullptr;
  drmgr_xform_cb_t block_event = nullptr;
  drmgr_kernel_xfer_t kernel_transfer = nullptr;
  drmgr_signal_t signal = nullptr;
  int tries = 0;

  void* tls_field = nullptr;
  reg_t slots[3] = {};
  std::size_t live_instructions() const { return instructions_.size(); }
  std::size_t live_bytes = 0;
  std::vector<loaded_module> modules;  // the program's is the first
  int live_modules = 0;                // records that the client has, and must free
  instrlist_t shared_code;             // what was encoded
  std::list<instrlist_t> lists;        // that were made and not destroyed: the client may abort in between
  byte* code_memory = nullptr;         // to where

  // An application instruction at the end of the block. `bytes` hold its encoding, at its address.
  void append(instrlist_t& block, byte* bytes, int opcode = OP_xx, std::vector<opnd_t> dsts = {},
              std::vector<opnd_t> srcs = {});
  void clear(instrlist_t& block);

  // Behind the framework's functions.
  module_data_t* loan(loaded_module& module);
  instr_t* create(int opcode, std::vector<opnd_t> dsts, std::vector<opnd_t> srcs);
  void destroy(instr_t* instr);
  void insert(instrlist_t* list, instr_t* where, instr_t* instr);
  void insert_meta(instrlist_t* list, instr_t* where, instr_t meta);
  void remove(instrlist_t* list, instr_t* instr);
  instr_t& checked(instr_t* instr) const;
  void check_context(void* drcontext) const;
  bool answer(const std::string& call);
  int tls_reads = 0;

 private:
  std::set<instr_t*> instructions_;
};

// Thrown where the framework would leave the client for the application.
struct redirected {
  dr_mcontext_t context;
};

// The one that exists.
framework_double& framework();

// An operand's and an instruction's text, for comparison with what a test expects.
std::string text(const opnd_t& operand);
std::string text(const instr_t& instr);
std::vector<std::string> text(const instrlist_t& list);

// The encoding of an instruction that the client built. Throws contract_violation if there is none.
std::uint32_t encoding(const instr_t& instr);

}  // namespace quern
