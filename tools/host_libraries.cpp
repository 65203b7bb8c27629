// Finding the libraries of a host, and telling what there is where they are not to be had.
#include "tools/host_libraries.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <cstdlib>

#include "sve/state/vector_length.h"
#include "tools/host_setup.h"
#include "tools/program_file.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

constexpr const char* utils_library = "libquern_utils.so";
constexpr int vector_lengths[] = {128, 256, 512, 1024, 2048};

// The value of a variable that is there and not empty.
std::string from_environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Beside quern's own folder where it is installed, or the build of the other platform in a build tree.
std::vector<fs::path> usual_folders() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error).parent_path();
  std::vector<fs::path> folders;
  for (const char* place : {"../lib/quern", "../lib", "../../aarch64/lib"})
    folders.push_back((self / place).lexically_normal());
  return folders;
}

std::vector<fs::path> library_folders(const std::string& chosen) {
  if (!chosen.empty()) return {chosen};
  if (const std::string folder = from_environment("QUERN_LIB_DIR"); !folder.empty()) return {folder};
  return usual_folders();
}

std::string library_name(std::string_view stem, int bits) { return fmt::format("{}{}.so", stem, bits); }

bool has_host(const fs::path& folder, std::string_view stem, int bits) {
  return is_aarch64_library(folder / library_name(stem, bits)) && is_aarch64_library(folder / utils_library);
}

std::vector<int> lengths_of(const std::vector<fs::path>& folders, std::string_view stem) {
  std::vector<int> lengths;
  for (const int bits : vector_lengths)
    if (std::any_of(folders.begin(), folders.end(), [&](const auto& folder) { return has_host(folder, stem, bits); }))
      lengths.push_back(bits);
  return lengths;
}

int wanted_length(const run_options& options, const std::vector<int>& existing) {
  const bool is_option = !options.vector_length.empty();
  const std::string text = is_option ? options.vector_length : from_environment("QUERN_VL");
  if (text.empty()) return VL_BITS;
  for (const int bits : vector_lengths)
    if (text == std::to_string(bits)) return bits;
  const std::string choice = existing.empty() ? fmt::format("{}", fmt::join(vector_lengths, ", "))
                                              : fmt::format("{}", fmt::join(existing, ", "));
  throw user_error{fmt::format("{} is '{}', which is no vector length: give one of {}", is_option ? "--vl" : "QUERN_VL",
                               text, choice),
                   status_usage};
}

[[noreturn]] void refuse(int wanted, const std::vector<fs::path>& folders, std::string_view stem,
                         const std::vector<int>& existing, const std::string& remedy) {
  std::string tried;
  for (const fs::path& folder : folders) tried += (tried.empty() ? "" : " nor ") + folder.string();
  std::string message;
  if (existing.empty()) {
    message = fmt::format(
        "there are no {} and {} for AArch64 in {} ({}, or name their folder by --lib-dir or "
        "QUERN_LIB_DIR)",
        library_name(stem, wanted), utils_library, tried, remedy);
  } else {
    std::vector<int> all = existing;
    all.insert(std::lower_bound(all.begin(), all.end(), wanted), wanted);
    message = fmt::format(
        "there is no {} for AArch64 in {}, but there are those of {} bits: give one of these by --vl "
        "or QUERN_VL, or build that one too (cmake -DQUERN_VECTOR_LENGTHS=\"{}\")",
        library_name(stem, wanted), tried, fmt::join(existing, ", "), fmt::join(all, ";"));
  }
  throw user_error{message, status_cannot_run};
}

}  // namespace

host_libraries find_host(const run_options& options, std::string_view stem, const std::string& remedy) {
  const std::vector<fs::path> folders = library_folders(options.lib_dir);
  const std::vector<int> existing = lengths_of(folders, stem);
  const int wanted = wanted_length(options, existing);
  for (const fs::path& folder : folders)
    if (has_host(folder, stem, wanted))
      return {absolute_path(folder) / library_name(stem, wanted), absolute_path(folder) / utils_library};
  refuse(wanted, folders, stem, existing, remedy);
}

std::vector<int> emulated_lengths() {
  const std::vector<fs::path> folders = library_folders("");
  std::vector<int> lengths = lengths_of(folders, embedded_host_stem), others = lengths_of(folders, framework_host_stem),
                   all;
  std::set_union(lengths.begin(), lengths.end(), others.begin(), others.end(), std::back_inserter(all));
  return all;
}

}  // namespace quern
