// quern run: chooses the host, and runs a program under it.
#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <memory>

#include "tools/commands.h"
#include "tools/hosts.h"
#include "tools/program_file.h"

namespace quern {
namespace {

int run_program(const std::string& host, run_options options, const std::vector<std::string>& command) {
  if (host == "embedded" && !options.framework.empty())
    throw user_error{"--dynamorio is of no use to --host embedded: leave one of them out", status_usage};
  if (const char* const configured = std::getenv("QUERN_DYNAMORIO"); options.framework.empty() && configured != nullptr)
    options.framework = configured;
  const program_call program{find_program(command.front()), command};
  if (options.traps) setenv("QUERN_PATCH", "off", 1);
  if (options.hide_sve) setenv("QUERN_HIDE_SVE", "1", 1);
  const linkage linked = check_program(program.file);
  if (linked == linkage::library)
    throw user_error{fmt::format("{} is a shared library, not a program", program.file.string()),
                     status_not_executable};
  if (host == "dynamorio" || (host == "auto" && !options.framework.empty()))
    return run_under_framework(options, program);
  if (linked == linkage::statically)
    throw user_error{fmt::format("{} is statically linked, so that the emulator can't be preloaded into it: link it "
                                 "without -static, or run it under DynamoRIO (see --host in quern run --help)",
                                 program.file.string()),
                     status_not_executable};
  return run_embedded(options, program);
}

}  // namespace

void add_run_command(CLI::App& app, int& status) {
  CLI::App* const run = app.add_subcommand("run", "Run a program under emulation");
  const auto options = std::make_shared<run_options>();
  const auto host = std::make_shared<std::string>("auto");
  run->add_option("--trace", options->trace, "Where the memory trace goes, if the program makes one")
      ->type_name("FILE");
  run->add_option("--host", *host,
                  "What emulates: 'embedded', a library preloaded into the program; 'dynamorio', which runs statically "
                  "linked programs too; 'auto', the latter where DynamoRIO's folder is given")
      ->check(CLI::IsMember({"auto", "dynamorio", "embedded"}))
      ->type_name("HOST");
  run->add_option("--vl", options->vector_length,
                  "The vector length in bits, one that quern --version lists; else that of QUERN_VL, else the one that "
                  "quern --version has in brackets")
      ->type_name("BITS:{128,256,512,1024,2048}");
  run->add_option("--dynamorio", options->framework,
                  "The folder of DynamoRIO's AArch64 package (else QUERN_DYNAMORIO names it)")
      ->type_name("DIR");
  run->add_option("--lib-dir", options->lib_dir, "Where the emulator's libraries are (else QUERN_LIB_DIR names it)")
      ->type_name("DIR");
  run->add_flag(
      "--stats", options->stats,
      "At the end, tell how often which instructions were emulated, and where, on standard error or in a file "
      "(--stats=FILE), by mnemonic and by place; slower");
  run->add_flag("--strict", options->strict,
                "End the program at the first instruction that can't be emulated, with status 125, even if it handles "
                "SIGILL");
  run->add_flag("--dry-run", options->dry_run, "Print the command that would be run, and run nothing");
  run->add_flag(
      "--traps", options->traps,
      "Let each SVE instruction trap each time, and leave the program's code in memory as it is; slower, and of "
      "use to --host embedded only");
  run->add_flag(
      "--hide-sve", options->hide_sve,
      "Tell a program that asks that the processor has no SVE, so that libraries that choose their code at run "
      "time don't choose SVE; of use to --host embedded only, as DynamoRIO never tells of it");
  run->footer(
      "Usage: quern run [OPTIONS] -- PROGRAM [ARGUMENTS...]\n"
      "Traced is what runs between the program's marker instructions, which are a start and a stop for each thread: "
      "quern/roi.h has them as functions for C, C++ and Fortran.\n"
      "The exit status is the program's, or 128 plus the number of the signal that ended it.");
  run->prefix_command();  // all from the program on is the program's
  run->callback([run, host, options, &status] {
    const std::vector<std::string> command = run->remaining();
    if (command.empty()) throw user_error{"give a program to run (see quern run --help)", status_usage};
    if (command.front().starts_with('-'))
      throw user_error{fmt::format("run has no option {} (see quern run --help)", command.front()), status_usage};
    status = run_program(*host, *options, command);
  });
}

}  // namespace quern
