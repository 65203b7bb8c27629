// The whole command line of quern: what its main program parses, and its manual tells.
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <memory>

#include <quern_revision.h>
#include "sve/state/vector_length.h"
#include "tools/commands.h"
#include "tools/help_format.h"
#include "tools/host_libraries.h"
#include "tools/source_lines.h"

namespace quern {
namespace {

std::string version() {
  const std::vector<int> lengths = emulated_lengths();
  return fmt::format(
      "quern {} ({}-bit vectors)\nbuild     {}\nrevision  {}\nlines     {}\nlengths   {}", QUERN_VERSION, VL_BITS,
      QUERN_BUILD, QUERN_REVISION,
      source_lines::are_available() ? "of source, by libdw" : "none: libdw is not there, or was not at the build",
      lengths.empty() ? "none: the emulator's libraries are not there" : fmt::format("{}", fmt::join(lengths, ", ")));
}

}  // namespace

void add_commands(CLI::App& app, int& status) {
  app.formatter(std::make_shared<help_format>());  // its commands take it from here
  app.name("quern");
  app.description("Runs AArch64 programs that use SVE on processors without it, and traces their memory.");
  app.set_version_flag("--version", version);
  app.require_subcommand(0, 1);  // a program that `run` is given may bear the name of another command
  add_run_command(app, status);
  add_check_command(app, status);
  add_trace_command(app, status);
  add_decode_command(app, status);
  add_list_command(app, status);
}

}  // namespace quern
