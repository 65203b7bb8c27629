// Whole registers, as elements of the tag's width.
#include "sve/veclib/memory/whole_register.h"

#include "sve/veclib/memory/element_access.h"

namespace quern::veclib {
namespace {

// The bytes that a register has in memory.
std::size_t image_bytes(const VecV&, const CpuContext& ctx) { return vector_bytes(ctx); }
std::size_t image_bytes(const PredV&, const CpuContext& ctx) { return vector_bytes(ctx) / 8; }

template <class T>
using register_of = std::conditional_t<std::is_same_v<T, tags::P>, PredV, VecV>;

constexpr auto FillSI = []<class T>(T, CpuContext& ctx, std::uint64_t base, std::int64_t imm) {
  register_of<T> value;
  unsigned char image[sizeof value]{};
  const std::size_t bytes = image_bytes(value, ctx);
  const std::uint64_t start = base + static_cast<std::uint64_t>(imm) * bytes;
  for (std::size_t at = 0; at != bytes; at += sizeof(T))
    set_lane<T>(image + at, 0, read_element<T, sizeof(T)>(start + at, ctx));
  std::memcpy(&value, image, sizeof value);
  return value;
};

constexpr auto SpillSI = []<class T>(T, CpuContext& ctx, std::uint64_t base, std::int64_t imm,
                                     const register_of<T>& value) {
  unsigned char image[sizeof value];
  std::memcpy(image, &value, sizeof value);
  const std::size_t bytes = image_bytes(value, ctx);
  const std::uint64_t start = base + static_cast<std::uint64_t>(imm) * bytes;
  for (std::size_t at = 0; at != bytes; at += sizeof(T))
    write_element<sizeof(T)>(lane<T>(image + at, 0), start + at, ctx);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/memory/whole_register.def"
#include "sve/veclib/members/define.inc"
