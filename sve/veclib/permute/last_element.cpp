// The last active element, and the one after it.
#include "sve/veclib/permute/last_element.h"

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr int none = -1;

template <class T>
int last_active(const PredV& pg, const CpuContext& ctx) {
  const PredV active = within(pg, ctx);
  return any_element<T>(active) ? static_cast<int>(last_element<T>(active)) : none;
}

// The lane of an element, by the number of the last active one, or none.
struct lane_after {
  template <class T>
  static T of(const VecV& vector, int last, const CpuContext& ctx) {
    const std::size_t next = static_cast<std::size_t>(last) + 1;  // after none, lane 0
    return lane<T>(vector.bytes, next == lanes<T>(ctx) ? 0 : next);
  }
};
struct lane_of_last {
  template <class T>
  static T of(const VecV& vector, int last, const CpuContext& ctx) {
    return lane<T>(vector.bytes, last == none ? lanes<T>(ctx) - 1 : static_cast<std::size_t>(last));
  }
};

// (Pg, Zn)
template <class Element>
constexpr auto as_scalar = []<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& zn) {
  return std::uint64_t{Element::template of<T>(zn, last_active<T>(pg, ctx), ctx)};
};

// (Pg, scalar, Zn)
template <class Element>
constexpr auto as_scalar_if_any = []<class T>(T, const CpuContext& ctx, const PredV& pg, T scalar, const VecV& zn) {
  const int last = last_active<T>(pg, ctx);
  return std::uint64_t{last == none ? scalar : Element::template of<T>(zn, last, ctx)};
};

// (Pg, Zdn, Zm)
template <class Element>
constexpr auto in_all_lanes_if_any =
    []<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& zdn, const VecV& zm) {
      const int last = last_active<T>(pg, ctx);
      return last == none ? within(zdn, ctx) : broadcast(Element::template of<T>(zm, last, ctx), ctx);
    };

constexpr auto LastAV = as_scalar<lane_after>;
constexpr auto LastBV = as_scalar<lane_of_last>;
constexpr auto CondXASV = as_scalar_if_any<lane_after>;
constexpr auto CondXBSV = as_scalar_if_any<lane_of_last>;
constexpr auto VCondXAVV = in_all_lanes_if_any<lane_after>;
constexpr auto VCondXBVV = in_all_lanes_if_any<lane_of_last>;

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/permute/last_element.def"
#include "sve/veclib/members/define.inc"
