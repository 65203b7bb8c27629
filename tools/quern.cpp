// quern: runs programs under emulation, reads their traces, and tells about the emulated instructions.
#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

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

// The command line without the "--" between run's options and the program, so that CLI11 leaves the program's arguments
// as they are: behind a "--" it reads lists into them ("[a,b]").
std::vector<std::string> arguments_of(const CLI::App& app, int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.empty() || arguments.front() != "run") return arguments;
  const CLI::App* const run = app.get_subcommand("run");
  for (std::size_t i = 1; i < arguments.size() && arguments[i].starts_with('-'); ++i) {
    if (arguments[i] == "--") {
      arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(i));
      break;
    }
    const CLI::Option* const option = run->get_option_no_throw(arguments[i]);
    if (option != nullptr && option->get_items_expected_max() > 0) ++i;  // its value
  }
  return arguments;
}

int run_command_line(int argc, char** argv) {
  int status = 0;
  CLI::App app;
  app.failure_message(usage_message);
  quern::add_commands(app, status);
  try {
    std::vector<std::string> arguments = arguments_of(app, argc, argv);
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
    app.parse(std::move(arguments));
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
    std::fprintf(stderr, "quern: %s\n", error.message.c_str());
    return error.status;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quern: %s\n", error.what());
    return 1;
  }
}
