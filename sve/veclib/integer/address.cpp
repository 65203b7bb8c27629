// Addresses in vectors, and vector lengths.
#include "sve/veclib/integer/address.h"

#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto whole = [](auto m) { return m; };
constexpr auto sign_extended = [](auto m) { return as_unsigned(std::int64_t{static_cast<std::int32_t>(m)}); };
constexpr auto zero_extended = [](auto m) { return std::uint64_t{static_cast<std::uint32_t>(m)}; };

template <class Extension>
constexpr auto address(Extension extension, int shift) {
  return unpredicated([=](auto n, auto m) { return n + (extension(m) << shift); });
}

constexpr auto LEA1VV = address(whole, 0);
constexpr auto LEA2VV = address(whole, 1);
constexpr auto LEA4VV = address(whole, 2);
constexpr auto LEA8VV = address(whole, 3);
constexpr auto LEA1XVV = address(sign_extended, 0);
constexpr auto LEA2XVV = address(sign_extended, 1);
constexpr auto LEA4XVV = address(sign_extended, 2);
constexpr auto LEA8XVV = address(sign_extended, 3);
constexpr auto LEA1YVV = address(zero_extended, 0);
constexpr auto LEA2YVV = address(zero_extended, 1);
constexpr auto LEA4YVV = address(zero_extended, 2);
constexpr auto LEA8YVV = address(zero_extended, 3);

constexpr auto AddVLX = [](auto, const CpuContext& ctx, std::uint64_t value, std::int64_t imm) {
  return value + static_cast<std::uint64_t>(imm) * vector_bytes(ctx);
};
constexpr auto VLX = [](auto tag, const CpuContext& ctx, std::int64_t imm) { return AddVLX(tag, ctx, 0, imm); };
constexpr auto AddPLX = [](auto, const CpuContext& ctx, std::uint64_t value, std::int64_t imm) {
  return value + static_cast<std::uint64_t>(imm) * (vector_bytes(ctx) / 8);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/address.def"
#include "sve/veclib/members/define.inc"
