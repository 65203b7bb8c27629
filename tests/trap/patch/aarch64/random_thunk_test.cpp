// Thunks of random instructions, made anew for a word, against the same ones called.
//
// QUERN_PATCH_SEED starts the sequence of thunks elsewhere, QUERN_PATCH_CASES gives their number.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <memory>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "sve/state/lane_marks.h"
#include "sve/trap/patch/inlined_thunk.h"
#include "sve/trap/patch/instruction_classes.h"
#include "sve/trap/patch/plain_instruction.h"
#include "tests/random_cases/case_choice.h"
#include "tests/random_cases/random_source.h"
#include "tests/trap/patch/aarch64/patched_place.h"

namespace quern {
namespace {

using namespace aarch64;

thread_local thread_registers registers;

constexpr std::uint32_t emulated = 0x2518E3EF;  // ptrue p15.b
constexpr std::size_t most_instructions = 60, code_bytes = 4096;
constexpr word first_byte = offsetof(cpu_state, z);

// An instruction's fixed bits, those that are drawn, and the registers it has.
struct drawn {
  word fixed, random;
  bool has_d, has_n, has_m, has_a, of_vectors;
};
constexpr word both_widths = 0x80000000, conditions = 0xF000;
constexpr drawn drawn_words[] = {
    {0x12400000 | both_widths, 0x603FF800, true, true, false, false, false},   // AND, ORR, EOR, ANDS (immediate)
    {0x72800000, both_widths | 0x001FFFE0, true, false, false, false, false},  // MOVK
    {0x93C00000, 0x0000FC00, true, true, true, false, false},                  // EXTR
    {0xB3400000, 0x003FFC00, true, true, false, false, false},                 // BFM
    {0x10000000, 0x60FFFFE0, true, false, false, false, false},                // ADR
    {0x0B200000, both_widths | 0x6000EC00, true, true, true, false, false},    // ADD, SUB (extended register)
    {0x0A000000, both_widths | 0x60E07C00, true, true, true, false, false},    // AND, ORR, EOR (shifted register)
    {0x1A000000, both_widths | 0x60000000, true, true, true, false, false},    // ADC, SBC
    {0x1A800000, both_widths | 0x40000400 | conditions, true, true, true, false, false},   // CSEL and its kin
    {0x3A400000, both_widths | 0x4000080F | conditions, false, true, true, false, false},  // CCMP, CCMN
    {0x1B000000, both_widths | 0x00008000, true, true, true, true, false},                 // MADD, MSUB
    {0xDAC00000, 0x00000400, true, true, false, false, false},                             // RBIT, REV16
    {0x1AC02000, both_widths | 0x00000C00, true, true, true, false, false},                // LSLV, LSRV, ASRV, RORV
    {0xD53B4200, 0, true, false, false, false, false},                                     // MRS NZCV
    {0xD53BD040, 0, true, false, false, false, false},                                     // MRS TPIDR_EL0
    {0x4F000400, 0x000703E0, true, false, false, false, true},                             // MOVI, words
    {0x4EA08400, 0, true, true, true, false, true},                                        // ADD, words
    {0x4EA0D400, 0, true, true, true, false, true},                                        // FSUB, words
    {0x1E600C00, conditions, true, true, true, false, true},                               // FCSEL
    {0x1E600400, conditions | 0xF, false, true, true, false, true},                        // FCCMP
    {0x1E602000, 0, false, true, true, false, true},                                       // FCMP
};

// The same from vectors to general registers, or the other way.
struct crossing {
  word fixed;
  bool to_vector;
};
constexpr crossing crossings[] = {{0x4E083C00, false}, {0x9E660000, false}, {0x1E260000, false},
                                  {0x0E013C00, false}, {0x9E780000, false}, {0x9E670000, true},
                                  {0x4E181C00, true},  {0x4E080C00, true},  {0x9E620000, true}};

// X0 and X1 have the arguments; results go to X2 to X12 and V0 to V3.
class thunk_maker {
 public:
  explicit thunk_maker(std::uint64_t seed) : random_(seed) {}

  std::vector<word> make() {
    begin();
    for (std::uint64_t i = 1 + random_.below(most_instructions); i != 0; --i) add();
    words_.insert(words_.end(), 3, nop);  // where a branch may lead
    end();
    return words_;
  }

 private:
  word result() { return static_cast<word>(random_.between(2, 12)); }
  word source() { return static_cast<word>(random_.below(13)); }
  word vector() { return static_cast<word>(random_.below(4)); }
  word bits() { return static_cast<word>(random_.next()); }
  void put(word w) { words_.push_back(w); }

