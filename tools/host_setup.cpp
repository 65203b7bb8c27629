// Libraries and processor emulator of a program that is about to run.
#include "tools/host_setup.h"

#include <fmt/core.h>

#include <cstdlib>
#include <vector>

#include "tools/program_file.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

// Beside quern's own folder where it is installed, or the build of the other platform in a build tree.
std::vector<fs::path> usual_folders() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error).parent_path();
  std::vector<fs::path> folders;
  for (const char* place : {"../lib/quern", "../lib", "../../aarch64/lib"})
    folders.push_back((self / place).lexically_normal());
  return folders;
}

}  // namespace

fs::path absolute_path(const fs::path& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  if (error)
    throw user_error{fmt::format("the current folder can't be told ({}): go to one that exists", error.message()),
                     status_cannot_run};
  return absolute.lexically_normal();
}

fs::path library_folder(const std::string& chosen, const std::string& host_library, const std::string& remedy) {
  const char* const from_environment = std::getenv("QUERN_LIB_DIR");
  std::vector<fs::path> folders = usual_folders();
  if (!chosen.empty())
    folders = {chosen};
  else if (from_environment != nullptr && *from_environment != 0)
    folders = {from_environment};
  std::string tried;
  for (const fs::path& folder : folders) {
    if (is_aarch64_library(folder / host_library) && is_aarch64_library(folder / "libquern_utils.so"))
      return absolute_path(folder);
    tried += (tried.empty() ? "" : " nor ") + folder.string();
  }
  throw user_error{fmt::format("there are no {} and libquern_utils.so for AArch64 in {} ({}, or name their folder "
                               "by --lib-dir or QUERN_LIB_DIR)",
                               host_library, tried, remedy),
                   status_cannot_run};
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
