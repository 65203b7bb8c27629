// quern list: every instruction form that is emulated, a line a form.
#include <fmt/core.h>

#include "sve/decoder/decode_map.h"
#include "tools/commands.h"

namespace quern {

void add_list_command(CLI::App& app, int&) {
  app.add_subcommand("list", "List the emulated instructions")->callback([] {
    for (const decode_map& map : decode_maps())
      for (const decode_row& row : map.rows) fmt::print("{:<32} {:<40} {}\n", row.name.view(), map.name, row.handler);
  });
}

}  // namespace quern
