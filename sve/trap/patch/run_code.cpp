// The generator of code for runs.
#include "sve/trap/patch/run_code.h"

#include <array>
#include <cstring>

#include "sve/decoder/decode_row.h"
#include "sve/trap/patch/inlined_thunk.h"
#include "sve/trap/patch/instructions.h"
#include "sve/trap/patch/known_lanes.h"
#include "sve/trap/patch/plain_instruction.h"

namespace quern {
namespace {

using namespace aarch64;

constexpr std::int64_t distance_in_registers(std::size_t offset) {
  return static_cast<std::int64_t>(offset) - static_cast<std::int64_t>(offsetof(thread_registers, state));
}
constexpr std::int64_t v_distance = distance_in_registers(offsetof(thread_registers, v));
constexpr std::int64_t running_distance = distance_in_registers(offsetof(thread_registers, running));
constexpr std::int64_t ends_distance = distance_in_registers(offsetof(thread_registers, ends));
constexpr std::int64_t known_distance = distance_in_registers(offsetof(thread_registers, known));
static_assert(known_distance == ends_distance + 8);
static_assert(v_distance >= -1024 && running_distance >= -256);

// While a run goes on this register, which thunks keep, has the address of the thread's cpu_state.
constexpr reg base = x19;
constexpr reg link{30};

constexpr std::int64_t x_distance(word n) { return offsetof(cpu_state, x) + n * 8; }
constexpr std::int64_t z_distance(word n) { return static_cast<std::int64_t>(offsetof(cpu_state, z)) + n * VL_BYTES; }
static_assert(z_distance(31) <= 4095 * 16);

// What calls may destroy of the general registers, the link register among them; thunks keep the others.
constexpr std::uint32_t call_destroyed = 0x4007FFFF;
// The general registers that the code itself needs, and those among them that thunks keep: the base and its neighbour,
// which wait on the stack together.
constexpr std::uint32_t own_x = 0x40000007;
constexpr std::uint32_t set_of(reg r) { return std::uint32_t{1} << r.number; }
constexpr reg keeper = known_lanes::keeper;
constexpr std::uint32_t kept_x = set_of(base) | set_of(keeper);
static_assert(keeper.number == base.number + 1);

// Where a thunk has returned, which may have had the register on its stack.
constexpr word look_at_ends[] = {ldur_x(x0, base, ends_distance), orr_x(keeper, keeper, x0)};

// The cold code of a run's inlined thunks, which stands behind all else; numbers of instructions in it are followed by
// distances in bytes from the run_code. For one thread at a time.
class cold_code {
 public:
  static constexpr std::size_t most_words = 3072;

  void clear() { word_count_ = exit_count_ = return_count_ = hot_return_count_ = way_on_count_ = 0; }
  // Whether there is room for what one thunk has.
  bool has_room() const {
    return word_count_ + code_part::most + return_words <= most_words && exit_count_ + 32 <= exits_.size() &&
           return_count_ + 32 <= returns_.size() && hot_return_count_ + 32 <= hot_returns_.size() &&
           way_on_count_ + 32 <= ways_on_.size();
  }
  std::size_t bytes() const { return word_count_ * sizeof(word); }

  // Takes the cold code of a thunk whose hot code stands from `hot_begin` to `hot_end`.
  void add(const inlined_thunk& thunk, std::size_t hot_begin, std::size_t hot_end) {
    const auto in_hot = [=](std::size_t number) { return hot_begin + number * sizeof(word); };
    for (const inlined_thunk::crossing& e : thunk.exits()) exits_[exit_count_++] = {in_hot(e.from), word_count_ + e.to};
    for (const inlined_thunk::crossing& o : thunk.ways_on())
      ways_on_[way_on_count_++] = {in_hot(o.to), word_count_ + o.from};
    const std::size_t way_back = word_count_ + thunk.cold().code().size();
    for (const std::uint16_t r : thunk.cold().returns()) returns_[return_count_++] = {word_count_ + r, way_back};
    for (const std::uint16_t r : thunk.hot().returns()) hot_returns_[hot_return_count_++] = {in_hot(r), way_back};
    for (const word w : thunk.cold().code()) words_[word_count_++] = w;
    if (thunk.cold().returns().empty() && thunk.hot().returns().empty()) return;
    for (const word w : look_at_ends) words_[word_count_++] = w;
    ways_on_[way_on_count_++] = {hot_end, word_count_};
    words_[word_count_++] = b(0);
  }

