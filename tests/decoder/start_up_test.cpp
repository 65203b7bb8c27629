// What static initialisation leaves before main: no test here, nor anything that the tests call, does it again.
#include <gtest/gtest.h>
#include <unistd.h>

#include "sve/decoder/sve_utils.h"
#include "sve/memory/guest_memory.h"

namespace quern {
namespace {

TEST(StartUp, HasReadThePageSize) { EXPECT_EQ(page_size, sysconf(_SC_PAGESIZE)); }

TEST(StartUp, HasInstalledTheFaultHandlers) {
  ASSERT_NE(get_sve_handler(0x04200000), nullptr);
  for (const int signal : {SIGSEGV, SIGBUS}) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    EXPECT_EQ(action.sa_sigaction, SVESigHandler) << signal;
  }
}

}  // namespace
}  // namespace quern
