// Asking libdw.
#include "tools/source_lines.h"

#include <dlfcn.h>

#include <optional>

#ifdef QUERN_HAS_LIBDW_HEADER
#include <elfutils/libdwfl.h>
#endif

namespace quern {
#ifdef QUERN_HAS_LIBDW_HEADER
namespace {

struct libdw {
  decltype(&dwfl_begin) begin;
  decltype(&dwfl_end) end;
  decltype(&dwfl_report_elf) report_elf;
  decltype(&dwfl_report_end) report_end;
  decltype(&dwfl_getsrc) getsrc;
  decltype(&dwfl_lineinfo) lineinfo;
  Dwfl_Callbacks callbacks;
};

template <class Function>
bool look_up(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

std::optional<libdw> load_libdw() {
  void* const library = dlopen("libdw.so.1", RTLD_NOW | RTLD_LOCAL);
  libdw found{};
  // Debugging information in a file of its own is looked for on this machine only, and by the build ID.
  const bool is_all =
      library != nullptr && look_up(library, "dwfl_begin", found.begin) && look_up(library, "dwfl_end", found.end) &&
      look_up(library, "dwfl_report_elf", found.report_elf) && look_up(library, "dwfl_report_end", found.report_end) &&
      look_up(library, "dwfl_getsrc", found.getsrc) && look_up(library, "dwfl_lineinfo", found.lineinfo) &&
      look_up(library, "dwfl_build_id_find_debuginfo", found.callbacks.find_debuginfo) &&
      look_up(library, "dwfl_offline_section_address", found.callbacks.section_address);
  return is_all ? std::optional(found) : std::nullopt;
}

const libdw* the_libdw() {
  static const std::optional<libdw> library = load_libdw();
  return library ? &*library : nullptr;
}

}  // namespace

bool source_lines::are_available() { return the_libdw() != nullptr; }

source_lines::source_lines(const std::filesystem::path& path) {
  const libdw* const dw = the_libdw();
  if (dw == nullptr) return;
  session_ = dw->begin(&dw->callbacks);
  if (session_ == nullptr) return;
  dw->report_elf(session_, path.c_str(), path.c_str(), -1, 0, true);
  dw->report_end(session_, nullptr, nullptr);
}

source_lines::~source_lines() {
  if (session_ != nullptr) the_libdw()->end(session_);
}

std::string source_lines::at(std::uint64_t address) const {
  if (session_ == nullptr) return {};
  Dwfl_Line* const line = the_libdw()->getsrc(session_, address);
  int number = 0;
  const char* const file =
      line != nullptr ? the_libdw()->lineinfo(line, nullptr, &number, nullptr, nullptr, nullptr) : nullptr;
  return file != nullptr && number > 0 ? file + (":" + std::to_string(number)) : std::string();
}

#else

bool source_lines::are_available() { return false; }
source_lines::source_lines(const std::filesystem::path&) {}
source_lines::~source_lines() = default;
std::string source_lines::at(std::uint64_t) const { return {}; }

#endif

}  // namespace quern
