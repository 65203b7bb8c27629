// Paths and the processor emulator of a program that is about to run.
#include "tools/host_setup.h"

#include <fmt/core.h>

#include <cstdlib>

#include "tools/program_file.h"
#include "tools/user_error.h"

namespace quern {

namespace fs = std::filesystem;

fs::path absolute_path(const fs::path& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  if (error)
    throw user_error{fmt::format("the current folder can't be told ({}): go to one that exists", error.message()),
                     status_cannot_run};
  return absolute.lexically_normal();
}

fs::path find_emulator() {
  for (const char* name : {"qemu-aarch64", "qemu-aarch64-static"})
    if (const auto path = find_in_path(name)) return *path;
  throw user_error{
      "qemu-aarch64 is not in PATH: install it (Debian package qemu-user), since this is no AArch64 machine",
      status_cannot_run};
}

std::string library_root() {
  constexpr const char* usual = "/usr/aarch64-linux-gnu";
  if (const char* const chosen = std::getenv("QEMU_LD_PREFIX"))
    return *chosen == 0 ? "" : absolute_path(chosen).string();
  return fs::exists(usual) ? usual : "";
}

}  // namespace quern
