// Sets of signals in the kernel's form, and the signals that the trap host can't do without.
#pragma once

#include <csignal>
#include <cstdint>
#include <cstring>

namespace quern {

// Signal n is bit n - 1.
using signal_set = std::uint64_t;

inline constexpr int signal_count = 64;

constexpr signal_set set_of(int signal) { return signal_set{1} << (signal - 1); }

constexpr bool contains(signal_set set, int signal) { return (set & set_of(signal)) != 0; }

// The signals by which emulated instructions and faults of their accesses come to us.
inline constexpr signal_set trap_signals = set_of(SIGILL) | set_of(SIGBUS) | set_of(SIGSEGV);

inline constexpr signal_set all_signals = ~signal_set{0};

// What the kernel is never to block, as it kills a process that comes to an emulated instruction meanwhile.
inline constexpr signal_set never_blocked = set_of(SIGILL);

// The thread library's own two, which it lets no program block. By the first, threads are cancelled.
inline constexpr int cancel_signal = 32;
inline constexpr signal_set library_signals = set_of(cancel_signal) | set_of(33);

constexpr bool is_trap(int signal) { return signal > 0 && signal <= signal_count && contains(trap_signals, signal); }

// The C library's sets are longer than the kernel's; the kernel's come first.
inline signal_set from_sigset(const sigset_t& set) {
  signal_set result;
  std::memcpy(&result, &set, sizeof result);
  return result;
}

inline void to_sigset(signal_set set, sigset_t& result) { std::memcpy(&result, &set, sizeof set); }

// What a mask becomes by SIG_BLOCK, SIG_UNBLOCK or SIG_SETMASK of `set`.
constexpr signal_set changed_mask(signal_set mask, int how, signal_set set) {
  return how == SIG_BLOCK ? mask | set : how == SIG_UNBLOCK ? mask & ~set : set;
}

}  // namespace quern
