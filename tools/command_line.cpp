// The whole command line of quern: what its main program parses, and its manual tells.
#include <fmt/core.h>

#include <quern_revision.h>
#include "sve/state/vector_length.h"
#include "tools/commands.h"

namespace quern {

void add_commands(CLI::App& app, int& status) {
  app.name("quern");
  app.description("Runs AArch64 programs that use SVE on processors without it, and traces their memory.");
  app.set_version_flag("--version", fmt::format("quern {} ({}-bit vectors)\nbuild     {}\nrevision  {}", QUERN_VERSION,
                                                VL_BITS, QUERN_BUILD, QUERN_REVISION));
  app.require_subcommand(0, 1);  // a program that `run` is given may bear the name of another command
  add_run_command(app, status);
  add_check_command(app, status);
  add_trace_command(app, status);
  add_decode_command(app, status);
  add_list_command(app, status);
}

}  // namespace quern
