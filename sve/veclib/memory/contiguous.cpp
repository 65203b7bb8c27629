// Contiguous loads and stores.
#include "sve/veclib/memory/contiguous.h"

#include "sve/veclib/memory/element_access.h"

namespace quern::veclib {
namespace {

QUERN_STEMS_1_2_4_8(CLoad, SIZ, loading, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(CLoad, LSSZ, loading, elements_from_scalar)
QUERN_STEMS_1_2_4_8(CLoadNT, SIZ, loading, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(CLoadNT, LSSZ, loading, elements_from_scalar)
QUERN_STEMS_1_2_4_8(CStore, SIZ, storing, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(CStore, LSSZ, storing, elements_from_scalar)
QUERN_STEMS_1_2_4_8(CStoreNT, SIZ, storing, vectors_from_scalar)
QUERN_STEMS_1_2_4_8(CStoreNT, LSSZ, storing, elements_from_scalar)

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/memory/contiguous.def"
#include "sve/veclib/members/define.inc"
