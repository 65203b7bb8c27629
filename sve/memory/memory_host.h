// How the program that hosts the emulator puts its own means of surviving faults in place of the built-in ones.
#pragma once

#include <csignal>
#include <cstdint>

namespace quern {

// What sve/memory asks of its host. The default is the process's sigaction and no probe.
struct memory_host {
  // Every signal action that sve/memory sets, or puts back, goes through here, with sigaction's arguments. A host that
  // interposes on sigaction gives the real one, or its own notion of what SVESigHandler and the probe's handler are to
  // be; the default is the symbol `sigaction`, which such a host would answer itself.
  int (*set_action)(int signal, const struct sigaction* action, struct sigaction* old);

  // Whether the byte at `address` can be read; null to find out by signal actions of sve/memory's own. A SIGBUS there
  // means unreadable when `bus_errors_too`; otherwise it is to reach SVESigHandler as a fault of the application's,
  // unless the host prefers what a processor does, which suppresses it too. Called in place of the probing reads of
  // ReadMemLib1 to 8 (true), once for each page, and of addr_is_readable (false), on any thread.
  bool (*probe)(std::uint64_t address, bool bus_errors_too);
};

// Sets the host, once, while no other thread runs. To see SVEInitialize's actions too, call it from a constructor that
// runs before static initialisation of ordinary priority.
void use_memory_host(const memory_host& host);

}  // namespace quern
