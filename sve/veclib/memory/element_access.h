// Loads and stores of the vector library: one element after the other in the order of lanes, each by one guarded or
// plain access. The trace has no record of them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sve/memory/guest_memory.h"
#include "sve/memory/pages.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {

// An address form makes of an instruction's two address operands a function from a lane's number to its address, for
// lanes of type T and elements of M bytes in memory. Lanes next to each other in memory are Stride bytes apart.
constexpr auto vectors_from_scalar =
    []<class T, std::size_t M, std::size_t Stride = M>(const CpuContext& ctx, std::uint64_t base, std::int64_t imm) {
  const std::uint64_t start = base + static_cast<std::uint64_t>(imm) * lanes<T>(ctx) * Stride;
  return [start](std::size_t i) { return start + i * Stride; };
};
constexpr auto elements_from_scalar =
    []<class T, std::size_t M, std::size_t Stride = M>(const CpuContext&, std::uint64_t base, std::uint64_t offset) {
  const std::uint64_t start = base + offset * M;
  return [start](std::size_t i) { return start + i * Stride; };
};

// An element of M bytes, extended to a lane by T's sign. With a null `fault` a bad address is the application's fault;
// else it sets *fault, and the value is 0.
template <class T, std::size_t M>
inline T read_element(std::uint64_t address, int later, bool* fault, CpuContext& ctx) {
  using element = resized<T, M>;
  if constexpr (M == 1) return static_cast<T>(static_cast<element>(ReadMemLib1(address, later, fault, &ctx)));
  if constexpr (M == 2) return static_cast<T>(static_cast<element>(ReadMemLib2(address, later, fault, &ctx)));
  if constexpr (M == 4) return static_cast<T>(static_cast<element>(ReadMemLib4(address, later, fault, &ctx)));
  if constexpr (M == 8) return static_cast<T>(static_cast<element>(ReadMemLib8(address, later, fault, &ctx)));
}
template <class T, std::size_t M>
inline T read_element(std::uint64_t address, CpuContext& ctx) {
  return read_element<T, M>(address, 0, nullptr, ctx);
}

// The low M bytes of a lane.
template <std::size_t M, class T>
inline void write_element(T value, std::uint64_t address, CpuContext& ctx) {
  if constexpr (M == 1) WriteMemLib1(static_cast<std::uint8_t>(value), address, &ctx);
  if constexpr (M == 2) WriteMemLib2(static_cast<std::uint16_t>(value), address, &ctx);
  if constexpr (M == 4) WriteMemLib4(static_cast<std::uint32_t>(value), address, &ctx);
  if constexpr (M == 8) WriteMemLib8(static_cast<std::uint64_t>(value), address, &ctx);
}

// (Pg, address operands): active lanes from memory, 0 elsewhere.
template <std::size_t M, class Form>
constexpr auto loading(Form form) {
  return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b) {
    const auto address_of = form.template operator()<T, M>(ctx, a, b);
    VecV result{};
    for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
      if (is_active<T>(pg, i)) set_lane<T>(result.bytes, i, read_element<T, M>(address_of(i), ctx));
    }
    return result;
  };
}

// An element that is known to be readable.
template <class T, std::size_t M>
inline T readable_element(std::uint64_t address, std::size_t i = 0) {
  return static_cast<T>(lane<resized<T, M>>(reinterpret_cast<const unsigned char*>(address), i));
}

// All lanes from consecutive elements at `start`, if all are active and can be read, which the ends tell; else false.
template <class T, std::size_t M>
inline bool load_whole_vector(std::uint64_t start, const PredV& pg, CpuContext& ctx, VecV& result) {
  static_assert(VL_BYTES <= smallest_page);
  if (vector_bytes(ctx) != VL_BYTES || !all_active<T>(pg)) return false;
  const std::uint64_t last = start + lane_count<T> * M - 1;
  bool fault = false;
  ReadMemLib1(start, 0, &fault, &ctx);
  if (page_of(start) != page_of(last)) ReadMemLib1(last, 1, &fault, &ctx);
  if (fault) return false;
  for (std::size_t i = 0; i != lane_count<T>; ++i) set_lane<T>(result.bytes, i, readable_element<T, M>(start, i));
  return true;
}

// Lane after lane, up to the first fault: its number, or that of lanes when there is none. The reads would learn which
// of them is an instruction's first; it makes no difference to them. In a page where one was good the next is not
// guarded.
template <class T, std::size_t M, class AddressOf>
inline std::size_t load_to_fault(AddressOf address_of, const PredV& pg, CpuContext& ctx, VecV& result) {
  constexpr std::uint64_t none = 1;  // no page begins there
  std::uint64_t readable_page = none;
  unsigned char active[lane_count<T>];
  unpack_elements<T>(pg, active);
  for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
    if (active[i] == 0) continue;
    const std::uint64_t address = address_of(i), last = address + M - 1;
    if (page_of(address) == readable_page && page_of(last) == readable_page) {
      set_lane<T>(result.bytes, i, readable_element<T, M>(address));
      continue;
    }
    bool fault = false;
    set_lane<T>(result.bytes, i, read_element<T, M>(address, readable_page == none ? 0 : 1, &fault, ctx));
    if (fault) return i;
    readable_page = page_of(last);
  }
  return lanes<T>(ctx);
}

// (Pg, address operands): active lanes from memory up to the first fault, which no lane delivers, not even the first:
// from its lane on all lanes are 0, active or not, and their elements of FFR become 0; the others of FFR stay.
template <std::size_t M, class Form>
constexpr auto loading_to_fault(Form form) {
  return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b) {
    const auto address_of = form.template operator()<T, M>(ctx, a, b);
    VecV result;
    if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(a)>> &&
                  std::is_arithmetic_v<std::remove_cvref_t<decltype(b)>>) {
      if (load_whole_vector<T, M>(address_of(0), pg, ctx, result)) return result;
    }
    result = {};
    for (std::size_t i = load_to_fault<T, M>(address_of, pg, ctx, result); i < lanes<T>(ctx); ++i)
      set_element<T>(ctx.ffr, i, false);
    return result;
  };
}

// (Pg, address operands, Zt): active lanes to memory.
template <std::size_t M, class Form>
constexpr auto storing(Form form) {
  return [form]<class T>(T, CpuContext& ctx, const PredV& pg, const auto& a, const auto& b, const VecV& zt) {
    const auto address_of = form.template operator()<T, M>(ctx, a, b);
    for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
      if (is_active<T>(pg, i)) write_element<M>(lane<T>(zt.bytes, i), address_of(i), ctx);
    }
  };
}

}  // namespace quern::veclib

// The stems of a family, whose names differ by the bytes of an element.
#define QUERN_STEMS_2_4_8(before, after, family, form) \
  constexpr auto before##2##after = family<2>(form);   \
  constexpr auto before##4##after = family<4>(form);   \
  constexpr auto before##8##after = family<8>(form);
#define QUERN_STEMS_1_2_4_8(before, after, family, form) \
  constexpr auto before##1##after = family<1>(form);     \
  QUERN_STEMS_2_4_8(before, after, family, form)