  // Writes it to its place, and its distance to the branches that lead there.
  void put_at(std::size_t place, std::span<unsigned char> room) {
    const auto in_place = [=](std::size_t number) { return place + number * sizeof(word); };
    for (const cold_return& r : std::span(returns_).first(return_count_))
      words_[r.number] = adr({words_[r.number]}, distance(in_place(r.number), in_place(r.way_back)));
    for (const link& o : std::span(ways_on_).first(way_on_count_))
      words_[o.number] = b(distance(in_place(o.number), o.hot));
    std::memcpy(room.data() + place, words_.data(), bytes());
    for (const link& e : std::span(exits_).first(exit_count_))
      change(room, e.hot, [&](word branch) { return with_distance(branch, distance(e.hot, in_place(e.number))); });
    for (const link& r : std::span(hot_returns_).first(hot_return_count_))
      change(room, r.hot, [&](word n) { return adr({n}, distance(r.hot, in_place(r.number))); });
  }

 private:
  struct link {
    std::size_t hot = 0, number = 0;
  };
  struct cold_return {
    std::size_t number = 0, way_back = 0;
  };
  static constexpr std::size_t return_words = std::size(look_at_ends) + 1;

  template <class Change>
  static void change(std::span<unsigned char> room, std::size_t at, Change changed) {
    word w;
    std::memcpy(&w, room.data() + at, sizeof w);
    w = changed(w);
    std::memcpy(room.data() + at, &w, sizeof w);
  }
  static std::int64_t distance(std::size_t from, std::size_t to) {
    return static_cast<std::int64_t>(to) - static_cast<std::int64_t>(from);
  }

  std::array<word, most_words> words_{};
  std::array<link, 512> exits_{}, hot_returns_{}, ways_on_{};
  std::array<cold_return, 512> returns_{};
  std::size_t word_count_ = 0, exit_count_ = 0, return_count_ = 0, hot_return_count_ = 0, way_on_count_ = 0;
};

class generator {
 public:
  // What is saved: what the words' code is found to write, or all that the thunks may.
  enum class saving { for_copies, for_thunks };

  generator(std::span<const run_word> run, unsigned char* site, const unsigned char* place,
            std::span<unsigned char, max_run_code_bytes> room, saving saves)
      : run_(run), use_(use_of(run)), written_(find_written(saves)), place_(place), room_(room) {
    header_.site = site;
    header_.x = written_.x | use_.x | own_x | kept_x;
    header_.z = use_.z;
    header_.v = written_.v & ~use_.z;
    header_.fpsr = use_.fpsr;
    header_.words = static_cast<std::uint16_t>(run.size());
    for (std::size_t i = 0; i != run.size(); ++i) {
      header_.literals[i].word = run[i].word;
      header_.literals[i].pc = site + i * sizeof(word);
    }
  }

  std::size_t make(std::size_t registers_offset) {
    size_ = offsetof(run_code, literals) + run_.size() * sizeof(run_literal);
    for (word i = 0; i != run_.size(); ++i) put(udf(i));
    header_.entry = here();
    if (run_.size() == 1 && run_[0].ordinary) {
      put(run_[0].ordinary);
      header_.way_out = header_.pop = here();
    } else {
      cold_.clear();
      bring_in(registers_offset);
      for (std::size_t i = 0; i != run_.size(); ++i) carry_out(i);
      // Words that are not called ask for no signal. Behind the last one somebody has to.
      if (!is_called(run_.back())) end_early_if_wanted(run_.size() - 1);
      header_.way_out = here();
      bring_out();
    }
    header_.last = here();
    put(b(header_.behind_site() - (place_ + size_)));
    header_.cold = here();
    if (header_.last != header_.way_out) put_cold();
    header_.end = here();
    std::memcpy(room_.data(), &header_, offsetof(run_code, literals) + run_.size() * sizeof(run_literal));
    return size_;
  }

  // Whether all is saved that the code, as it has come to be, may write.
  bool saves_enough() const { return saves_enough_; }

