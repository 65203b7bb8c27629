// quern trace info, quern trace dump: what a trace file holds.
#include "tools/commands.h"

namespace quern {

void add_trace_command(CLI::App& app, int&) {
  app.add_subcommand("trace", "Read a trace file")->callback([] { throw user_error{"trace: not built yet"}; });
}

}  // namespace quern
