// quern check: what there is in a program's code that quern can't emulate, told without running it.
#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "sve/decoder/sve_utils.h"
#include "sve/decoder/vector_space.h"
#include "tools/commands.h"
#include "tools/foreign_instructions.h"
#include "tools/host_setup.h"
#include "tools/needed_libraries.h"
#include "tools/program_code.h"
#include "tools/program_file.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

struct check_options {
  std::vector<std::string> programs;
  std::string format = "text";
  std::optional<std::string> root;  // of the folders in which libraries are looked for, if it is not the usual one
  bool all = false, no_libraries = false;
};

// By extension and mnemonic, the places of the words that can't be emulated.
using foreign_places = std::map<std::pair<std::string, std::string>, std::vector<std::string>>;

struct code_report {
  std::string file, needed_by;  // the latter of a library that was not named
  linkage linked{};
  std::size_t emulated = 0, starts = 0, stops = 0;
  foreign_places foreign{};

  std::size_t foreign_count() const {
    std::size_t count = 0;
    for (const auto& [name, places] : foreign) count += places.size();
    return count;
  }
};

// The marks of a region of interest, for any register.
constexpr std::uint32_t mark_mask = 0xFFFFFFE0, start_mark = 0x2520E020, stop_mark = 0x2520E040;

code_report read_code(const fs::path& file, const std::string& needed_by) {
  const linkage linked = check_program(file);  // some libraries can be run, too
  code_report report{file.string(), needed_by, needed_by.empty() ? linked : linkage::library};
  const elf_image image(file);
  const program_code code(image);
  code.for_each_word([&](std::uint64_t address, std::uint32_t word) {
    if (!is_vector_word(word)) return;
    if (get_sve_handler(word) != nullptr) {
      ++report.emulated;
      report.starts += (word & mark_mask) == start_mark;
      report.stops += (word & mark_mask) == stop_mark;
      return;
    }
    const foreign_instruction* const form = find_foreign(word);
    auto name = form != nullptr ? std::pair<std::string, std::string>{form->extension, form->mnemonic}
                                : std::pair<std::string, std::string>{"unknown", fmt::format("{:08x}", word)};
    report.foreign[std::move(name)].push_back(code.place(address));
  });
  return report;
}

const char* linked_text(linkage linked) {
  switch (linked) {
    case linkage::dynamically: return "dynamically";
    case linkage::statically: return "statically";
    case linkage::library: break;
  }
  return "a library";
}

const char* host_text(linkage linked) {
  switch (linked) {
    case linkage::dynamically: return "embedded";
    case linkage::statically: return "dynamorio";
    case linkage::library: break;
  }
  return "that of the program that loads it";
}

void print_foreign(const code_report& report, bool all) {
  constexpr std::size_t most_shown = 3;
  for (const auto& [name, places] : report.foreign) {
    fmt::print("  {:<12} {:<9} {:>5}\n", name.first, name.second, places.size());
    const std::size_t shown = all ? places.size() : std::min(places.size(), most_shown);
    for (std::size_t i = 0; i != shown; ++i) fmt::print("      {}\n", places[i]);
    if (shown != places.size()) fmt::print("      and {} more (--all lists them)\n", places.size() - shown);
  }
}

void print_text(const code_report& report, bool all) {
  const bool is_named = report.needed_by.empty();
  if (is_named) {
    fmt::print("{}\n", report.file);
    fmt::print("  linked    {}\n", linked_text(report.linked));
    fmt::print("  host      {}\n", host_text(report.linked));
  } else {
    fmt::print("{}, which {} needs\n", report.file, report.needed_by);
  }
  if (is_named || report.starts + report.stops != 0)
    fmt::print("  markers   {} start, {} stop\n", report.starts, report.stops);
  fmt::print("  SVE       {} instructions that quern emulates, {} that it can't\n", report.emulated,
             report.foreign_count());
  print_foreign(report, all);
}

void print_line(const nlohmann::ordered_json& line) {
  fmt::print("{}\n", line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

void print_json(const code_report& report) {
  nlohmann::ordered_json foreign = nlohmann::ordered_json::array();
  for (const auto& [name, places] : report.foreign)
    foreign.push_back({{"extension", name.first}, {"mnemonic", name.second}, {"places", places}});
  nlohmann::ordered_json line = {
      {"file", report.file},
      {"linked", linked_text(report.linked)},
      {"host", host_text(report.linked)},
      {"starts", report.starts},
      {"stops", report.stops},
      {"emulated", report.emulated},
      {"not_emulated", report.foreign_count()},
      {"instructions", foreign},
  };
  if (!report.needed_by.empty()) line["needed_by"] = report.needed_by;
  print_line(line);
}

// Goes through programs and the libraries that they need, each file once.
class checker {
 public:
  explicit checker(const check_options& options)
      : options_(options), root_(options.root.value_or(needs_emulator ? library_root() : "")) {
    if (options.root && !fs::is_directory(root_))
      throw user_error{fmt::format("--sysroot: there is no folder {}", *options.root), status_usage};
  }

  // Whether quern emulates all that there is, and all is there.
  bool check(const std::string& name) {
    std::error_code error;
    const fs::path program = fs::is_regular_file(name, error) ? fs::path(name) : find_program(name);
    bool is_all = check_file(program, "");
    if (options_.no_libraries) return is_all;
    for (const needed_library& library : needed_libraries(program, root_)) {
      const std::string by = library.needed_by.filename();
      is_all &= library.file.empty() ? print_missing(library.name, by) : check_file(library.file, by);
    }
    return is_all;
  }

 private:
  bool check_file(const fs::path& file, const std::string& needed_by) {
    std::error_code error;
    const fs::path real = fs::canonical(file, error);  // a file that was removed and is still open has none
    if (!seen_.insert(error ? file : real).second) return true;
    const code_report report = read_code(file, needed_by);
    if (options_.format == "jsonl")
      print_json(report);
    else
      print_text(report, options_.all);
    return report.foreign.empty();
  }
  bool print_missing(const std::string& name, const std::string& needed_by) const {
    if (options_.format == "jsonl")
      print_line({{"file", name}, {"needed_by", needed_by}, {"missing", true}});
    else
      fmt::print("{}, which {} needs, is not found (see --sysroot)\n", name, needed_by);
    return false;
  }

  const check_options& options_;
  fs::path root_;
  std::set<fs::path> seen_;
};

}  // namespace

void add_check_command(CLI::App& app, int& status) {
  CLI::App* const command = app.add_subcommand("check", "Tell what in a program's code quern can't emulate");
  command->footer(
      "The libraries that a program is linked with are read, too; those that it opens while it runs are not: name "
      "them.\n"
      "The exit status is 1 if there is an instruction on vectors that quern can't emulate, or a library is missing.");
  const auto options = std::make_shared<check_options>();
  command->add_option("PROGRAM", options->programs, "Programs and shared libraries")->required();
  command->add_flag("--all", options->all, "List all places of an instruction, not the first few");
  command->add_option("--format", options->format, "text, or jsonl: a line a file, with all places (text)")
      ->check(CLI::IsMember({"text", "jsonl"}))
      ->type_name("FORMAT");
  command->add_flag("--no-libraries", options->no_libraries, "Read the files alone that are named");
  command
      ->add_option("--sysroot", options->root,
                   "The folder below which libraries are looked for first (/usr/aarch64-linux-gnu, or what "
                   "QEMU_LD_PREFIX names; on AArch64 none)")
      ->type_name("FOLDER");
  command->callback([options, &status] {
    checker all(*options);
    for (const std::string& program : options->programs)
      if (!all.check(program)) status = 1;
  });
}

}  // namespace quern
