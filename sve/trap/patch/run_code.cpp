// The generator of code for runs.
#include "sve/trap/patch/run_code.h"

#include <cstring>

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

constexpr std::int64_t x_distance(word n) { return offsetof(cpu_state, x) + n * 8; }
constexpr std::int64_t z_distance(word n) { return static_cast<std::int64_t>(offsetof(cpu_state, z)) + n * VL_BYTES; }
static_assert(z_distance(31) <= 4095 * 16);

class generator {
 public:
  generator(std::span<const run_word> run, unsigned char* site, const unsigned char* place,
            std::span<unsigned char, max_run_code_bytes> room)
      : run_(run), use_(use_of(run)), place_(place), room_(room) {
    header_.site = site;
    header_.z = use_.z;
    header_.floating_point = use_.floating_point;
    header_.words = static_cast<std::uint16_t>(run.size());
  }

  std::size_t make(std::size_t registers_offset) {
    size_ = offsetof(run_code, literals) + run_.size() * sizeof(run_literal);
    put(udf());
    header_.entry = here();
    bring_in(registers_offset);
    for (std::size_t i = 0; i != run_.size(); ++i) call(i);
    header_.way_out = here();
    bring_out();
    header_.last = here();
    put(b(header_.behind_site() - (place_ + size_)));
    header_.end = here();
    std::memcpy(room_.data(), &header_, offsetof(run_code, literals) + run_.size() * sizeof(run_literal));
    return size_;
  }

 private:
  std::uint16_t here() const { return static_cast<std::uint16_t>(size_); }
  // From the next instruction to a place in the code.
  std::int64_t distance_to(std::size_t offset) const {
    return static_cast<std::int64_t>(offset) - static_cast<std::int64_t>(size_);
  }
  void put(word w) {
    std::memcpy(room_.data() + size_, &w, sizeof w);
    size_ += sizeof w;
  }

  // All general registers, since a signal handler may have to be shown them while thunks hold them; all vectors, which
  // thunks don't keep.
  void bring_in(std::size_t registers_offset) {
    const std::size_t offset = registers_offset + offsetof(thread_registers, state);
    put(str_x_pre(base, sp, -16));
    put(mrs(base, system_register::tpidr_el0));
    put(add_x_4096(base, base, static_cast<word>(offset >> 12)));
    put(add_x(base, base, offset & 4095));
    put(stur_x(base, base, running_distance));  // not null: a signal must not let others use the registers
    for (word n = 0; n != 18; n += 2) put(stp_x({n}, {n + 1}, base, x_distance(n)));
    put(ldr_x_post(x0, sp, 16));
    put(stp_x({18}, x0, base, x_distance(18)));
    for (word n = 20; n != 30; n += 2) put(stp_x({n}, {n + 1}, base, x_distance(n)));
    put(add_x(x1, sp, 0));
    static_assert(offsetof(cpu_state, sp) == x_distance(31));
    put(stp_x({30}, x1, base, x_distance(30)));
    put(mrs(x0, system_register::nzcv));
    put(str_x(x0, base, offsetof(cpu_state, nzcv)));
    if (use_.floating_point) {
      put(mrs(x0, system_register::fpsr));
      put(mrs(x1, system_register::fpcr));
      put(str_w(x0, base, offsetof(cpu_state, fpsr)));
      put(str_w(x1, base, offsetof(cpu_state, fpcr)));
    }
    for (word n = 0; n != 32; n += 2) put(stp_q({n}, {n + 1}, base, v_distance + n * 16));
    for (word n = 0; n != 32; ++n)
      if (use_.z >> n & 1) put(str_q({n}, base, z_distance(n)));
    put(adr(x0, distance_to(0)));
    put(stur_x(x0, base, running_distance));
  }

  // One thunk. A later one must find the stack pointer where the word has put it: what is above is the application's.
  void call(std::size_t i) {
    header_.literals[i] = {run_[i].thunk, header_.site + i * 4, run_[i].word};
    const std::size_t literal = offsetof(run_code, literals) + i * sizeof(run_literal);
    put(ldr_x_literal(x2, distance_to(literal + offsetof(run_literal, pc))));
    put(str_x(x2, base, offsetof(cpu_state, pc)));
    put(mov_x(x0, base));
    put(ldr_w_literal(x1, distance_to(literal + offsetof(run_literal, word))));
    put(ldr_x_literal(x16, distance_to(literal + offsetof(run_literal, thunk))));
    put(blr(x16));
    if (use_of(run_[i]).sp_written) {
      put(ldr_x(x0, base, offsetof(cpu_state, sp)));
      put(add_x(sp, x0, 0));
    }
    put(ldur_x(x0, base, ends_distance));
    put(cbnz_x(x0, distance_to(header_.entry - sizeof(word))));
  }

  // Thunks keep X19 to X29 themselves. The base's own value waits on the stack: when others may use the registers
  // again, there is nothing left in them.
  void bring_out() {
    put(ldr_x(x0, base, x_distance(base.number)));
    put(str_x_pre(x0, sp, -16));
    put(ldr_x(x0, base, offsetof(cpu_state, nzcv)));
    put(msr(system_register::nzcv, x0));
    if (use_.floating_point) {
      put(ldr_w(x0, base, offsetof(cpu_state, fpsr)));
      put(msr(system_register::fpsr, x0));
    }
    for (word n = 0; n != 32; n += 2) put(ldp_q({n}, {n + 1}, base, v_distance + n * 16));
    for (word n = 0; n != 32; ++n)
      if (use_.z_written >> n & 1) put(ldr_q({n}, base, z_distance(n)));
    for (word n = 20; n != 30; ++n)
      if (use_.x_written >> n & 1) put(ldr_x({n}, base, x_distance(n)));
    put(ldr_x({30}, base, x_distance(30)));
    for (word n = 0; n != 18; n += 2) put(ldp_x({n}, {n + 1}, base, x_distance(n)));
    put(ldr_x({18}, base, x_distance(18)));
    put(stur_x(zero, base, running_distance));
    header_.pop = here();
    put(ldr_x_post(base, sp, 16));
  }

  const std::span<const run_word> run_;
  const register_use use_;
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
