// Gathers and scatters.
#include "sve/veclib/memory/gather_scatter.h"

#include "sve/veclib/memory/element_access.h"

namespace quern::veclib {
namespace {

// A vector operand's lane as 64 bits: all of it, unsigned, or its low 32 bits extended.
struct whole {
  template <class T>
  static std::uint64_t of(const VecV& vector, std::size_t i) {
    return lane<std::make_unsigned_t<T>>(vector.bytes, i);
  }
};
struct sign_extended {
  template <class T>
  static std::uint64_t of(const VecV& vector, std::size_t i) {
    return static_cast<std::uint64_t>(static_cast<std::int32_t>(whole::of<T>(vector, i)));
  }
};
struct zero_extended {
  template <class T>
  static std::uint64_t of(const VecV& vector, std::size_t i) {
    return static_cast<std::uint32_t>(whole::of<T>(vector, i));
  }
};

// (Zn, imm)
constexpr auto vector_base = []<class T, std::size_t M>(const CpuContext&, const VecV& zn, std::uint64_t imm) {
  return [&zn, imm](std::size_t i) { return whole::of<T>(zn, i) + imm * M; };
};
// (Zm, base)
template <class Offset>
constexpr auto byte_offsets = []<class T, std::size_t M>(const CpuContext&, const VecV& zm, std::uint64_t base) {
  return [&zm, base](std::size_t i) { return base + Offset::template of<T>(zm, i); };
};
// (base, Zm)
template <class Offset>
constexpr auto element_offsets = []<class T, std::size_t M>(const CpuContext&, std::uint64_t base, const VecV& zm) {
  return [&zm, base](std::size_t i) { return base + Offset::template of<T>(zm, i) * M; };
};

#define ADDRESS_FORMS(kind, family)                                     \
  QUERN_STEMS_1_2_4_8(kind, VIZ, family, vector_base)                   \
  QUERN_STEMS_1_2_4_8(kind, VSZ, family, byte_offsets<whole>)           \
  QUERN_STEMS_1_2_4_8(kind, XVSZ, family, byte_offsets<sign_extended>)  \
  QUERN_STEMS_1_2_4_8(kind, YVSZ, family, byte_offsets<zero_extended>)  \
  QUERN_STEMS_2_4_8(kind, SVZ, family, element_offsets<whole>)          \
  QUERN_STEMS_2_4_8(kind, XSVZ, family, element_offsets<sign_extended>) \
  QUERN_STEMS_2_4_8(kind, YSVZ, family, element_offsets<zero_extended>)
ADDRESS_FORMS(Load, loading)
ADDRESS_FORMS(LoadFF, loading_to_fault)
ADDRESS_FORMS(Store, storing)
#undef ADDRESS_FORMS

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/memory/gather_scatter.def"
#include "sve/veclib/members/define.inc"
