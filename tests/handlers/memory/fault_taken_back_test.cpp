// A load that faults anywhere leaves the registers as they were before it, once the host has taken it back: random
// cases of every row, on memory whose second half is closed.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <memory>

#include "sve/memory/kept_destination.h"
#include "tests/random_cases/case_choice.h"
#include "tests/random_cases/test_case.h"
#include "tests/support/caught_fault.h"

namespace quern {
namespace {

constexpr std::uint64_t default_cases = 100;
constexpr std::size_t half = arena_bytes / 2;

// The library's first-fault loads suppress their faults, by an action that caught_fault replaces.
bool can_fault(const decode_row& row) {
  const bool probes = row.memory.kind == memory_kind::first_fault_load;
  return row.memory.is_load() && !(probes && row.way == route::library);
}

// Quadwords are read whole before a register is written, whole registers as the compiler likes, and a non-fault load
// faults only in an element that lies in two pages.
bool must_write_before_faults(const decode_row& row) {
  const bool splits = row.memory.kind != memory_kind::non_fault_load || row.memory.element_bytes > 1;
  return splits && row.way != route::library && row.memory.extent != memory_extent::image;
}

// Moves the base, one time in two, so that the accesses lie about the boundary.
void move_to_boundary(const case_row& row, std::uint64_t seed, test_case& c) {
  const memory_form form = *memory_form_of(*row.row);
  if (form.form == address_form::vector_base || seed % 2 == 0) return;
  const std::uint32_t n = extract(find_operand(*row.row, operand_kind::rsp)->mask, c.word);
  std::uint64_t& base = n == 31 ? c.state.sp : c.state.x[n];
  if (form.form == address_form::base_vector) {
    base += half / 2;
  } else {
    base += reinterpret_cast<std::uint64_t>(arena()) + half - c.access - seed % static_cast<std::uint64_t>(form.span);
  }
}

// What the application sees of the register file.
bool same_registers(const cpu_state& a, const cpu_state& b) {
  return std::memcmp(a.x, b.x, sizeof a.x) == 0 && a.sp == b.sp && a.nzcv == b.nzcv && a.fpsr == b.fpsr &&
         std::memcmp(a.z, b.z, sizeof a.z) == 0 && std::memcmp(a.p, b.p, sizeof a.p) == 0 &&
         std::memcmp(a.ffr, b.ffr, sizeof a.ffr) == 0;
}

// How many of the row's cases have faulted after a write.
int expect_taken_back(const case_row& row, std::uint64_t cases) {
  const auto c = std::make_unique<test_case>();
  const auto after = std::make_unique<cpu_state>();
  int begun = 0;
  for (std::uint64_t seed = 1; seed <= cases; ++seed) {
    make_case(row, seed, *c);
    move_to_boundary(row, seed, *c);
    *after = c->state;
    kept_destination.count = 0;
    if (!caught_fault([&] { run_thunk(*row.row, c->word, *after); })) continue;
    begun += !same_registers(*after, c->state);
    put_destination_back();
    EXPECT_TRUE(same_registers(*after, c->state)) << describe(*row.row, c->word) << ", seed " << seed;
  }
  return begun;
}

TEST(FaultTakenBack, LeavesTheRegistersAsBeforeTheLoad) {
  if (static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) > half) GTEST_SKIP() << "the arena's halves share a page";
  ASSERT_EQ(mprotect(arena() + half, half, PROT_NONE), 0);
  const std::uint64_t cases = choose_cases("QUERN_FAULTS", default_cases).count;
  for (const case_row& row : all_rows()) {
    if (!can_fault(*row.row)) continue;
    const int begun = expect_taken_back(row, cases);
    EXPECT_TRUE(begun > 0 || !must_write_before_faults(*row.row)) << row.row->name.view();
  }
  ASSERT_EQ(mprotect(arena() + half, half, PROT_READ | PROT_WRITE), 0);
}

}  // namespace
}  // namespace quern
