// What the client's tests share: a process under the framework's double, with the client started and one thread in it.
#pragma once

#include <gmock/gmock.h>

#include <array>
#include <cstring>

#include "framework_double.h"
#include "sve/client/emulated_place.h"
#include "sve/client/shared_code.h"
#include "sve/state/cpu_state.h"

namespace quern {

// Calls of the companion library go to the framework's list too; the name says what fails.
struct client_test : testing::Test {
  framework_double framework;
  instrlist_t block;

  client_test() { shared_code = nullptr; }
  ~client_test() override {
    framework.clear(block);
    free_places();
  }

  void start(std::vector<const char*> arguments = {}) {
    arguments.insert(arguments.begin(), "the client's path");
    dr_client_main(0, static_cast<int>(arguments.size()), arguments.data());
  }

  // The client with one thread in it; only later calls are kept.
  cpu_state& start_thread() {
    start();
    framework.thread_init(framework.drcontext());
    framework.calls.clear();
    return *static_cast<cpu_state*>(framework.tls_field);
  }

  // Words of the application, which stay where they are while the test runs.
  unsigned char* application_word(std::uint32_t word) {
    std::memcpy(code_.at(used_).data(), &word, 4);
    return code_[used_++].data();
  }

  void append(std::uint32_t word) { framework.append(block, application_word(word)); }

  void append_msr(reg_id_t system, reg_id_t source) {
    framework.append(block, application_word(0xD51B4400), OP_msr, {opnd_create_reg(system)}, {opnd_create_reg(source)});
  }

  dr_emit_flags_t rewrite(bool translating = false) {
    return framework.block_event(framework.drcontext(), nullptr, &block, false, translating);
  }

 private:
  std::array<std::array<unsigned char, 4>, 128> code_;
  std::size_t used_ = 0;
};

inline constexpr std::uint32_t word_nop = 0xD503201F;
inline constexpr std::uint32_t word_add_b = 0x04200000;         // add z0.b, z0.b, z0.b
inline constexpr std::uint32_t word_add_d = 0x04E00000;         // add z0.d, z0.d, z0.d
inline constexpr std::uint32_t word_rdvl_x26 = 0x04BF503A;      // rdvl x26, #1
inline constexpr std::uint32_t word_rdvl_x27 = 0x04BF503B;      // rdvl x27, #1
inline constexpr std::uint32_t word_rdvl_x28 = 0x04BF503C;      // rdvl x28, #1
inline constexpr std::uint32_t word_addvl_sp = 0x043F57FF;      // addvl sp, sp, #-1
inline constexpr std::uint32_t word_addvl_x0_x28 = 0x043C5020;  // addvl x0, x28, #1

}  // namespace quern
