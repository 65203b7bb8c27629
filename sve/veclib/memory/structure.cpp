// Structure loads and stores.
#include "sve/veclib/memory/structure.h"

#include <algorithm>

#include "sve/veclib/memory/element_access.h"

namespace quern::veclib {
namespace {

template <std::size_t N>
struct structures {
  // (Pg, address operands, destinations)
  template <std::size_t M, class Form>
  static constexpr auto load(Form form) {
    return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b, VecV* destinations) {
      const auto address_of = form.template operator()<T, M, N * M>(ctx, a, b);
      std::fill_n(destinations, N, VecV{});
      for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
        if (!is_active<T>(pg, i)) continue;
        for (std::size_t r = 0; r != N; ++r)
          set_lane<T>(destinations[r].bytes, i, read_element<T, M>(address_of(i) + r * M, ctx));
      }
    };
  }

  // (Pg, address operands, sources)
  template <std::size_t M, class Form>
  static constexpr auto store(Form form) {
    return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b, const VecV* sources) {
      const auto address_of = form.template operator()<T, M, N * M>(ctx, a, b);
      for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
        if (!is_active<T>(pg, i)) continue;
        for (std::size_t r = 0; r != N; ++r) write_element<M>(lane<T>(sources[r].bytes, i), address_of(i) + r * M, ctx);
      }
    };
  }
};

QUERN_STEMS_1_2_4_8(E2Load, SIZ, structures<2>::load, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(E3Load, SIZ, structures<3>::load, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(E4Load, SIZ, structures<4>::load, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(E2Load, LSSZ, structures<2>::load, elements_from_scalar)
QUERN_STEMS_1_2_4_8(E3Load, LSSZ, structures<3>::load, elements_from_scalar)
QUERN_STEMS_1_2_4_8(E4Load, LSSZ, structures<4>::load, elements_from_scalar)
QUERN_STEMS_1_2_4_8(E2Store, SIZ, structures<2>::store, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(E3Store, SIZ, structures<3>::store, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(E4Store, SIZ, structures<4>::store, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(E2Store, LSSZ, structures<2>::store, elements_from_scalar)
QUERN_STEMS_1_2_4_8(E3Store, LSSZ, structures<3>::store, elements_from_scalar)
QUERN_STEMS_1_2_4_8(E4Store, LSSZ, structures<4>::store, elements_from_scalar)

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/memory/structure.def"
#include "sve/veclib/members/define.inc"
