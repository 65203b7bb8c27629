// Tables whose instructions are still to come, beside the first one.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/integer_arithmetic.h"

namespace quern {
namespace {

constexpr auto table__31_21__15_10 = decode_rows<4>(
    key_bits{"31_21__15_10"},
    row<U8, U16, U32, U64>("AddVVX", "00000100 zz 1 mmmmm 000 000 nnnnn ddddd", direct<sve_add_zzz, Zd, Zn, Zm>));

}  // namespace

constinit const std::span<const decode_row> rows__31_0{};
constinit const std::span<const decode_row> rows__31_9__4_0{};
constinit const std::span<const decode_row> rows__31_4{};
constinit const std::span<const decode_row> rows__31_14__9_9__4_0{};
constinit const std::span<const decode_row> rows__31_9__4_4{};
constinit const std::span<const decode_row> rows__31_10__4_4{};
constinit const std::span<const decode_row> rows__31_9{};
constinit const std::span<const decode_row> rows__31_13__9_6{};
constinit const std::span<const decode_row> rows__31_21__15_10__4_0{};
constinit const std::span<const decode_row> rows__31_10{};
constinit const std::span<const decode_row> rows__31_13__9_8{};
constinit const std::span<const decode_row> rows__31_11{};
constinit const std::span<const decode_row> rows__31_24__21_10{};
constinit const std::span<const decode_row> rows__31_20__15_9__4_4{};
constinit const std::span<const decode_row> rows__31_14__9_9__4_4{};
constinit const std::span<const decode_row> rows__31_13__4_4{};
constinit const std::span<const decode_row> rows__31_13__9_9{};
constinit const std::span<const decode_row> rows__31_14__9_9{};
constinit const std::span<const decode_row> rows__31_19__15_10{};
constinit const std::span<const decode_row> rows__31_24__21_21__19_10{};
constinit const std::span<const decode_row> rows__31_13{};
constinit const std::span<const decode_row> rows__31_17__15_13{};
constinit const std::span<const decode_row> rows__31_14{};
constinit const std::span<const decode_row> rows__31_23__21_13{};
constinit const std::span<const decode_row> rows__31_20__15_10{};
constinit const std::span<const decode_row> rows__31_24__21_21__18_10{};
constinit const std::span<const decode_row> rows__31_21__15_10__4_4{};
constinit const std::span<const decode_row> rows__31_24__21_21__17_10{};
constinit const std::span<const decode_row> rows__31_21__15_10 = table__31_21__15_10;
constinit const std::span<const decode_row> rows__31_21__15_11{};
constinit const std::span<const decode_row> rows__31_20__15_14__9_9__4_4{};
constinit const std::span<const decode_row> rows__31_24__21_21__16_10{};
constinit const std::span<const decode_row> rows__31_23__21_21__15_10{};
constinit const std::span<const decode_row> rows__31_21__15_13__4_4{};
constinit const std::span<const decode_row> rows__31_21__15_12{};
constinit const std::span<const decode_row> rows__31_20__15_13{};
constinit const std::span<const decode_row> rows__31_21__15_13{};
constinit const std::span<const decode_row> rows__31_20__15_14{};
constinit const std::span<const decode_row> rows__31_18{};
constinit const std::span<const decode_row> rows__31_22__15_13__4_4{};
constinit const std::span<const decode_row> rows__31_21__15_14{};
constinit const std::span<const decode_row> rows__31_21__13_13__4_4{};
constinit const std::span<const decode_row> rows__31_22__15_13{};
constinit const std::span<const decode_row> rows__31_21__15_15{};

}  // namespace quern
