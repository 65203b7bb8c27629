// What a package of DynamoRIO tells of itself: its libraries, its release, its options.
#include "tools/framework_package.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "tools/host_setup.h"
#include "tools/program_file.h"
#include "tools/shared_object.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

std::string release_text(int release) { return fmt::format("{}.{}", release / 100, release % 100); }

[[noreturn]] void refuse(const std::string& message) { throw user_error{message, status_cannot_run}; }

}  // namespace

framework_package::framework_package(const std::string& folder) : folder_(absolute_path(folder)) {
  std::error_code error;
  if (!fs::is_directory(folder_, error))
    refuse(fmt::format("there is no folder {}: give the one into which DynamoRIO's package was unpacked", folder));
  if (!fs::exists(core_library(), error))
    refuse(
        fmt::format("{} is no package of DynamoRIO for AArch64, it has no lib64/release/libdynamorio.so: give the "
                    "folder that holds the package's bin64 and lib64",
                    folder));
  if (!is_aarch64_library(core_library()))
    refuse(fmt::format("{} is DynamoRIO for another processor: get its package for AArch64", folder));
}

fs::path framework_package::launcher() const {
  fs::path path = folder_ / "bin64/drrun";
  if (access(path.c_str(), X_OK) != 0)
    refuse(fmt::format("{} can't be executed: unpack DynamoRIO's package again", path.string()));
  return path;
}

bool framework_package::knows_emulators() const { return shared_object(core_library()).contains("xarch_root"); }

std::optional<int> framework_package::release() const {
  std::ifstream file(folder_ / "cmake/DynamoRIOConfigVersion.cmake");
  int major = 0, minor = 0;
  for (std::string line; std::getline(file, line);)
    if (std::sscanf(line.c_str(), "set(PACKAGE_VERSION %d.%d", &major, &minor) == 2) return major * 100 + minor;
  return std::nullopt;
}

void framework_package::check_client(const fs::path& client) const {
  const std::optional<int> built_with = shared_object(client).exported_int("_USES_DR_VERSION_"), own = release();
  if (!built_with)
    refuse(fmt::format("{} is no client of DynamoRIO: build it again (cmake -DDynamoRIO_DIR={}/cmake)", client.string(),
                       folder_.string()));
  if (own && *own != *built_with)
    refuse(fmt::format("{} was built with DynamoRIO {}, and {} is {}: build it again (cmake -DDynamoRIO_DIR={}/cmake)",
                       client.string(), release_text(*built_with), folder_.string(), release_text(*own),
                       folder_.string()));
}

}  // namespace quern