 private:
  using one_move = word(reg t, reg base, std::int64_t offset);
  using pair_move = word(reg t, reg t2, reg base, std::int64_t offset);

  sve_handler thunk_of(const run_word& w) const { return use_.fpsr ? w.thunk : w.row->under_host_fpsr; }
  static bool follows_calls(const run_word& w) { return w.row->way != route::library; }
  bool make_copy(const run_word& w, const inlined_thunk::given& what) const {
    return copy_.make(thunk_of(w), w.word, what);
  }

  // What the word's code writes, if that is nothing but instructions copied; else what the thunk may write.
  written_registers written_by_code(std::size_t i) {
    const run_word& w = run_[i];
    const bool is_made = make_copy(w, {inlined_thunk::temporaries, use_of(w).p_written, follows_calls(w)});
    const auto written = is_made && copy_.is_whole() ? copy_.written() : std::nullopt;
    is_copy_[i] = written.has_value();
    return written.value_or(w.written);
  }

  // By all words; and if one of them writes all the registers that ways out of its code could go by, one more, as it
  // would have to be called otherwise.
  written_registers find_written(saving saves) {
    constinit static std::array<std::uint32_t, max_run> by_word{};
    written_registers all;
    for (std::size_t i = 0; i != run_.size(); ++i) {
      is_copy_[i] = false;
      if (!is_called(run_[i])) continue;
      const written_registers written = saves == saving::for_copies ? written_by_code(i) : run_[i].written;
      by_word[i] = written.x;
      all.x |= written.x;
      all.v |= written.v;
    }
    for (std::size_t i = 0; i != run_.size(); ++i) {
      const std::uint32_t others = inlined_thunk::temporaries & ~(all.x | own_x);
      const bool has_way = ((all.x | own_x) & inlined_thunk::temporaries & ~by_word[i]) != 0;
      if (is_called(run_[i]) && !has_way) all.x |= others & (~others + 1);  // the lowest
    }
    return all;
  }

  std::uint16_t here() const { return static_cast<std::uint16_t>(size_); }
  // From the next instruction to a place in the code.
  std::int64_t distance_to(std::size_t offset) const {
    return static_cast<std::int64_t>(offset) - static_cast<std::int64_t>(size_);
  }
  void put(word w) {
    std::memcpy(room_.data() + size_, &w, sizeof w);
    size_ += sizeof w;
  }

  // All that thunks read; and all that they write, even if they bring it back, since a signal handler may have to be
  // shown it meanwhile.
  void bring_in(std::size_t registers_offset) {
    const std::size_t offset = registers_offset + offsetof(thread_registers, state);
    put(stp_x_pre(base, keeper, sp, -16));
    put(mrs(base, system_register::tpidr_el0));
    if (offset >> 12) put(add_x_4096(base, base, static_cast<word>(offset >> 12)));
    put(add_x(base, base, offset & 4095));
    put(stur_x(base, base, running_distance));  // not null: a signal must not let others use the registers
    move_x(header_.x & ~kept_x & ~set_of(link), str_x, stp_x);
    put(ldp_x_post(x0, x1, sp, 16));
    put(stp_x(x0, x1, base, x_distance(base.number)));
    put(add_x(x1, sp, 0));
    static_assert(offsetof(cpu_state, sp) == x_distance(31));
    put(stp_x(link, x1, base, x_distance(link.number)));
    put(mrs(x0, system_register::nzcv));
    put(str_x(x0, base, offsetof(cpu_state, nzcv)));
    if (use_.fpsr) {
      put(mrs(x0, system_register::fpsr));
      put(mrs(x1, system_register::fpcr));
      put(str_w(x0, base, offsetof(cpu_state, fpsr)));
      put(str_w(x1, base, offsetof(cpu_state, fpcr)));
    }
    for (word n = 0; n != 32; n += 2)
      if (header_.v >> n & 3) put(stp_q({n}, {n + 1}, base, v_distance + n * 16));
    for (word n = 0; n != 32; ++n)
      if (use_.z >> n & 1) put(str_q({n}, base, z_distance(n)));
    put(adr(x0, distance_to(0)));
    put(stur_x(x0, base, running_distance));
    if (use_.p) {
      put(ldp_x(keeper, x0, base, ends_distance));
      put(orr_x(keeper, keeper, x0));
    } else {
      put(ldur_x(keeper, base, ends_distance));
    }
  }

