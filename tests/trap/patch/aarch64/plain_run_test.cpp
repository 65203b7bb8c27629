// Runs with instructions of the program's own, against the processor.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "sve/trap/patch/plain_instruction.h"
#include "tests/random_cases/random_source.h"
#include "tests/trap/patch/aarch64/patched_place.h"

namespace quern {
namespace {

// An emulated word that changes nothing that is looked at.
constexpr std::uint32_t ptrue = 0x2518E3EF;

thread_local thread_registers registers;

run_word word_of(std::uint32_t word) {
  const decode_row* const row = decode_word(word).row;
  return {word, row, row ? row->thunk : nullptr, all_registers, 0};
}

class PlainRun : public testing::Test {
 protected:
  PlainRun() {
    random_source random(21);
    for (std::uint64_t& x : patched_->state.x) x = random.next();
    patched_->state.sp = (reinterpret_cast<std::uintptr_t>(stack_.get()) + stack_bytes / 2) & ~std::uintptr_t{15};
    patched_->state.nzcv = 0;
    *native_ = *patched_;
  }

  void run(const std::vector<std::uint32_t>& words) {
    std::vector<run_word> run;
    for (const std::uint32_t word : words) run.push_back(word_of(word));
    run_patched(run, *patched_, registers);
  }
  void expect_same(const std::string& what) const {
    for (int i = 0; i != 31; ++i) EXPECT_EQ(patched_->state.x[i], native_->state.x[i]) << "x" << i << what;
    EXPECT_EQ(patched_->state.nzcv, native_->state.nzcv) << what;
    EXPECT_EQ(patched_->state.sp, native_->state.sp) << what;
  }

  static constexpr std::size_t stack_bytes = 1 << 16;
  std::unique_ptr<unsigned char[]> stack_ = std::make_unique<unsigned char[]>(stack_bytes);
  std::unique_ptr<processor_registers> patched_ = std::make_unique<processor_registers>();
  std::unique_ptr<processor_registers> native_ = std::make_unique<processor_registers>();
};

TEST_F(PlainRun, ComputesAsTheProcessor) {
  constexpr std::uint32_t drawn = 40000;
  random_source random(22);
  std::size_t judged = 0;
  for (std::uint32_t i = 0; i != drawn && !HasFailure(); ++i) {
    const auto word = static_cast<std::uint32_t>(random.next());
    if (!plain_instruction_of(word)) continue;
    const std::uint64_t x0 = random.next();
    patched_->state.x[0] = native_->state.x[0] = x0;
    run_unpatched({&word, 1}, *native_);
    run({ptrue, word, ptrue});
    expect_same(", word " + std::to_string(word));
    ++judged;
  }
  EXPECT_GT(judged, 500u);
}

// Each loop makes five passes: X3 is counted down from 5, X4 up by 7.
struct loop {
  const char* text;
  std::vector<std::uint32_t> words;
};
constexpr std::uint32_t add_7_to_x4 = 0x91001C84, sub_1_from_x3 = 0xD1000463, subs_1_from_x3 = 0xF1000463;
const loop loops[] = {
    {"flags", {ptrue, add_7_to_x4, subs_1_from_x3, 0x54FFFFA1}},
    {"not zero", {ptrue, add_7_to_x4, sub_1_from_x3, 0xB5FFFFA3}},
    {"not zero, W, from the second word on", {ptrue, ptrue, add_7_to_x4, sub_1_from_x3, 0x35FFFFA3}},
    {"an emulated word last", {add_7_to_x4, sub_1_from_x3, ptrue, 0xB5FFFFA3}},
};

TEST_F(PlainRun, GoesBackWithinTheCode) {
  for (const loop& l : loops) {
    patched_->state.x[3] = native_->state.x[3] = 5;
    run(l.words);
    native_->state.x[3] = 0;
    native_->state.x[4] += 35;
    native_->state.nzcv = patched_->state.nzcv;
    if (l.words[2] == subs_1_from_x3) native_->state.nzcv = 0x60000000;
    expect_same(std::string(", ") + l.text);
  }
}

}  // namespace
}  // namespace quern
