// What a signal finds and leaves: the application's registers in rewritten code, and the scalable registers across
// handlers.
#include <algorithm>

#include "client_test.h"
#include "sve/state/saved_vectors.h"

namespace quern {
namespace {

struct signals : client_test {
  cpu_state& state = start_thread();

  ~signals() override {
    if (framework.tls_field != nullptr) framework.thread_exit(framework.drcontext());
  }

  void fill(unsigned char value) {
    std::memset(state.z, value, sizeof state.z);
    std::memset(state.p, value, sizeof state.p);
    std::memset(state.ffr, value, sizeof state.ffr);
  }
  bool is_filled(unsigned char value) const {
    const auto all = [value](const auto& bytes) {
      const auto* const first = reinterpret_cast<const unsigned char*>(&bytes);
      return std::find_if_not(first, first + sizeof bytes, [value](unsigned char b) { return b == value; }) ==
             first + sizeof bytes;
    };
    return all(state.z) && all(state.p) && all(state.ffr);
  }

  // A handler begins at `handler_sp`, which interrupts code at `sp`; one ends and goes on at `sp`.
  void deliver(reg_t sp, reg_t handler_sp) {
    const dr_mcontext_t interrupted{.r26 = 0, .r27 = 0, .xsp = sp};
    transfer({DR_XFER_SIGNAL_DELIVERY, &interrupted, nullptr, handler_sp, 10});
  }
  void deliver(reg_t sp) { deliver(sp, sp - 0x1200); }
  void end(reg_t sp) { transfer({DR_XFER_SIGNAL_RETURN, nullptr, nullptr, sp, 10}); }

  void transfer(const dr_kernel_xfer_info_t& info) { framework.kernel_transfer(framework.drcontext(), &info); }

  // How many places of the store are in use.
  static std::size_t in_use() {
    static const cpu_state any{};
    std::vector<saved_vectors*> free;
    while (saved_vectors* const place = save_vectors(any)) free.push_back(place);
    for (saved_vectors* const place : free) release_vectors(place);
    return saved_vectors_capacity - free.size();
  }
};

TEST_F(signals, a_handler_leaves_the_scalable_registers_as_they_were) {
  fill(1);
  deliver(0x8000);
  fill(2);
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
  EXPECT_EQ(in_use(), 0u);
}

TEST_F(signals, all_else_is_not_touched) {
  deliver(0x8000);
  state.x[0] = 77;
  state.fpsr = 78;
  end(0x8000);
  EXPECT_EQ(state.x[0], 77u);
  EXPECT_EQ(state.fpsr, 78u);
}

TEST_F(signals, nested_handlers_end_from_the_innermost) {
  fill(1);
  deliver(0x8000);
  fill(2);
  deliver(0x6000);
  fill(3);
  end(0x6000);
  EXPECT_TRUE(is_filled(2));
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(signals, a_redirection_by_the_client_is_no_handler) {
  const dr_mcontext_t anywhere{.r26 = 0, .r27 = 0, .xsp = 0x8000};
  transfer({DR_XFER_CLIENT_REDIRECT, &anywhere, nullptr, 0x8000, 0});
  EXPECT_EQ(in_use(), 0u);
}

// After a long jump out of the handler, the next signal finds the code above the handler's place.
TEST_F(signals, a_handler_that_was_left_is_dropped) {
  fill(1);
  deliver(0x8000);
  fill(2);
  deliver(0x8000);
  EXPECT_EQ(in_use(), 1u);
  fill(3);
  end(0x8000);
  EXPECT_TRUE(is_filled(2));
  EXPECT_EQ(in_use(), 0u);
}

TEST_F(signals, an_inner_handler_that_was_left_is_dropped_when_the_outer_ends) {
  fill(1);
  deliver(0x8000);
  fill(2);
  deliver(0x6000);
  fill(3);
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
  EXPECT_EQ(in_use(), 0u);
}

// On an alternate stack, which may lie above the interrupted one.
TEST_F(signals, a_handler_on_an_alternate_stack_is_kept) {
  fill(1);
  deliver(0x8000, 0x900000);
  fill(2);
  deliver(0x8FF000);
  end(0x8FF000);
  fill(3);
  end(0x8000);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(signals, a_return_to_where_no_handler_came_from_changes_nothing) {
  deliver(0x8000);
  fill(2);
  end(0x7000);
  EXPECT_TRUE(is_filled(2));
}

TEST_F(signals, handlers_left_unseen_give_way) {
  for (std::size_t i = 0; i != saved_vectors_capacity; ++i) deliver(0x8000 + i, 0x900000);
  fill(1);
  deliver(0x7000, 0x900000);
  fill(2);
  end(0x7000);
  EXPECT_TRUE(is_filled(1));
}

TEST_F(signals, a_handler_without_a_place_ends_the_process) {
  std::vector<saved_vectors*> taken;
  while (saved_vectors* const place = save_vectors(state)) taken.push_back(place);
  EXPECT_THROW(deliver(0x8000), aborted);
  EXPECT_EQ(framework.error_stream, "quern: too many signal handlers run at once; at most 1024 may\n");
  for (saved_vectors* const place : taken) release_vectors(place);
}

TEST_F(signals, a_thread_that_ends_leaves_nothing) {
  deliver(0x8000);
  framework.thread_exit(framework.drcontext());
  framework.tls_field = nullptr;
  EXPECT_EQ(in_use(), 0u);
}

TEST_F(signals, rewritten_code_has_the_applications_registers_in_slots) {
  framework.slots[0] = 126;
  framework.slots[1] = 127;
  dr_mcontext_t inside{.r26 = 1, .r27 = reinterpret_cast<reg_t>(&state), .xsp = 5};
  framework.restore_state(framework.drcontext(), nullptr, &inside, false, true);
  EXPECT_EQ(inside.r26, 126u);
  EXPECT_EQ(inside.r27, 127u);

  dr_mcontext_t outside{.r26 = 1, .r27 = 2, .xsp = 5};
  framework.restore_state(framework.drcontext(), nullptr, &outside, false, true);
  EXPECT_EQ(outside.r26, 1u);
  EXPECT_EQ(outside.r27, 2u);
}

}  // namespace
}  // namespace quern