  // Every register has something, known or not.
  void begin() {
    for (word n = 2; n != 13; ++n)
      put(random_.one_in(2) ? movz_x({n}, bits() & 0xFFFF, bits() & 3) : ldr_x({n}, x0, first_byte + n * 8));
    for (word n = 0; n != 4; ++n) put(ldr_q({n}, x0, first_byte + 256 + n * 16));
    put(random_.one_in(2) ? 0xEB02003F : 0xEB0003FF);  // CMP X1, X2; CMP XZR, X0
  }
  void end() {
    put(mrs({13}, system_register::nzcv));
    for (word n = 2; n != 14; n += 2) put(stp_x({n}, {n + 1}, x0, first_byte + n * 8));
    for (word n = 0; n != 4; ++n) put(str_q({n}, x0, first_byte + 256 + n * 16));
    put(0x52800000);  // MOV W0, #0
    put(ret);
  }

  void add() {
    switch (random_.below(8)) {
      case 0: return add_plain();
      case 1: return add_branch();
      case 2: return add_access();
      case 3: return add_access_by_register();
      case 4: return add_crossing();
      case 5: return random_.one_in(3) ? put(msr(system_register::nzcv, {source()})) : add_pair();
      default: return put(of(random_.pick(drawn_words)));
    }
  }

  word of(const drawn& d) {
    const bool v = d.of_vectors;
    word w = d.fixed | (bits() & d.random);
    if (d.has_d) w |= v ? vector() : result();
    if (d.has_n) w |= (v ? vector() : source()) << 5;
    if (d.has_m) w |= (v ? vector() : source()) << 16;
    if (d.has_a) w |= source() << 10;
    const bool is_reserved = is::logical_with_immediate(w) && field(w, 15, 10) == 63;
    return is_reserved ? nop : w;
  }
  void add_plain() {
    word w = bits();
    while (!plain_instruction_of(w) || w == nop || is_lane_mark(w)) w = bits();
    const plain_instruction i = *plain_instruction_of(w);
    w = i.word;
    if (i.d != 31) w = (w & ~word{31}) | result();
    if (i.n != 31) w = (w & ~word{31 << 5}) | source() << 5;
    if (i.m != 31) w = (w & ~word{31 << 16}) | source() << 16;
    put(w);
  }
  // Over one or two instructions; what is skipped by a known way is never seen.
  void add_branch() {
    const auto distance = static_cast<std::int64_t>(4 * random_.between(2, 3));
    const word kinds[] = {0x54000000 | (bits() & 15), 0x34000000 | (bits() & 0x81000000) | source(),
                          0x36000000 | (bits() & 0x81F80000) | source(), b(0)};
    const word kind = random_.pick(kinds);
    put(kind == b(0) ? b(distance) : with_distance(kind, distance));
  }
  // Loads of all kinds, and stores, of general registers; of 1 to 8 bytes.
  word access_of(word size) {
    const word opc = size == 3 ? bits() & 1 : size == 2 ? static_cast<word>(random_.below(3)) : bits() & 3;
    return 0x38000000 | size << 30 | opc << 22 | (opc == 0 ? source() : result());
  }
  void add_access() {
    const word size = bits() & 3;
    if (random_.one_in(4)) return add_access_of_the_word();
    put(access_of(size) | 1 << 24 | (first_byte + (bits() & 0x3F8)) >> size << 10);
  }
  // It is stored as a whole alone.
  void add_access_of_the_word() {
    constexpr std::int64_t offset = offsetof(cpu_state, instr_word);
    const word accesses[] = {str_x(x1, x0, offset), ldr_x({result()}, x0, offset), ldr_w({result()}, x0, offset)};
    put(random_.pick(accesses));
  }
  // By X2, an address in the state, or by an index in X2. No branch leads between it and what sets X2.
  void add_access_by_register() {
    const word size = bits() & 3, offset = first_byte + (bits() & 0xF8);
    words_.insert(words_.end(), 2, nop);
    if (random_.one_in(2)) {
      put(movz_x({2}, offset >> size));
      return put(with_base(access_of(size), x0) | 1 << 21 | 2 << 16 |
                 (random_.one_in(2) ? 0x7800 : 0x5800));  // LSL, UXTW
    }
    put(add_x({2}, x0, offset));
    const word access = with_base(access_of(size), {2}) | (bits() & 0x7F) << 12;
    const word modes[] = {0, 0x400, 0xC00};  // LDUR, behind, before
    put(access | (field(access, 4, 0) == 2 ? 0 : random_.pick(modes)));
    if (field(access, 4, 0) != 2) put(add_x({result()}, {2}, 8));
  }
  void add_pair() {
    const bool is_load = random_.one_in(2);
    const word t = is_load ? result() : source(), offset = first_byte + (bits() & 0x40);
    const word t2 = t == 12 ? 2 : t + 1;
    if (random_.one_in(3)) return add_pair_by_register(is_load);
    if (random_.one_in(2)) return put((is_load ? ldp_x : stp_x)({t}, {t2}, x0, offset));
    put((is_load ? ldp_q : stp_q)({vector() & 2}, {3}, x0, offset));
  }
  // Of vectors, by X2, which it may move, and which is as far from the state as pairs reach, or farther.
  void add_pair_by_register(bool is_load) {
    words_.insert(words_.end(), 2, nop);
    put(add_x({2}, x0, first_byte + (bits() & 0x7F0)));
    for (int i = 0; i != 2; ++i) {
      const word modes[] = {1 << 23, 2 << 23, 3 << 23};  // behind, plain, before
      const word pair = (is_load ? ldp_q : stp_q)({vector() & 2}, {3}, {2}, 16 * static_cast<std::int64_t>(bits() & 3));
      put((pair & ~word{3 << 23}) | random_.pick(modes));
    }
    put(add_x({result()}, {2}, 8));
  }
  void add_crossing() {
    const crossing c = random_.pick(crossings);
    put(c.fixed | (c.to_vector ? vector() | source() << 5 : result() | vector() << 5));
  }

