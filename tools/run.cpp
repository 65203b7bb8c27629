// quern run: runs a program under the trap host.
#include "tools/commands.h"

namespace quern {

void add_run_command(CLI::App& app, int&) {
  app.add_subcommand("run", "Run a program under emulation")->callback([] { throw user_error{"run: not built yet"}; });
}

}  // namespace quern
