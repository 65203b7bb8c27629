// Replicating loads.
#include "sve/veclib/memory/broadcast.h"

#include <functional>

#include "sve/arith/predicate/predicate_support.h"
#include "sve/memory/current_access.h"
#include "sve/veclib/memory/element_access.h"

namespace quern::veclib {
namespace {

// (base, imm): imm counts elements, or quadwords.
constexpr auto element_from_scalar = []<class T, std::size_t M>(const CpuContext&, std::uint64_t base,
                                                                std::int64_t imm) {
  return base + static_cast<std::uint64_t>(imm) * M;
};
constexpr auto quadword_from_scalar = []<class T, std::size_t M>(const CpuContext&, std::uint64_t base,
                                                                 std::int64_t imm) {
  return base + static_cast<std::uint64_t>(imm) * 16;
};
// (base, offset): the offset counts elements.
constexpr auto quadword_by_elements = []<class T, std::size_t M>(const CpuContext&, std::uint64_t base,
                                                                 std::uint64_t offset) { return base + offset * M; };

// (Pg, address operands): one element in all active lanes, read if there are any.
template <std::size_t M, class Form>
constexpr auto loading_element(Form form) {
  return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b) {
    if (FindLastActive(pg, static_cast<int>(8 * sizeof(T)), &ctx) < 0) return VecV{};
    const T value = read_element<T, M>(form.template operator()<T, M>(ctx, a, b), ctx);
    return merge_lanes<T>(std::identity{}, ctx, VecV{}, pg, value);
  };
}

// (Pg, address operands): 16 bytes in all quadwords, the elements that are active in the first one, read at once where
// all are.
template <std::size_t M, class Form>
constexpr auto loading_quadword(Form form) {
  return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b) {
    const std::uint64_t address = form.template operator()<T, M>(ctx, a, b);
    tags::U128 quadword{};
    constexpr std::uint64_t all = lowest_bits<T> & 0xFFFF;
    if ((pg.words[0] & all) == all) {
      note_access(address, sizeof quadword, MEM_LOAD);
      return broadcast(lane<tags::U128>(reinterpret_cast<const unsigned char*>(address), 0), ctx);
    }
    unsigned char image[sizeof quadword]{};
    for (std::size_t j = 0; j != sizeof quadword / M; ++j) {
      if (is_active<T>(pg, j)) set_lane<T>(image, j, read_element<T, M>(address + j * M, ctx));
    }
    std::memcpy(&quadword, image, sizeof quadword);
    return broadcast(quadword, ctx);
  };
}

QUERN_STEMS_1_2_4_8(LoadDup, SIZ, loading_element, element_from_scalar)
QUERN_STEMS_1_2_4_8(LoadDup, QSIZ, loading_quadword, quadword_from_scalar)
QUERN_STEMS_1_2_4_8(LoadDup, QSSZ, loading_quadword, quadword_by_elements)

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/memory/broadcast.def"
#include "sve/veclib/members/define.inc"
