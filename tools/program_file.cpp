// Finding programs, and reading what their ELF headers say.
#include "tools/program_file.h"

#include <elf.h>
#include <fmt/core.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

enum class found { nothing, not_executable, program };

found look_at(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return found::nothing;
  return fs::is_regular_file(status) && access(path.c_str(), X_OK) == 0 ? found::program : found::not_executable;
}

// The first program of that name in PATH, else the first file that is none.
std::pair<found, fs::path> search_path(const std::string& name) {
  const char* const folders = std::getenv("PATH");
  std::istringstream list(folders != nullptr ? folders : "/usr/local/bin:/usr/bin:/bin");
  std::pair<found, fs::path> best{found::nothing, name};
  for (std::string folder; std::getline(list, folder, ':');) {
    const fs::path path = fs::path(folder.empty() ? "." : folder) / name;
    const found kind = look_at(path);
    if (kind == found::program) return {kind, path};
    std::error_code error;
    if (kind == found::not_executable && best.first == found::nothing && !fs::is_directory(path, error))
      best = {kind, path};
  }
  return best;
}

std::string machine_name(std::uint16_t machine) {
  switch (machine) {
    case EM_X86_64: return "x86-64";
    case EM_386: return "32-bit x86";
    case EM_ARM: return "32-bit ARM";
    case EM_RISCV: return "RISC-V";
    case EM_PPC64: return "POWER";
    case EM_S390: return "IBM Z";
    default: return fmt::format("another processor (ELF machine {})", machine);
  }
}

// What is needed of an ELF file.
struct elf_file {
  Elf64_Ehdr header{};
  bool is_elf = false, is_script = false, has_interpreter = false;
  bool is_cut = false;  // it ends before what its headers tell of

  explicit elf_file(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(&header), sizeof header);
    is_script = std::memcmp(header.e_ident, "#!", 2) == 0;
    is_elf = file && std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0;
    if (!is_aarch64() || header.e_phentsize != sizeof(Elf64_Phdr)) return;
    std::error_code error;
    const std::uint64_t size = fs::file_size(path, error);
    file.seekg(static_cast<std::streamoff>(header.e_phoff));
    Elf64_Phdr segment{};
    for (int i = 0; i != header.e_phnum && file.read(reinterpret_cast<char*>(&segment), sizeof segment); ++i) {
      has_interpreter |= segment.p_type == PT_INTERP;
      is_cut |= segment.p_type == PT_LOAD && segment.p_offset + segment.p_filesz > size;
    }
    is_cut |= !file;
  }
  bool is_aarch64() const {
    return is_elf && header.e_ident[EI_CLASS] == ELFCLASS64 && header.e_ident[EI_DATA] == ELFDATA2LSB &&
           header.e_machine == EM_AARCH64;
  }
};

// Why the emulator can't run it, or empty.
std::string objection(const elf_file& file) {
  if (file.is_script) return "is a script: give its interpreter as the program, and the script as its argument";
  if (!file.is_elf) return "is not a program (no ELF file)";
  if (file.header.e_ident[EI_DATA] != ELFDATA2LSB) return "is a big-endian program, and not for AArch64 Linux";
  if (file.header.e_machine != EM_AARCH64)
    return fmt::format("is built for {}, not for AArch64: build it with an AArch64 compiler",
                       machine_name(file.header.e_machine));
  if (!file.is_aarch64()) return "is a 32-bit program: build it for 64-bit AArch64";
  if (file.is_cut) return "is cut short: it ends before what its headers tell of; copy or link it again";
  if (file.header.e_type != ET_EXEC && file.header.e_type != ET_DYN) return "is not a program, but an object file";
  return {};
}

}  // namespace

std::optional<fs::path> find_in_path(const std::string& name) {
  auto [kind, path] = search_path(name);
  if (kind != found::program) return std::nullopt;
  return path;
}

fs::path find_program(const std::string& name) {
  const bool is_path = name.find('/') != std::string::npos;
  const auto [kind, path] = is_path ? std::pair{look_at(name), fs::path(name)} : search_path(name);
  if (kind == found::program) return path;
  if (kind == found::nothing)
    throw user_error{is_path
                         ? fmt::format("there is no program {}", name)
                         : fmt::format("there is no program '{}' in PATH (for one in this folder, ./{})", name, name),
                     status_not_found};
  std::error_code error;
  const char* const why = fs::is_directory(path, error)       ? "is a folder, not a program"
                          : !fs::is_regular_file(path, error) ? "is no file that can be a program"
                                                              : "may not be executed (see chmod +x)";
  throw user_error{fmt::format("{} {}", path.string(), why), status_not_executable};
}

linkage check_program(const fs::path& program) {
  if (access(program.c_str(), R_OK) != 0)
    throw user_error{fmt::format("{} can't be read: {}", program.string(), std::strerror(errno)),
                     status_not_executable};
  const elf_file file(program);
  const std::string why = objection(file);
  if (!why.empty()) throw user_error{fmt::format("{} {}", program.string(), why), status_not_executable};
  if (file.has_interpreter) return linkage::dynamically;
  // A program that is linked statically and can be loaded anywhere is a shared object but for its entry.
  return file.header.e_type == ET_DYN && file.header.e_entry == 0 ? linkage::library : linkage::statically;
}

bool is_aarch64_library(const fs::path& file) { return elf_file(file).is_aarch64(); }

}  // namespace quern
