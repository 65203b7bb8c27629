// Following the entries NEEDED of dynamic sections.
#include "tools/needed_libraries.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <string_view>

#include "tools/elf_image.h"
#include "tools/host_setup.h"
#include "tools/program_file.h"

namespace quern {
namespace {

namespace fs = std::filesystem;
using folder_list = std::vector<std::string>;

constexpr const char* usual_folders[] = {
    "/lib/aarch64-linux-gnu", "/usr/lib/aarch64-linux-gnu", "/lib64", "/usr/lib64", "/lib", "/usr/lib",
    "/usr/local/lib"};

// What a file's dynamic section tells of libraries.
struct dynamic_section {
  std::vector<std::string> needed;
  std::string rpath, runpath;

  explicit dynamic_section(const elf_image& image) {
    std::vector<Elf64_Dyn> entries;
    for (const Elf64_Phdr& segment : image.segments())
      for (std::uint64_t at = 0; segment.p_type == PT_DYNAMIC && at < segment.p_filesz; at += sizeof(Elf64_Dyn)) {
        const auto entry = image.at<Elf64_Dyn>(segment.p_offset + at);
        if (!entry || entry->d_tag == DT_NULL) break;
        entries.push_back(*entry);
      }
    const auto table = std::ranges::find(entries, DT_STRTAB, &Elf64_Dyn::d_tag);
    if (table == entries.end()) return;
    const std::string_view names = from_address(image, table->d_un.d_ptr);
    for (const Elf64_Dyn& entry : entries) {
      const auto text = [&] {
        const std::string_view rest = names.substr(std::min(entry.d_un.d_val, names.size()));
        return std::string(rest.substr(0, rest.find('\0')));
      };
      if (entry.d_tag == DT_NEEDED) needed.push_back(text());
      if (entry.d_tag == DT_RPATH) rpath = text();
      if (entry.d_tag == DT_RUNPATH) runpath = text();
    }
  }

 private:
  // The bytes of the file from what is loaded to that address on.
  static std::string_view from_address(const elf_image& image, std::uint64_t address) {
    for (const Elf64_Phdr& segment : image.segments())
      if (segment.p_type == PT_LOAD && address - segment.p_vaddr < segment.p_filesz)
        return image.bytes(segment.p_offset + (address - segment.p_vaddr), ~std::uint64_t{0});
    return {};
  }
};

// The folders of a list like that of PATH, with $ORIGIN as the folder of the file that has it.
folder_list folders_of(const std::string& list, const fs::path& file) {
  folder_list folders;
  for (std::size_t from = 0; from < list.size();) {
    const std::size_t to = std::min(list.find(':', from), list.size());
    std::string folder = list.substr(from, to - from);
    for (const std::string_view origin : {"${ORIGIN}", "$ORIGIN"})
      for (std::size_t at = 0; (at = folder.find(origin, at)) != std::string::npos;)
        folder.replace(at, origin.size(), absolute_path(file).parent_path().string());
    folders.push_back(std::move(folder));
    from = to + 1;
  }
  return folders;
}

// A file that is to be looked through, and the folders of RPATH of the files that led to it.
struct waiting_file {
  fs::path file;
  folder_list rpath;
};

class library_search {
 public:
  explicit library_search(fs::path root) : root_(std::move(root)) {}

  std::vector<needed_library> all_of(const fs::path& program) {
    std::vector<waiting_file> waiting{{program, {}}};
    for (std::size_t i = 0; i != waiting.size(); ++i) look_through(waiting_file(waiting[i]), waiting);
    return std::move(found_);
  }

 private:
  void look_through(const waiting_file& by, std::vector<waiting_file>& waiting) {
    const dynamic_section dynamic{elf_image(by.file)};
    folder_list rpath = folders_of(dynamic.rpath, by.file);
    rpath.insert(rpath.end(), by.rpath.begin(), by.rpath.end());
    for (const std::string& name : dynamic.needed) {
      if (!names_.insert(name).second) continue;
      const std::optional<fs::path> file = find(name, by.file, dynamic.runpath, rpath);
      found_.push_back({name, by.file, file.value_or("")});
      if (file) waiting.push_back({*file, rpath});
    }
  }
  std::optional<fs::path> find(const std::string& name, const fs::path& by, const std::string& runpath,
                               const folder_list& rpath) const {
    if (name.find('/') != std::string::npos) return below_root(name);
    const char* const variable = std::getenv("LD_LIBRARY_PATH");
    for (const folder_list& folders :
         {runpath.empty() ? rpath : folder_list{}, folders_of(variable != nullptr ? variable : "", by),
          folders_of(runpath, by), folder_list(std::begin(usual_folders), std::end(usual_folders))})
      for (const std::string& folder : folders)
        if (auto file = below_root(fs::path(folder) / name)) return file;
    return std::nullopt;
  }
  std::optional<fs::path> below_root(const fs::path& path) const {
    std::error_code error;
    for (const fs::path& file : {root_ / path.relative_path(), path})
      if ((!root_.empty() || file == path) && fs::is_regular_file(file, error) && is_aarch64_library(file)) return file;
    return std::nullopt;
  }

  fs::path root_;
  std::set<std::string> names_;
  std::vector<needed_library> found_;
};

}  // namespace

std::vector<needed_library> needed_libraries(const fs::path& program, const fs::path& root) {
  return library_search(root).all_of(program);
}

}  // namespace quern
