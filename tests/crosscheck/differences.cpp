// Where a direct handler and the library's function of the same name differ on purpose.
#include "tests/crosscheck/differences.h"

#include <array>

namespace quern {
namespace {

// A predicate byte is 0 or 1 wherever an instruction wrote it; other values can stand only in a register that the
// program has not written yet.
bool has_rubbish(const decode_row&, const test_case& c) { return !c.clean; }

constexpr const char* whole_bytes =
    "the handler tests the source's bytes whole, the library their bit 0, which is the same for all that an "
    "instruction writes";

constexpr std::array table{
    deviation{"sve_nor_pppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkn_ppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkns_ppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkns_ppp", part::nzcv, has_rubbish, true, whole_bytes},
    deviation{"sve_brkpb_pppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkpbs_pppp", part::p, has_rubbish, true, whole_bytes},
    deviation{"sve_brkpbs_pppp", part::nzcv, has_rubbish, true, whole_bytes},
};

}  // namespace

std::span<const deviation> known_differences() { return table; }

}  // namespace quern
