// Starting a program and waiting for it.
#include "tools/child_process.h"

#include <fmt/core.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/host_setup.h"
#include "tools/printable.h"
#include "tools/trace_target.h"
#include "tools/user_error.h"

namespace quern {
namespace {

constexpr int forwarded_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2};

volatile pid_t running = 0;

// The terminal sends its signals to the program as well; those that were sent to quern alone are handed on.
void forward(int signal, siginfo_t* info, void*) {
  if (info->si_code <= 0 && running > 0) kill(running, signal);
}

// Holds the forwarded signals back until the program's number is known.
class signals_held {
 public:
  signals_held() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : forwarded_signals) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~signals_held() { release(); }
  signals_held(const signals_held&) = delete;
  signals_held& operator=(const signals_held&) = delete;
  void release() const { sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

// A signal that quern was started with as ignored (nohup) stays so for the program.
void forward_signals() {
  for (const int signal : forwarded_signals) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action.sa_sigaction = forward;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    sigaction(signal, &action, nullptr);
  }
}

[[noreturn]] void become(const std::filesystem::path& file, const std::vector<std::string>& arguments) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // nothing runs on that nobody waits for
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  execv(file.c_str(), pointers.data());
  fmt::print(stderr, "quern: can't start {}: {}\n", printable(file.string()), std::strerror(errno));
  _exit(126);
}

// As a word of a shell's command line.
std::string quoted(const std::string& text) {
  constexpr const char* harmless = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=./,:%@";
  if (!text.empty() && text.find_first_not_of(harmless) == std::string::npos) return text;
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

// With the variables of the environment that quern may have set.
void print_command(const started_program& program) {
  std::string line = "env";
  for (const char* name :
       {"LD_PRELOAD", "QUERN_TRACE", "QUERN_HIDE_SVE", "QUERN_PATCH", "DYNAMORIO_EXE_PATH", "DYNAMORIO_OPTIONS"})
    if (const char* const value = std::getenv(name)) line += fmt::format(" {}={}", name, quoted(value));
  line += " " + quoted(program.file.string());
  for (std::size_t i = 1; i < program.arguments.size(); ++i) line += " " + quoted(program.arguments[i]);
  fmt::print("{}\n", line);
}

}  // namespace

int run_to_end(const started_program& program, const run_options& options,
               const std::function<std::string(pid_t, int)>& place_of_death) {
  if (options.dry_run) {
    if (options.trace) setenv("QUERN_TRACE", absolute_path(*options.trace).c_str(), 1);
    print_command(program);
    return 0;
  }
  const trace_target target(options.trace);
  std::fflush(nullptr);
  pid_t child = 0;
  {
    const signals_held held;
    child = fork();
    if (child == 0) {
      held.release();
      become(program.file, program.arguments);
    }
    if (child < 0)
      throw user_error{fmt::format("can't start {}: {}", program.name, std::strerror(errno)), status_cannot_run};
    running = child;
    forward_signals();
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  running = 0;
  const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  if (signal != 0) {
    const std::string place = place_of_death ? place_of_death(child, signal) : "";
    fmt::print(stderr, "quern: {} was ended by signal {} ({}){}\n", printable(program.name), signal, strsignal(signal),
               place.empty() ? "" : " at " + printable(place));
  }
  target.report(child);
  return signal != 0 ? 128 + signal : WEXITSTATUS(status);
}

}  // namespace quern
