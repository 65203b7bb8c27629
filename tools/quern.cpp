// quern: runs programs under emulation, reads their traces, and tells about the emulated instructions.
#include <fmt/core.h>

#include <exception>

#include "sve/state/vector_length.h"
#include "tools/commands.h"

namespace {

// One line, which names the command whose help tells more.
std::string usage_message(const CLI::App* app, const CLI::Error& error) {
  std::string command = app->get_name();
  while (!app->get_subcommands().empty()) {
    app = app->get_subcommands().front();
    command += " " + app->get_name();
  }
  return fmt::format("quern: {} (see {} --help)\n", error.what(), command);
}

int run_command_line(int argc, char** argv) {
  int status = 0;
  CLI::App app{"Runs AArch64 programs that use SVE on processors without it, and traces their memory.", "quern"};
  app.set_version_flag("--version", fmt::format("quern {} ({}-bit vectors)", QUERN_VERSION, VL_BITS));
  app.failure_message(usage_message);
  quern::add_run_command(app, status);
  quern::add_trace_command(app, status);
  quern::add_decode_command(app, status);
  quern::add_list_command(app, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : quern::status_usage;  // 0: --help, --version
  }
  if (app.get_subcommands().empty()) throw quern::user_error{"give a command (see quern --help)", quern::status_usage};
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run_command_line(argc, argv);
  } catch (const quern::user_error& error) {
    fmt::print(stderr, "quern: {}\n", error.message);
    return error.status;
  } catch (const std::exception& error) {
    fmt::print(stderr, "quern: {}\n", error.what());
    return 1;
  }
}
