// quern run --host dynamorio: the framework's launcher starts the program with quern's client. On another processor
// than AArch64 the launcher could not start a program for AArch64, so that the framework's core library, which is a
// program too, takes its place in a processor emulator without SVE.
#include <fmt/core.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tools/framework_package.h"
#include "tools/host_libraries.h"
#include "tools/host_setup.h"
#include "tools/hosts.h"
#include "tools/run_report.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

fs::path find_client(const run_options& options, const framework_package& package) {
  const std::string remedy =
      fmt::format("build quern_client and quern_utils with -DDynamoRIO_DIR={}/cmake", package.folder().string());
  fs::path client = find_host(options, framework_host_stem, remedy).host;
  package.check_client(client);
  if (client.string().find_first_of("'\"`;") != std::string::npos)  // which part the framework's options
    throw user_error{fmt::format("the client can't be loaded from {}: its path has a quote or semicolon in it; move it",
                                 client.string()),
                     status_cannot_run};
  return client;
}

// A library root whose /proc/self/task is empty. A framework that does not know emulators would wait for ever for the
// emulator's own thread, which it finds there, to come under its control.
class root_without_threads {
 public:
  explicit root_without_threads(const std::string& root) {
    std::string pattern = (fs::temp_directory_path() / "quern.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw user_error{fmt::format("can't make a folder {}: {}", pattern, std::strerror(errno)), status_cannot_run};
    folder_ = pattern;
    fs::create_directories(folder_ / "proc/self/task");
    if (root.empty()) return;
    for (const fs::directory_entry& entry : fs::directory_iterator(root))
      if (entry.path().filename() != "proc") fs::create_symlink(entry.path(), folder_ / entry.path().filename());
  }
  ~root_without_threads() {
    std::error_code error;
    fs::remove_all(folder_, error);
  }
  root_without_threads(const root_without_threads&) = delete;
  root_without_threads& operator=(const root_without_threads&) = delete;
  const fs::path& folder() const { return folder_; }

 private:
  fs::path folder_;
};

int run_with_launcher(const run_options& options, const program_call& program, const framework_package& package,
                      const fs::path& client) {
  const fs::path launcher = package.launcher();
  std::vector<std::string> arguments{launcher.string(), "-c", client.string(), "--", program.file.string()};
  arguments.insert(arguments.end(), program.arguments.begin() + 1, program.arguments.end());
  return run_reported({launcher, arguments, program.arguments.front()}, options, program.file);
}

int run_in_emulator(const run_options& options, const program_call& program, const framework_package& package,
                    const fs::path& client) {
  const fs::path emulator = find_emulator();
  const std::string& name = program.arguments.front();
  std::string root = library_root();
  if (!root.empty() && !fs::is_directory(root))
    throw user_error{fmt::format("there is no folder {}: set QEMU_LD_PREFIX to one of AArch64's libraries", root),
                     status_cannot_run};
  std::string framework_options = fmt::format("-code_api -client_lib '{};0;'", client.string());
  std::optional<root_without_threads> own_root;
  if (package.knows_emulators())
    framework_options += fmt::format(" -xarch_root '{}'", root.empty() ? "/" : root);
  else
    root = own_root.emplace(root).folder().string();
  std::vector<std::string> arguments{emulator.string(), "-cpu", "max,sve=off,sme=off"};
  if (!root.empty()) arguments.insert(arguments.end(), {"-L", root});
  arguments.insert(arguments.end(), {"-0", name, package.core_library().string()});
  arguments.insert(arguments.end(), program.arguments.begin() + 1, program.arguments.end());
  setenv("DYNAMORIO_EXE_PATH", absolute_path(program.file).c_str(), 1);
  setenv("DYNAMORIO_OPTIONS", framework_options.c_str(), 1);
  return run_reported({emulator, arguments, name}, options, program.file);
}

}  // namespace

int run_under_framework(const run_options& options, const program_call& program) {
  if (options.framework.empty())
    throw user_error{
        "--host dynamorio needs DynamoRIO: unpack its package for AArch64, and name the folder by --dynamorio or "
        "QUERN_DYNAMORIO",
        status_cannot_run};
  const framework_package package(options.framework);
  const fs::path client = find_client(options, package);
  return needs_emulator ? run_in_emulator(options, program, package, client)
                        : run_with_launcher(options, program, package, client);
}

}  // namespace quern
