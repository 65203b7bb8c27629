// A package of DynamoRIO as it lies in its folder.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace quern {

class framework_package {
 public:
  // Throws user_error unless the folder holds a package for AArch64.
  explicit framework_package(const std::string& folder);

  const std::filesystem::path& folder() const { return folder_; }
  std::filesystem::path core_library() const { return folder_ / "lib64/release/libdynamorio.so"; }

  // The command that starts a program under the framework. Throws user_error if there is none.
  std::filesystem::path launcher() const;

  // Whether it has the option -xarch_root, with which it knows that it runs in a processor emulator (from 9.0 on).
  bool knows_emulators() const;

  // Throws user_error unless the client is one for this package. The framework itself would go on without the client.
  void check_client(const std::filesystem::path& client) const;

 private:
  std::filesystem::path folder_;

  // Major number times 100, plus minor number, as clients carry it; none if the package does not tell.
  std::optional<int> release() const;
};

}  // namespace quern
