// Integer comparisons into a predicate.
#include "sve/handlers/integer/integer_compare.h"

#include <functional>

#include "sve/handlers/lane_loops.h"
#include "sve/handlers/predicate/predicate_flags.h"

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

// Pd = whether `holds` for the lanes of the sources, under Pg; flags before Pd, which may be Pg.
template <class T, class Holds, class... Source>
void compare_lanes(Holds holds, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, const Source*... source) {
  const unsigned char* const governing = state->p[pg.num];
  vector_result r;
  zero_lanes<T>(holds, r.bytes, governing, source...);
  test_flags<T>(state, governing, r.bytes);
  r.copy_to(state->p[pd.num]);
}

template <class Elements, class Holds>
aarch64_decode_rc compare(Holds holds, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                          aarch64_z_reg zm) {
  by_size(zn.size, [&]<class U>(U) {
    using T = typename Elements::template type<U>;
    compare_lanes<T>(holds, state, pd, pg, state->z[zn.num], state->z[zm.num]);
  });
  return DECODE_OK;
}

template <class Elements, class Holds, class Immediate>
aarch64_decode_rc compare_immediate(Holds holds, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                    Immediate imm) {
  by_size(zn.size, [&]<class U>(U) {
    using T = typename Elements::template type<U>;
    const T narrowed = static_cast<T>(imm);
    compare_lanes<T>([=](T n) { return holds(n, narrowed); }, state, pd, pg, state->z[zn.num]);
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
