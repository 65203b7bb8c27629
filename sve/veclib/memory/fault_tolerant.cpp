// Contiguous loads that report a fault in FFR.
#include "sve/veclib/memory/fault_tolerant.h"

#include "sve/veclib/memory/element_access.h"

namespace quern::veclib {
namespace {

QUERN_STEMS_1_2_4_8(CLoadFF, LSSZ, loading_to_fault, elements_from_scalar)
QUERN_STEMS_1_2_4_8(CLoadNF, SIZ, loading_to_fault, vectors_from_scalar)

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/memory/fault_tolerant.def"
#include "sve/veclib/members/define.inc"
