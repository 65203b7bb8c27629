// Integer division.
#include "sve/handlers/integer/divide.h"

#include <type_traits>

#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

namespace {

using signed_quotients = element_types<std::int64_t, std::int32_t>;
using unsigned_quotients = element_types<std::uint64_t, std::uint32_t>;

// The architecture's quotient. Its own instructions need none of the tests that other hosts do.
template <class T>
T host_quotient(T dividend, T divisor) {
#ifdef __aarch64__
  T result;
  if constexpr (std::is_same_v<T, std::int32_t>) asm("sdiv %w0, %w1, %w2" : "=r"(result) : "r"(dividend), "r"(divisor));
  if constexpr (std::is_same_v<T, std::int64_t>) asm("sdiv %0, %1, %2" : "=r"(result) : "r"(dividend), "r"(divisor));
  if constexpr (std::is_same_v<T, std::uint32_t>)
    asm("udiv %w0, %w1, %w2" : "=r"(result) : "r"(dividend), "r"(divisor));
  if constexpr (std::is_same_v<T, std::uint64_t>) asm("udiv %0, %1, %2" : "=r"(result) : "r"(dividend), "r"(divisor));
  return result;
#else
  return quotient(dividend, divisor);
#endif
}

template <class Types, class Op>
aarch64_decode_rc divide(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  unsigned char* const d = bytes_of(state, zdn);
  const unsigned char *const p = bytes_of(state, pg), *const m = bytes_of(state, zm);
  Types::by_size(zdn.dsize, [=]<class T>(T) {
    if (all_active<T>(p)) return each_scalar_lane<T>(op, d, d, m);
    pass_over_lanes<T>(op, d, p, d, m);
  });
  return DECODE_OK;
}

constexpr auto by_second = [](auto a, auto b) { return host_quotient(a, b); };
constexpr auto by_first = [](auto a, auto b) { return host_quotient(b, a); };

}  // namespace

aarch64_decode_rc sve_sdiv_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<signed_quotients>(state, zdn, pg, zm, by_second);
}

aarch64_decode_rc sve_sdivr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<signed_quotients>(state, zdn, pg, zm, by_first);
}

aarch64_decode_rc sve_udiv_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<unsigned_quotients>(state, zdn, pg, zm, by_second);
}

aarch64_decode_rc sve_udivr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<unsigned_quotients>(state, zdn, pg, zm, by_first);
}