  // Stores or loads the set, two registers at a time where the next one is in it as well.
  void move_x(std::uint32_t set, one_move one, pair_move pair) {
    for (word n = 0; n != 31; ++n) {
      if (!(set >> n & 1)) continue;
      const bool is_pair = set >> (n + 1) & 1;
      put(is_pair ? pair({n}, {n + 1}, base, x_distance(n)) : one({n}, base, x_distance(n)));
      n += is_pair;
    }
  }

  // One word. A later thunk must find the stack pointer where the word has put it: what is above is the application's.
  void carry_out(std::size_t i) {
    const run_word& w = run_[i];
    header_.literals[i].start = here();
    if (is_called(w)) {
      call(i);
    } else if (w.ordinary) {
      compute(w.ordinary);
    } else if (const auto instruction = plain_instruction_of(w.word)) {
      compute(*instruction);
    } else {
      go_back(i);
    }
    if (!use_of(w).sp_written) return;
    put(ldr_x(x0, base, offsetof(cpu_state, sp)));
    put(add_x(sp, x0, 0));
  }

  void end_early_if_wanted(std::size_t i) {
    put(tbnz_x(keeper, known_lanes::end_bit, distance_to(header_.entry - (run_.size() - i) * sizeof(word))));
  }

  static std::size_t literal(std::size_t i) { return offsetof(run_code, literals) + i * sizeof(run_literal); }

  void call(std::size_t i) {
    header_.literals[i].thunk = thunk_of(run_[i]);
    const std::uint32_t written = use_of(run_[i]).p_written;
    if (!inline_thunk(i, written)) {
      saves_enough_ = saves_enough_ && !is_copy_[i];
      call_thunk(i);
      settle_predicates(run_[i].word, written);
    }
    end_early_if_wanted(i);
  }

  // What is known of the predicates that a word has written: what is known of the source, if it is a move, else
  // nothing.
  void settle_predicates(word w, std::uint32_t written) {
    const word n = w >> 5 & 15, d = w & 15;
    if (known_lanes::is_move(w) && n < known_lanes::filled_predicates && d < known_lanes::filled_predicates) {
      hand_on(known_lanes::active_bit(n, 0), known_lanes::active_bit(d, 0), known_lanes::sizes);
      hand_on(known_lanes::filled_bit(n, 0), known_lanes::filled_bit(d, 0), known_lanes::sizes);
      hand_on(known_lanes::partial_bit(n), known_lanes::partial_bit(d), 1);
      return;
    }
    for (std::uint32_t p = 0; p != known_lanes::predicates; ++p)
      if (written >> p & 1) known_lanes::forget(p, [this](word instruction) { put(instruction); });
  }

  void hand_on(word from, word to, word count) {
    put(known_lanes::take(x0, from, count));
    put(known_lanes::give(x0, to, count));
  }

  // Its code in the place of a call, if there is room.
  bool inline_thunk(std::size_t i, std::uint32_t written_predicates) {
    constexpr std::size_t most = 2 * code_part::most * sizeof(word);
    if (!cold_.has_room() || size_ + cold_.bytes() + most > max_run_code_bytes - max_bytes_of_calls) return false;
    const run_literal& known = header_.literals[i];
    if (!make_copy(run_[i], {written_.x | own_x, written_predicates, follows_calls(run_[i]), known.pc})) return false;
    if (is_copy_[i] && !copy_.is_whole()) return false;
    const std::size_t begin = size_, end = begin + copy_.hot().code().size_bytes();
    for (const word w : copy_.hot().code()) put(w);
    cold_.add(copy_, begin, end);
    if (!copy_.knows_written_predicates()) settle_predicates(known.word, written_predicates);
    return true;
  }

  void put_cold() {
    cold_.put_at(size_, room_);
    size_ += cold_.bytes();
  }

