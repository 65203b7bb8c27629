// The places of SVE instructions, counted for `quern run`.
#include "sve/client/reported_places.h"

#include <csignal>
#include <cstring>

#include "sve/decoder/sve_utils.h"
#include "sve/decoder/vector_space.h"
#include "sve/report/place_report.h"

namespace quern {
namespace {

code_origin origin_of(std::uint64_t address) {
  module_data_t* const found = dr_lookup_module(reinterpret_cast<byte*>(address));
  if (found == nullptr) return {};
  module_data_t* const program = dr_get_main_module();
  const bool is_program = program != nullptr && program->start == found->start;
  const auto base = reinterpret_cast<std::uint64_t>(found->start);
  const code_origin origin{module_number(base, is_program ? "" : found->full_path), base};
  if (program != nullptr) dr_free_module_data(program);
  dr_free_module_data(found);
  return origin;
}

// 0 where it can't be read, which is undefined.
std::uint32_t word_at(const unsigned char* pc) {
  std::uint32_t word;
  return dr_safe_read(pc, sizeof word, &word, nullptr) ? word : 0;
}

// A SIGILL may have been sent: then there is another word.
void report_word(const unsigned char* pc) {
  const std::uint32_t word = word_at(pc);
  if (!is_vector_word(word) || get_sve_handler(word)) return;
  if (count_refused({reinterpret_cast<std::uint64_t>(pc), word})) dr_exit_process(status_of_own_failure);
}

// As of a signal that the program has sent itself; the framework does not tell faults from signals that were sent.
bool is_behind_system_call(const unsigned char* pc) {
  return (word_at(pc - sizeof(std::uint32_t)) & 0xFFE0001F) == 0xD4000001;
}

}  // namespace

void open_client_report() { open_place_report(origin_of); }

void report_signal(const dr_siginfo_t& info) {
  if (info.sig != SIGILL && info.sig != SIGSEGV && info.sig != SIGBUS && info.sig != SIGFPE) return;
  if (is_behind_system_call(info.mcontext->pc)) return;
  report_death(reinterpret_cast<std::uint64_t>(info.mcontext->pc), info.sig);
  if (info.sig == SIGILL) report_word(info.mcontext->pc);
}

}  // namespace quern
