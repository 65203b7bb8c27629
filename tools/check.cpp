// quern check: what there is in a program's code that quern can't emulate, told without running it.
#include <fmt/core.h>

#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "sve/decoder/sve_utils.h"
#include "sve/decoder/vector_space.h"
#include "tools/commands.h"
#include "tools/foreign_instructions.h"
#include "tools/program_code.h"
#include "tools/program_file.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

struct check_options {
  std::vector<std::string> programs;
  std::string format = "text";
  bool all = false;
};

// By extension and mnemonic, the places of the words that can't be emulated.
using foreign_places = std::map<std::pair<std::string, std::string>, std::vector<std::string>>;

struct code_report {
  std::string file;
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

code_report read_code(const fs::path& file) {
  code_report report{file.string(), check_program(file)};
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
  fmt::print("{}\n", report.file);
  fmt::print("  linked    {}\n", linked_text(report.linked));
  fmt::print("  host      {}\n", host_text(report.linked));
  fmt::print("  markers   {} start, {} stop\n", report.starts, report.stops);
  fmt::print("  SVE       {} instructions that quern emulates, {} that it can't\n", report.emulated,
             report.foreign_count());
  print_foreign(report, all);
}

void print_json(const code_report& report) {
  nlohmann::ordered_json foreign = nlohmann::ordered_json::array();
  for (const auto& [name, places] : report.foreign)
    foreign.push_back({{"extension", name.first}, {"mnemonic", name.second}, {"places", places}});
  const nlohmann::ordered_json line = {
      {"file", report.file},
      {"linked", linked_text(report.linked)},
      {"host", host_text(report.linked)},
      {"starts", report.starts},
      {"stops", report.stops},
      {"emulated", report.emulated},
      {"not_emulated", report.foreign_count()},
      {"instructions", foreign},
  };
  fmt::print("{}\n", line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

// Whether quern emulates all that there is.
bool check(const std::string& name, const check_options& options) {
  std::error_code error;
  const code_report report = read_code(fs::is_regular_file(name, error) ? fs::path(name) : find_program(name));
  if (options.format == "jsonl")
    print_json(report);
  else
    print_text(report, options.all);
  return report.foreign.empty();
}

}  // namespace

void add_check_command(CLI::App& app, int& status) {
  CLI::App* const command = app.add_subcommand("check", "Tell what in a program's code quern can't emulate");
  command->footer(
      "Only the files that are named are read, not the libraries that they load: name these too (ldd lists them).\n"
      "The exit status is 1 if there is an instruction on vectors that quern can't emulate.");
  const auto options = std::make_shared<check_options>();
  command->add_option("PROGRAM", options->programs, "Programs and shared libraries")->required();
  command->add_flag("--all", options->all, "List all places of an instruction, not the first few");
  command->add_option("--format", options->format, "text, or jsonl: a line a program, with all places (text)")
      ->check(CLI::IsMember({"text", "jsonl"}))
      ->type_name("FORMAT");
  command->callback([options, &status] {
    for (const std::string& program : options->programs)
      if (!check(program, *options)) status = 1;
  });
}

}  // namespace quern
