// Flags of floating-point rows by way of their thunks: each comes from the row's own instruction, by the instructions
// between the two moves of FPSR alone, and from its active lanes.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "sve/handlers/floating_point/host_fpsr.h"
#include "tests/harness/elements.h"
#include "tests/random_cases/test_case.h"

namespace quern {
namespace {

constexpr std::uint32_t IOC = 1, IXC = 16, QC = 1u << 27, all_flags = 0x9F;

std::vector<case_row> float_rows() {
  std::vector<case_row> rows;
  for (const decode_map& map : decode_maps())
    for (const decode_row& row : map.rows)
      if (row.way == route::direct_fp) rows.push_back({&row, &map});
  return rows;
}

// A word of the row on vectors that hold one value in each lane of its size, under predicates that are all true or all
// false.
struct row_run {
  row_run(const case_row& row, std::uint64_t value, bool active) : row_(*row.row) {
    make_case(row, 1, *c_);
    for (auto& z : c_->state.z) fill_elements(z, row_.size, value);
    for (auto& p : c_->state.p) std::memset(p, active ? 1 : 0, sizeof p);
    c_->state.fpcr = 0;
  }
  // FPSR after the word ran on `before`.
  std::uint32_t fpsr_after(std::uint32_t before) {
    cpu_state state = c_->state;
    state.fpsr = before;
    EXPECT_EQ(row_.thunk(&state, c_->word), DECODE_OK) << row_.name.view();
    return state.fpsr;
  }

 private:
  const decode_row& row_;
  std::unique_ptr<test_case> c_ = std::make_unique<test_case>();
};

// What flags a row's thunk finds in the host's register is not its own.
void set_host_flags(std::uint32_t flags) {
  cpu_state state{};
  state.fpsr = flags;
  load_host_fpsr(&state);
}

std::uint64_t one(std::uint32_t size) { return size == size_s ? 0x3F800000 : 0x3FF0000000000000; }
// A signalling NaN as a double, and as the single in its low word.
std::uint64_t signalling_nan(std::uint32_t size) { return size == size_s ? 0x7F800001 : 0x7FF000017F800001; }

bool has_predicate(const case_row& row) { return row.row->handler.find("_zz") == std::string_view::npos; }
bool from_integer(const case_row& row) { return row.row->handler.find("cvtf") != std::string_view::npos; }

// 41 forms in two sizes, and 15 conversions.
TEST(FloatFlags, AreTestedOfAllRows) { EXPECT_EQ(float_rows().size(), 2u * 41 + 15); }

TEST(FloatFlags, OfTheHostAreNotTheStates) {
  for (const case_row& row : float_rows()) {
    set_host_flags(all_flags | QC);
    EXPECT_EQ(row_run(row, one(row.row->size), true).fpsr_after(0), 0u) << row.row->name.view();
  }
}

TEST(FloatFlags, OfTheStateStay) {
  for (const case_row& row : float_rows()) {
    set_host_flags(0);
    EXPECT_EQ(row_run(row, one(row.row->size), true).fpsr_after(IXC | QC), IXC | QC) << row.row->name.view();
  }
}

TEST(FloatFlags, OfTheInstructionReachTheState) {
  for (const case_row& row : float_rows()) {
    if (from_integer(row)) continue;
    set_host_flags(0);
    EXPECT_EQ(row_run(row, signalling_nan(row.row->size), true).fpsr_after(QC), IOC | QC) << row.row->name.view();
  }
}

TEST(FloatFlags, ComeFromNoInactiveLane) {
  for (const case_row& row : float_rows()) {
    if (!has_predicate(row)) continue;
    set_host_flags(0);
    EXPECT_EQ(row_run(row, signalling_nan(row.row->size), false).fpsr_after(0), 0u) << row.row->name.view();
  }
}

}  // namespace
}  // namespace quern