  void call_thunk(std::size_t i) {
    put(ldr_x_literal(x2, distance_to(literal(i) + offsetof(run_literal, pc))));
    put(str_x(x2, base, offsetof(cpu_state, pc)));
    put(mov_x(x0, base));
    put(ldr_w_literal(x1, distance_to(literal(i) + offsetof(run_literal, word))));
    put(ldr_x_literal(x2, distance_to(literal(i) + offsetof(run_literal, thunk))));
    put(blr(x2));
    for (const word w : look_at_ends) put(w);
  }

  // An ordinary instruction, in X0: its registers are in cpu_state, where the stack pointer comes after X30.
  void compute(word instruction) {
    const word d = instruction & 31, n = instruction >> 5 & 31;
    if (is_add_or_sub_x(instruction)) {
      put(ldr_x(x0, base, x_distance(n)));
      put(instruction & ~place({31}, {31}));
    } else {
      put(instruction & ~word{31});
    }
    put(str_x(x0, base, x_distance(d)));
  }

  void compute(const plain_instruction& i) {
    if (i.n != 31) put(ldr_x(x1, base, x_distance(i.n)));
    if (i.m != 31) put(ldr_x(x2, base, x_distance(i.m)));
    put(i.word);
    if (i.d != 31) put(str_x(x0, base, x_distance(i.d)));
    if (!i.sets_flags) return;
    put(mrs(x0, system_register::nzcv));
    put(str_x(x0, base, offsetof(cpu_state, nzcv)));
  }

  void go_back(std::size_t i) {
    const plain_branch branch = *plain_branch_of(run_[i].word);
    if (branch.tested != 31) put(ldr_x(x0, base, x_distance(branch.tested)));
    if (branch.tests_flags) {
      put(ldr_x(x0, base, offsetof(cpu_state, nzcv)));
      put(msr(system_register::nzcv, x0));
    }
    const std::size_t target = i - static_cast<std::size_t>(-branch.distance) / sizeof(word);
    put(with_distance(branch.word, distance_to(header_.literals[target].start)));
  }

  // What the kept registers had waits on the stack: when others may use the registers again, there is nothing left in
  // them.
  void bring_out() {
    put(ldp_x(x0, x1, base, x_distance(base.number)));
    put(stp_x_pre(x0, x1, sp, -16));
    if (use_.p) put(stur_x(keeper, base, known_distance));
    put(ldr_x(x0, base, offsetof(cpu_state, nzcv)));
    put(msr(system_register::nzcv, x0));
    if (use_.fpsr) {
      put(ldr_w(x0, base, offsetof(cpu_state, fpsr)));
      put(msr(system_register::fpsr, x0));
    }
    for (word n = 0; n != 32; n += 2)
      if (header_.v >> n & 3) put(ldp_q({n}, {n + 1}, base, v_distance + n * 16));
    const std::uint32_t changed_z = use_.z & (use_.z_written | written_.v);
    for (word n = 0; n != 32; ++n)
      if (changed_z >> n & 1) put(ldr_q({n}, base, z_distance(n)));
    move_x((((written_.x | own_x) & call_destroyed) | use_.x_written) & ~kept_x, ldr_x, ldp_x);
    put(stur_x(zero, base, running_distance));
    header_.pop = here();
    put(ldp_x_post(base, keeper, sp, 16));
  }

  // For one thread at a time: they take much room.
  static inline constinit cold_code cold_{};
  static inline constinit inlined_thunk copy_{};
  static inline constinit std::array<bool, max_run> is_copy_{};  // words that are to be nothing but copied instructions
  const std::span<const run_word> run_;
  const register_use use_;
  const written_registers written_;
  const unsigned char* const place_;
  const std::span<unsigned char, max_run_code_bytes> room_;
  run_code header_{};
  std::size_t size_ = 0;
  bool saves_enough_ = true;
};

}  // namespace

std::size_t make_run_code(std::span<const run_word> run, unsigned char* site, std::size_t registers_offset,
                          const unsigned char* place, std::span<unsigned char, max_run_code_bytes> room) {
  std::size_t size = 0;
  const auto make = [&](generator::saving saves) {
    generator code(run, site, place, room, saves);
    size = code.make(registers_offset);
    return code.saves_enough();
  };
  if (!make(generator::saving::for_copies)) make(generator::saving::for_thunks);
  return size;
}

}  // namespace quern
