// WHILELT, WHILELO and WHILELS. How often the comparison holds follows from the operands, so no lane is compared.
#include "sve/handlers/predicate/while_loop.h"

#include <limits>

#include "sve/handlers/general_register.h"
#include "sve/handlers/predicate/nzcv.h"
#include "sve/handlers/predicate/predicate_scan.h"
#include "sve/handlers/register_bytes.h"

using namespace quern;

namespace {

// How often e, e + 1, ... is below the limit before it is not for the first time. It cannot wrap before that.
struct steps_below {
  template <class T>
  std::uint64_t operator()(T e, T limit) const {
    using U = std::make_unsigned_t<T>;
    if (e < limit) [[likely]]
      return static_cast<U>(static_cast<U>(limit) - static_cast<U>(e));
    return 0;
  }
};

// The same for "not above". Nothing is above the greatest number: then it never ends.
struct steps_up_to {
  template <class T>
  std::uint64_t operator()(T e, T limit) const {
    if (limit == std::numeric_limits<T>::max()) return std::numeric_limits<std::uint64_t>::max();
    return e <= limit ? std::uint64_t{limit - e} + 1 : 0;
  }
};

template <class X, class W, class Steps>
aarch64_decode_rc while_true(Steps steps, cpu_state* state, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm) {
  const std::uint64_t n = read_x(state, rn), m = read_x(state, rm);
  const std::uint64_t true_elements =
      rn.size == size_x ? steps(static_cast<X>(n), static_cast<X>(m)) : steps(static_cast<W>(n), static_cast<W>(m));
  by_size(pd.size, [&]<class T>(T) {
    unsigned char* const d = bytes_of(state, pd);
    if (true_elements >= lane_count<T>) [[likely]] {
      set_all_elements<T>(d);
      set_flags(state, {.n = true, .z = false, .c = false});
    } else {
      set_first_elements<T>(d, true_elements);
      set_flags(state, {.n = true_elements != 0, .z = true_elements == 0, .c = true});
    }
  });
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_whilelt_prr(cpu_state* state, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm) {
  return while_true<std::int64_t, std::int32_t>(steps_below{}, state, pd, rn, rm);
}

aarch64_decode_rc sve_whilelo_prr(cpu_state* state, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm) {
  return while_true<std::uint64_t, std::uint32_t>(steps_below{}, state, pd, rn, rm);
}

aarch64_decode_rc sve_whilels_prr(cpu_state* state, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm) {
  return while_true<std::uint64_t, std::uint32_t>(steps_up_to{}, state, pd, rn, rm);
}
