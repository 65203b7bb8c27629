// The kernel's action for each action that an application may ask for.
#include "sve/trap/signal_actions.h"

#include <gtest/gtest.h>

namespace quern {
namespace {

void dispatcher_function() {}
void handler_function() {}

void* const dispatcher = reinterpret_cast<void*>(dispatcher_function);
void* const handler = reinterpret_cast<void*>(handler_function);
void* const by_default = reinterpret_cast<void*>(SIG_DFL);
void* const ignored = reinterpret_cast<void*>(SIG_IGN);

constexpr int reset_hand = static_cast<int>(SA_RESETHAND);
constexpr int nodefer = SA_NODEFER;
constexpr signal_set all = ~signal_set{0};
constexpr signal_set usr = set_of(SIGUSR1) | set_of(SIGUSR2);

struct action_case {
  const char* name;
  int signal;
  signal_action wanted, installed;
};

const action_case cases[] = {
    {"default", SIGUSR1, {by_default, 0, usr}, {by_default, 0, usr}},
    {"ignored", SIGUSR1, {ignored, SA_RESTART, 0}, {ignored, SA_RESTART, 0}},
    {"handler", SIGUSR1, {handler, SA_RESTART, usr}, {dispatcher, SA_RESTART | SA_SIGINFO, usr}},
    {"all flags kept",
     SIGCHLD,
     {handler, SA_NOCLDSTOP | SA_NOCLDWAIT | SA_ONSTACK | SA_NODEFER | reset_hand, 0},
     {dispatcher, SA_NOCLDSTOP | SA_NOCLDWAIT | SA_ONSTACK | SA_NODEFER | reset_hand | SA_SIGINFO, 0}},
    {"full mask without SIGILL", SIGUSR1, {handler, 0, all}, {dispatcher, SA_SIGINFO, all & ~never_blocked}},
    {"default full mask without SIGILL", SIGUSR1, {by_default, 0, all}, {by_default, 0, all & ~never_blocked}},
    {"SIGSEGV default", SIGSEGV, {by_default, 0, 0}, {dispatcher, SA_SIGINFO, 0}},
    {"SIGSEGV handler", SIGSEGV, {handler, 0, all}, {dispatcher, SA_SIGINFO, all & ~never_blocked}},
    {"SIGSEGV within its handler", SIGSEGV, {handler, nodefer, 0}, {dispatcher, SA_SIGINFO | nodefer, 0}},
    {"SIGSEGV on its stack", SIGSEGV, {handler, SA_ONSTACK, 0}, {dispatcher, SA_SIGINFO | SA_ONSTACK, 0}},
    {"SIGSEGV reset is ours to do", SIGSEGV, {handler, reset_hand, 0}, {dispatcher, SA_SIGINFO, 0}},
    {"SIGBUS restarts", SIGBUS, {handler, SA_RESTART, usr}, {dispatcher, SA_SIGINFO | SA_RESTART, usr}},
    {"SIGBUS ignored interrupts nothing", SIGBUS, {ignored, 0, 0}, {dispatcher, SA_SIGINFO | SA_RESTART, 0}},
    {"SIGILL default", SIGILL, {by_default, 0, 0}, {dispatcher, SA_SIGINFO, ~trap_signals}},
    {"SIGILL never on another stack",
     SIGILL,
     {handler, SA_ONSTACK | SA_RESTART, usr},
     {dispatcher, SA_SIGINFO | SA_RESTART, ~trap_signals}},
};

TEST(KernelAction, IsWhatTheWantedActionNeeds) {
  for (const action_case& c : cases) {
    const signal_action installed = kernel_action(c.signal, c.wanted, dispatcher);
    EXPECT_EQ(installed.handler, c.installed.handler) << c.name;
    EXPECT_EQ(installed.flags, c.installed.flags) << c.name;
    EXPECT_EQ(installed.mask, c.installed.mask) << c.name;
  }
}

TEST(ApplicationAction, IsDefaultUntilSetAndThenWhatWasSet) {
  EXPECT_TRUE(is_default(application_action(SIGUSR2)));
  EXPECT_TRUE(is_default(application_action(signal_count)));
  set_application_action(SIGUSR2, {handler, SA_RESTART, usr});
  const signal_action told = application_action(SIGUSR2);
  EXPECT_EQ(told.handler, handler);
  EXPECT_EQ(told.flags, SA_RESTART);
  EXPECT_EQ(told.mask, usr);
  EXPECT_TRUE(has_handler(told));
  EXPECT_TRUE(is_default(application_action(SIGUSR1)));
}

TEST(SignalAction, HandlerIsNeitherDefaultNorIgnored) {
  EXPECT_FALSE(has_handler({by_default, 0, 0}));
  EXPECT_FALSE(has_handler({ignored, 0, 0}));
  EXPECT_TRUE(is_ignore({ignored, 0, 0}));
  EXPECT_FALSE(is_ignore({handler, 0, 0}));
}

}  // namespace
}  // namespace quern
