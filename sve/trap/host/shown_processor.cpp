// getauxval, sysconf, and the two prctl calls that tell of the vector length and choose it.
#include "sve/trap/host/shown_processor.h"

#include <asm/hwcap.h>
#include <elf.h>
#include <errno.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>

#include "sve/state/vector_length.h"
#include "sve/trap/host/export.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/vector_record.h"

namespace quern {
namespace {

constinit Elf64_auxv_t* vector = nullptr;
constinit bool sve_is_shown = false;
constinit thread_local bool inherits = false;

Elf64_auxv_t* entry_of(Elf64_auxv_t* entry, unsigned long type) {
  while (entry->a_type != type && entry->a_type != AT_NULL) ++entry;
  return entry->a_type == type ? entry : nullptr;
}

Elf64_auxv_t* vector_behind(char** environment) {
  while (*environment) ++environment;
  return reinterpret_cast<Elf64_auxv_t*>(environment + 1);
}

// For a resolver of a library that is loaded before this one: nothing here may need the dynamic linker then.
unsigned long value_before_start(unsigned long type) {
  Elf64_auxv_t entries[64];
  const long bytes = kernel::read_file("/proc/self/auxv", 0, entries, sizeof entries - sizeof *entries);
  if (bytes < 0) return 0;
  entries[static_cast<std::size_t>(bytes) / sizeof *entries].a_type = AT_NULL;
  const Elf64_auxv_t* const entry = entry_of(entries, type);
  return entry ? entry->a_un.a_val : 0;
}

// Any length that is asked for is answered with the one that there is; PR_SVE_SET_VL_ONEXEC asks for no other.
int set_vector_length(unsigned long argument) {
  constexpr unsigned long longest = 8192;  // that the call allows, for processors to come
  const unsigned long bytes = argument & PR_SVE_VL_LEN_MASK, flags = argument - bytes;
  if ((flags & ~static_cast<unsigned long>(PR_SVE_VL_INHERIT | PR_SVE_SET_VL_ONEXEC)) != 0) return EINVAL;
  if (bytes == 0 || bytes > longest || bytes % 16 != 0) return EINVAL;
  const bool wanted = (flags & PR_SVE_VL_INHERIT) != 0;
  if (wanted && !inherits) setenv(inherit_variable, "1", 1);
  if (!wanted && inherits) unsetenv(inherit_variable);
  inherits = wanted;
  return 0;
}

}  // namespace

void show_processor(char** environment) {
  vector = vector_behind(environment);
  if (Elf64_auxv_t* const stack = entry_of(vector, AT_MINSIGSTKSZ)) stack->a_un.a_val += handler_stack_bytes;
  const char* const hide = std::getenv("QUERN_HIDE_SVE");
  Elf64_auxv_t* const capabilities = entry_of(vector, AT_HWCAP);
  if ((hide && *hide) || !capabilities || (capabilities->a_un.a_val & HWCAP_SVE)) return;
  capabilities->a_un.a_val |= HWCAP_SVE;
  sve_is_shown = true;
  inherits = std::getenv(inherit_variable) != nullptr;
}

bool inherits_vector_length() { return inherits; }
void set_inherits_vector_length(bool wanted) { inherits = wanted; }

}  // namespace quern

using namespace quern;

QUERN_EXPORT unsigned long getauxval(unsigned long type) noexcept {
  if (!vector) return value_before_start(type);
  if (const Elf64_auxv_t* const entry = entry_of(vector, type)) return entry->a_un.a_val;
  errno = ENOENT;
  return 0;
}

// The name that compilers' libraries use.
QUERN_EXPORT unsigned long __getauxval(unsigned long type) { return getauxval(type); }

// The C library has looked at the auxiliary vector before it was changed.
QUERN_EXPORT long sysconf(int name) noexcept {
  constexpr long stack_in_minima = 4;
  const long value = next().sysconf(name);
  if (name == _SC_MINSIGSTKSZ) return value + handler_stack_bytes;
  return name == _SC_SIGSTKSZ ? value + stack_in_minima * handler_stack_bytes : value;
}

// prctl with PR_SVE_SET_VL or PR_SVE_GET_VL.
extern "C" __attribute__((visibility("hidden"), used)) long quern_vector_length(int option, unsigned long argument) {
  if (!sve_is_shown) {
    const long result = kernel::control_process(option, argument);
    return result < 0 ? result_of(static_cast<int>(-result)) : result;
  }
  if (option == PR_SVE_SET_VL) {
    if (const int error = set_vector_length(argument)) return result_of(error);
  }
  return VL_BYTES | (inherits ? PR_SVE_VL_INHERIT : 0);
}
