// The double's blocks and instructions, and the rules that the framework has for them.
#include "framework_double.h"

#include <algorithm>

namespace quern {
namespace {

framework_double* the_framework;

void require(bool holds, const std::string& rule) {
  if (!holds) throw contract_violation(rule);
}

}  // namespace

framework_double& framework() {
  require(the_framework != nullptr, "the framework is used while there is none");
  return *the_framework;
}

framework_double::framework_double() { the_framework = this; }

framework_double::~framework_double() {
  for (instr_t* instr : instructions_) delete instr;
  if (code_memory != nullptr) dr_nonheap_free(code_memory, dr_page_size());
  the_framework = nullptr;
}

bool framework_double::answer(const std::string& call) {
  calls.push_back(call);
  return !failing.contains(call.substr(0, call.find('(')));
}

void framework_double::check_context(void* drcontext) const {
  require(drcontext == this, "a drcontext is not this thread's");
}

instr_t& framework_double::checked(instr_t* instr) const {
  require(instructions_.contains(instr), "an instruction is used that was never made, or is destroyed");
  return *instr;
}

instr_t* framework_double::create(int opcode, std::vector<opnd_t> dsts, std::vector<opnd_t> srcs) {
  instr_t* const made = new instr_t;
  made->opcode = opcode;
  made->dsts = std::move(dsts);
  made->srcs = std::move(srcs);
  return *instructions_.insert(made).first;
}

// A label of the start of emulation takes its record's instruction with it.
void framework_double::destroy(instr_t* instr) {
  require(checked(instr).list == nullptr, "an instruction is destroyed while it is in a list");
  if (instr->kind == instr_t::emulation_start) destroy(instr->emulated.instr);
  instructions_.erase(instr);
  delete instr;
}

void framework_double::insert(instrlist_t* list, instr_t* where, instr_t* instr) {
  instr_t& given = checked(instr);
  require(given.list == nullptr, "an instruction is inserted twice");
  require(where == nullptr || checked(where).list == list, "an instruction is inserted before one of another list");
  given.list = list;
  given.next = where;
  given.previous = where != nullptr ? where->previous : list->last;
  (given.previous != nullptr ? given.previous->next : list->first) = instr;
  (where != nullptr ? where->previous : list->last) = instr;
}

void framework_double::insert_meta(instrlist_t* list, instr_t* where, instr_t meta) {
  require(where != nullptr, "code of the framework's own is inserted at the end of a block");
  instr_t* const made = create(OP_LABEL, {}, {});
  *made = std::move(meta);
  made->opcode = OP_LABEL;
  insert(list, where, made);
}

void framework_double::remove(instrlist_t* list, instr_t* instr) {
  instr_t& given = checked(instr);
  require(given.list == list, "an instruction is removed from a list that it is not in");
  (given.previous != nullptr ? given.previous->next : list->first) = given.next;
  (given.next != nullptr ? given.next->previous : list->last) = given.previous;
  given.list = nullptr;
  given.previous = given.next = nullptr;
}

module_data_t* framework_double::loan(loaded_module& module) {
  ++live_modules;
  return new module_data_t{module.start, module.path.data()};
}

void framework_double::append(instrlist_t& block, byte* bytes, int opcode, std::vector<opnd_t> dsts,
                              std::vector<opnd_t> srcs) {
  instr_t* const made = create(opcode, std::move(dsts), std::move(srcs));
  made->raw_bits = made->translation = bytes;
  made->raw_length = 4;
  made->raw_valid = true;
  insert(&block, nullptr, made);
}

void framework_double::clear(instrlist_t& block) {
  while (block.first != nullptr) {
    instr_t* const first = block.first;
    remove(&block, first);
    destroy(first);
  }
}

}  // namespace quern
