// The generator of code for runs.
#include "sve/trap/patch/run_code.h"

#include <cstring>

#include "sve/decoder/decode_row.h"
#include "sve/trap/patch/instructions.h"

namespace quern {
namespace {

using namespace aarch64;

constexpr std::int64_t distance_in_registers(std::size_t offset) {
  return static_cast<std::int64_t>(offset) - static_cast<std::int64_t>(offsetof(thread_registers, state));
}
constexpr std::int64_t v_distance = distance_in_registers(offsetof(thread_registers, v));
constexpr std::int64_t running_distance = distance_in_registers(offsetof(thread_registers, running));
constexpr std::int64_t ends_distance = distance_in_registers(offsetof(thread_registers, ends));
static_assert(v_distance >= -1024 && running_distance >= -256);

// While a run goes on this register, which thunks keep, has the address of the thread's cpu_state.
constexpr reg base = x19;
constexpr reg link{30};

constexpr std::int64_t x_distance(word n) { return offsetof(cpu_state, x) + n * 8; }
constexpr std::int64_t z_distance(word n) { return static_cast<std::int64_t>(offsetof(cpu_state, z)) + n * VL_BYTES; }
static_assert(z_distance(31) <= 4095 * 16);

// What calls may destroy of the general registers, the link register among them; thunks keep the others.
constexpr std::uint32_t call_destroyed = 0x4007FFFF;
// The general registers that the code itself needs.
constexpr std::uint32_t own_x = 0x40000007;
constexpr std::uint32_t set_of(reg r) { return std::uint32_t{1} << r.number; }

written_registers written_by(std::span<const run_word> run) {
  written_registers all;
  for (const run_word& w : run) {
    if (w.ordinary) continue;
    all.x |= w.written.x;
    all.v |= w.written.v;
  }
  return all;
}

class generator {
 public:
  generator(std::span<const run_word> run, unsigned char* site, const unsigned char* place,
            std::span<unsigned char, max_run_code_bytes> room)
      : run_(run), use_(use_of(run)), written_(written_by(run)), place_(place), room_(room) {
    header_.site = site;
    header_.x = written_.x | use_.x | own_x | set_of(base);
    header_.z = use_.z;
    header_.v = written_.v & ~use_.z;
    header_.fpsr = use_.fpsr;
    header_.words = static_cast<std::uint16_t>(run.size());
  }

  std::size_t make(std::size_t registers_offset) {
    size_ = offsetof(run_code, literals) + run_.size() * sizeof(run_literal);
    put(udf());
    header_.entry = here();
    if (run_.size() == 1 && run_[0].ordinary) {
      put(run_[0].ordinary);
      header_.way_out = header_.pop = here();
    } else {
      bring_in(registers_offset);
      for (std::size_t i = 0; i != run_.size(); ++i) carry_out(i);
      header_.way_out = here();
      bring_out();
    }
    header_.last = here();
    put(b(header_.behind_site() - (place_ + size_)));
    header_.end = here();
    std::memcpy(room_.data(), &header_, offsetof(run_code, literals) + run_.size() * sizeof(run_literal));
    return size_;
  }

 private:
  using one_move = word(reg t, reg base, std::int64_t offset);
  using pair_move = word(reg t, reg t2, reg base, std::int64_t offset);

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
    put(str_x_pre(base, sp, -16));
    put(mrs(base, system_register::tpidr_el0));
    if (offset >> 12) put(add_x_4096(base, base, static_cast<word>(offset >> 12)));
    put(add_x(base, base, offset & 4095));
    put(stur_x(base, base, running_distance));  // not null: a signal must not let others use the registers
    move_x(header_.x & ~set_of(base) & ~set_of(link), str_x, stp_x);
    put(ldr_x_post(x0, sp, 16));
    put(str_x(x0, base, x_distance(base.number)));
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
    const sve_handler thunk = use_.fpsr ? run_[i].thunk : run_[i].row->under_host_fpsr;
    header_.literals[i] = {thunk, header_.site + i * 4, run_[i].word};
    const std::size_t literal = offsetof(run_code, literals) + i * sizeof(run_literal);
    put(ldr_x_literal(x2, distance_to(literal + offsetof(run_literal, pc))));
    put(str_x(x2, base, offsetof(cpu_state, pc)));
    if (run_[i].ordinary) {
      compute(run_[i].ordinary);
    } else {
      call(literal);
    }
    if (use_of(run_[i]).sp_written) {
      put(ldr_x(x0, base, offsetof(cpu_state, sp)));
      put(add_x(sp, x0, 0));
    }
    put(ldur_x(x0, base, ends_distance));
    put(cbnz_x(x0, distance_to(header_.entry - sizeof(word))));
  }

  void call(std::size_t literal) {
    put(mov_x(x0, base));
    put(ldr_w_literal(x1, distance_to(literal + offsetof(run_literal, word))));
    put(ldr_x_literal(x2, distance_to(literal + offsetof(run_literal, thunk))));
    put(blr(x2));
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

  // The base's own value waits on the stack: when others may use the registers again, there is nothing left in them.
  void bring_out() {
    put(ldr_x(x0, base, x_distance(base.number)));
    put(str_x_pre(x0, sp, -16));
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
    move_x((((written_.x | own_x) & call_destroyed) | use_.x_written) & ~set_of(base), ldr_x, ldp_x);
    put(stur_x(zero, base, running_distance));
    header_.pop = here();
    put(ldr_x_post(base, sp, 16));
  }

  const std::span<const run_word> run_;
  const register_use use_;
  const written_registers written_;
  const unsigned char* const place_;
  const std::span<unsigned char, max_run_code_bytes> room_;
  run_code header_{};
  std::size_t size_ = 0;
};

}  // namespace

std::size_t make_run_code(std::span<const run_word> run, unsigned char* site, std::size_t registers_offset,
                          const unsigned char* place, std::span<unsigned char, max_run_code_bytes> room) {
  return generator(run, site, place, room).make(registers_offset);
}

}  // namespace quern
