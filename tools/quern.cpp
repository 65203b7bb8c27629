// quern: runs programs under emulation, reads their traces, and tells about the emulated instructions.
#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "tools/commands.h"
#include "tools/printable.h"

namespace {

// One line, which names the command whose help tells more.
std::string usage_message(const CLI::App* app, const CLI::Error& error) {
  std::string command = app->get_name();
  while (!app->get_subcommands().empty()) {
    app = app->get_subcommands().front();
    command += " " + app->get_name();
  }
  return fmt::format("quern: {} (see {} --help)\n", quern::printable(error.what()), command);
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
    if (arguments[i].ends_with('='))  // CLI11 would take the next word for the value
      throw quern::user_error{fmt::format("{} lacks its value (see quern run --help)", arguments[i]),
                              quern::status_usage};
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

// What has been printed lies in a buffer still: it is known to be written only when that is empty.
void finish_output() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) throw std::system_error(errno, std::generic_category());
}

std::string reason(const std::system_error& error) {
  if (std::ferror(stdout) != 0) return "can't write the output: " + error.code().message();
  if (const auto* const file_error = dynamic_cast<const std::filesystem::filesystem_error*>(&error))
    return file_error->path1().string() + ": " + error.code().message();
  return error.what();
}

int complain(const std::string& message, int status) {
  std::fprintf(stderr, "quern: %s\n", quern::printable(message).c_str());
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // Who reads the output and has seen enough ends a command quietly. A program is started with the signal as it was.
  if (argc < 2 || std::string_view(argv[1]) != "run") std::signal(SIGPIPE, SIG_IGN);
  try {
    const int status = run_command_line(argc, argv);
    finish_output();
    return status;
  } catch (const quern::user_error& error) {
    return complain(error.message, error.status);
  } catch (const std::system_error& error) {
    return error.code() == std::errc::broken_pipe ? 0 : complain(reason(error), 1);
  } catch (const std::exception& error) {
    return complain(error.what(), 1);
  }
}
