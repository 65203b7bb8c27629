// Libraries, processor emulator and trace file of a program that is about to run.
#include "tools/host_setup.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

#include "tools/program_file.h"
#include "tools/user_error.h"
#include "utils/trace_format.h"

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

// An earlier trace of that name makes room; another file does not.
void clear_the_way(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return;
  if (!fs::is_regular_file(status))
    throw user_error{fmt::format("the trace can't be written to {}: it is not a regular file", path),
                     status_cannot_run};
  std::uint64_t magic = 0;
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(&magic), sizeof magic);
  if (magic != trace_magic && fs::file_size(path, error) != 0)
    throw user_error{fmt::format("{} exists and is no trace: remove it or choose another name", path),
                     status_cannot_run};
  fs::remove(path, error);
}

}  // namespace

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
      return fs::absolute(folder).lexically_normal();
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
    return *chosen == 0 ? "" : fs::absolute(chosen).string();
  return fs::exists(usual) ? usual : "";
}

void set_trace_path(const std::string& given) {
  if (given.empty()) return;
  const std::string path = fs::absolute(given).lexically_normal().string();
  clear_the_way(path);
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0)
    throw user_error{fmt::format("the trace can't be written to {}: {}", path, std::strerror(errno)),
                     status_cannot_run};
  close(file);
  unlink(path.c_str());
  setenv("QUERN_TRACE", path.c_str(), 1);
}

}  // namespace quern
