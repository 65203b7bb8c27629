// Integer comparisons into a predicate.
#include "sve/handlers/integer/integer_compare.h"

#include <functional>

#include "sve/handlers/lane_loops.h"
#include "sve/handlers/predicate/predicate_result.h"

using namespace quern;

namespace {

struct as_unsigned_elements {
  template <class T>
  using type = T;
};
struct as_signed_elements {
  template <class T>
  using type = std::make_signed_t<T>;
};

// Pd = whether `holds` for the lanes of the sources, under Pg; and the flags. Pd may be Pg.
template <class T, class Holds, class... Source>
void compare_lanes(Holds holds, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, const Source*... source) {
  unsigned char *const d = bytes_of(state, pd), *const governing = bytes_of(state, pg);
  const active_ends ends = ends_of<T>(governing);
  zero_lanes<T>(holds, d, governing, source...);
  set_flags<T>(state, ends, d);
}

template <class Elements, class Holds>
aarch64_decode_rc compare(Holds holds, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                          aarch64_z_reg zm) {
  by_size(zn.size, [&]<class U>(U) {
    using T = typename Elements::template type<U>;
    compare_lanes<T>(holds, state, pd, pg, bytes_of(state, zn), bytes_of(state, zm));
  });
  return DECODE_OK;
}

template <class Elements, class Holds, class Immediate>
aarch64_decode_rc compare_immediate(Holds holds, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                    Immediate imm) {
  by_size(zn.size, [&]<class U>(U) {
    using T = typename Elements::template type<U>;
    const T narrowed = static_cast<T>(imm);
    compare_lanes<T>([=](T n) { return holds(n, narrowed); }, state, pd, pg, bytes_of(state, zn));
  });
  return DECODE_OK;
}

}  // namespace

#define COMPARE(cc, elements, holds)                                                                           \
  aarch64_decode_rc sve_cmp##cc##_ppzz(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn, \
                                       aarch64_z_reg zm) {                                                     \
    return compare<elements>(holds{}, state, pd, pg, zn, zm);                                                  \
  }
COMPARE(eq, as_signed_elements, std::equal_to<>)
COMPARE(ne, as_signed_elements, std::not_equal_to<>)
COMPARE(ge, as_signed_elements, std::greater_equal<>)
COMPARE(gt, as_signed_elements, std::greater<>)
COMPARE(hs, as_unsigned_elements, std::greater_equal<>)
COMPARE(hi, as_unsigned_elements, std::greater<>)
#undef COMPARE

#define COMPARE_IMMEDIATE(cc, immediate, elements, holds)                                                      \
  aarch64_decode_rc sve_cmp##cc##_ppzi(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn, \
                                       immediate imm) {                                                        \
    return compare_immediate<elements>(holds{}, state, pd, pg, zn, imm);                                       \
  }
COMPARE_IMMEDIATE(eq, int, as_signed_elements, std::equal_to<>)
COMPARE_IMMEDIATE(ne, int, as_signed_elements, std::not_equal_to<>)
COMPARE_IMMEDIATE(gt, int, as_signed_elements, std::greater<>)
COMPARE_IMMEDIATE(lt, int, as_signed_elements, std::less<>)
COMPARE_IMMEDIATE(le, int, as_signed_elements, std::less_equal<>)
COMPARE_IMMEDIATE(hi, unsigned int, as_unsigned_elements, std::greater<>)
COMPARE_IMMEDIATE(lo, unsigned int, as_unsigned_elements, std::less<>)
#undef COMPARE_IMMEDIATE