  random_source random_;
  std::vector<word> words_;
};

class RandomThunk : public testing::Test {
 protected:
  void put_code(const std::vector<word>& words) {
    ASSERT_LE(words.size() * sizeof(word), code_bytes);
    std::memcpy(code_, words.data(), words.size() * sizeof(word));
    auto* const begin = static_cast<char*>(code_);
    __builtin___clear_cache(begin, begin + code_bytes);
  }
  // Random registers, but for what a stack needs.
  void fill(std::uint64_t seed) {
    random_source random(seed);
    for (unsigned char& byte : std::span(&registers.state.z[0][0], sizeof registers.state.z))
      byte = static_cast<unsigned char>(random.next());
    registers.state.instr_word = random.next();
    processor_->state.sp = (reinterpret_cast<std::uintptr_t>(stack_.get()) + stack_bytes / 2) & ~std::uintptr_t{15};
  }
  void run_called() {
    using function = std::uint64_t (*)(cpu_state*, std::uint64_t);
    reinterpret_cast<function>(code_)(&registers.state, emulated);
  }
  void run_inlined() {
    decode_row row = *decode_word(emulated).row;
    row.under_host_fpsr = reinterpret_cast<sve_handler>(code_);
    const run_word run[] = {{emulated, &row, row.under_host_fpsr, all_registers, 0}};
    run_patched(run, *processor_, registers);
  }
  bool is_inlined() { return inlined_->make(reinterpret_cast<sve_handler>(code_), emulated, {all_general_registers}); }

  static constexpr std::size_t stack_bytes = 1 << 16;
  std::unique_ptr<unsigned char[]> stack_ = std::make_unique<unsigned char[]>(stack_bytes);
  std::unique_ptr<processor_registers> processor_ = std::make_unique<processor_registers>();
  std::unique_ptr<inlined_thunk> inlined_ = std::make_unique<inlined_thunk>();
  void* code_ = mmap(nullptr, code_bytes, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
};

TEST_F(RandomThunk, DoesWhatTheCalledOneDoes) {
  if (VL_BYTES < 64) GTEST_SKIP() << "the vectors are too short for the thunk's accesses";
  ASSERT_NE(code_, MAP_FAILED);
  constexpr std::uint64_t cases = 1500;
  const case_choice chosen = choose_cases("QUERN_PATCH", cases);
  std::size_t inlined = 0;
  const auto called = std::make_unique<cpu_state>();
  for (std::uint64_t seed = chosen.first; seed != chosen.first + chosen.count && !HasFailure(); ++seed) {
    put_code(thunk_maker(seed).make());
    fill(seed);
    run_called();
    std::memcpy(called.get(), &registers.state, sizeof *called);
    fill(seed);
    run_inlined();
    EXPECT_EQ(std::memcmp(registers.state.z, called->z, sizeof called->z), 0) << "QUERN_PATCH_SEED=" << seed;
    inlined += is_inlined();
  }
  EXPECT_GT(inlined, chosen.count * 9 / 10);
}

}  // namespace
}  // namespace quern
