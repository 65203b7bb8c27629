// Conversions between single, double and integers.
#include "sve/handlers/floating_point/float_families.h"
#include "sve/handlers/floating_point/host_float.h"

using namespace quern;

namespace {

using lanes_of_32_bits = element_types<singles>;
using lanes_of_64_bits = element_types<doubles>;

}  // namespace

#define CONVERT(name, lanes, conversion)                                                                       \
  aarch64_decode_rc sve_##name##_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) { \
    return float_unary<lanes>(state, zd, pg, zn, [](host_fp& fp, auto n) { return fp.conversion(n); });        \
  }
CONVERT(fcvt_s2d, lanes_of_64_bits, fcvt_s2d)
CONVERT(fcvt_d2s, lanes_of_64_bits, fcvt_d2s)
CONVERT(fcvtzs_s2s, lanes_of_32_bits, fcvtzs)
CONVERT(fcvtzs_s2d, lanes_of_64_bits, fcvtzs_s2d)
CONVERT(fcvtzs_d2s, lanes_of_64_bits, fcvtzs_d2s)
CONVERT(fcvtzs_d2d, lanes_of_64_bits, fcvtzs)
CONVERT(fcvtzu_d2s, lanes_of_64_bits, fcvtzu_d2s)
CONVERT(fcvtzu_d2d, lanes_of_64_bits, fcvtzu)
CONVERT(scvtf_s2s, lanes_of_32_bits, scvtf)
CONVERT(scvtf_s2d, lanes_of_64_bits, scvtf_s2d)
CONVERT(scvtf_d2s, lanes_of_64_bits, scvtf_d2s)
CONVERT(scvtf_d2d, lanes_of_64_bits, scvtf)
CONVERT(ucvtf_s2s, lanes_of_32_bits, ucvtf)
CONVERT(ucvtf_s2d, lanes_of_64_bits, ucvtf_s2d)
CONVERT(ucvtf_d2d, lanes_of_64_bits, ucvtf)
#undef CONVERT
