// Assembly of the loads, stores and prefetches of consecutive elements, and of the broadcasting loads.
#include <array>

#include "tools/assembly/assembly_form.h"

namespace quern {
namespace {

constexpr std::string_view zt_pg_imm4 = "<Zt>, <Pg>, [<Rn|SP>, <imm4>]";
constexpr std::string_view zt_pg_rm = "<Zt>, <Pg>, [<Rn|SP>, <Rm>]";
constexpr std::string_view zt_pg_imm6 = "<Zt>, <Pg>, [<Rn|SP>, <imm6>]";

constexpr auto forms = std::to_array<assembly_form>({
    // One vector, scalar base and immediate.
    {"CLoad1SIZ", "U", "ld1b", zt_pg_imm4},
    {"CLoad1SIZ", "S", "ld1sb", zt_pg_imm4},
    {"CLoad2SIZ", "U", "ld1h", zt_pg_imm4},
    {"CLoad2SIZ", "S", "ld1sh", zt_pg_imm4},
    {"CLoad4SIZ", "U", "ld1w", zt_pg_imm4},
    {"CLoad4SIZ", "S", "ld1sw", zt_pg_imm4},
    {"CLoad8SIZ", "U", "ld1d", zt_pg_imm4},
    {"CLoadNF1SIZ", "U", "ldnf1b", zt_pg_imm4},
    {"CLoadNF1SIZ", "S", "ldnf1sb", zt_pg_imm4},
    {"CLoadNF2SIZ", "U", "ldnf1h", zt_pg_imm4},
    {"CLoadNF2SIZ", "S", "ldnf1sh", zt_pg_imm4},
    {"CLoadNF4SIZ", "U", "ldnf1w", zt_pg_imm4},
    {"CLoadNF4SIZ", "S", "ldnf1sw", zt_pg_imm4},
    {"CLoadNF8SIZ", "U", "ldnf1d", zt_pg_imm4},
    {"CLoadNT1SIZ", "U", "ldnt1b", zt_pg_imm4},
    {"CLoadNT2SIZ", "U", "ldnt1h", zt_pg_imm4},
    {"CLoadNT4SIZ", "U", "ldnt1w", zt_pg_imm4},
    {"CLoadNT8SIZ", "U", "ldnt1d", zt_pg_imm4},
    {"CStore1SIZ", "U", "st1b", zt_pg_imm4},
    {"CStore2SIZ", "U", "st1h", zt_pg_imm4},
    {"CStore4SIZ", "U", "st1w", zt_pg_imm4},
    {"CStore8SIZ", "U", "st1d", zt_pg_imm4},
    {"CStoreNT1SIZ", "U", "stnt1b", zt_pg_imm4},
    {"CStoreNT2SIZ", "U", "stnt1h", zt_pg_imm4},
    {"CStoreNT4SIZ", "U", "stnt1w", zt_pg_imm4},
    {"CStoreNT8SIZ", "U", "stnt1d", zt_pg_imm4},

    // One vector, scalar base and scalar offset.
    {"CLoad1LSSZ", "U", "ld1b", zt_pg_rm},
    {"CLoad1LSSZ", "S", "ld1sb", zt_pg_rm},
    {"CLoad2LSSZ", "U", "ld1h", zt_pg_rm},
    {"CLoad2LSSZ", "S", "ld1sh", zt_pg_rm},
    {"CLoad4LSSZ", "U", "ld1w", zt_pg_rm},
    {"CLoad4LSSZ", "S", "ld1sw", zt_pg_rm},
    {"CLoad8LSSZ", "U", "ld1d", zt_pg_rm},
    {"CLoadFF1LSSZ", "U", "ldff1b", zt_pg_rm},
    {"CLoadFF1LSSZ", "S", "ldff1sb", zt_pg_rm},
    {"CLoadFF2LSSZ", "U", "ldff1h", zt_pg_rm},
    {"CLoadFF2LSSZ", "S", "ldff1sh", zt_pg_rm},
    {"CLoadFF4LSSZ", "U", "ldff1w", zt_pg_rm},
    {"CLoadFF4LSSZ", "S", "ldff1sw", zt_pg_rm},
    {"CLoadFF8LSSZ", "U", "ldff1d", zt_pg_rm},
    {"CLoadNT1LSSZ", "U", "ldnt1b", zt_pg_rm},
    {"CLoadNT2LSSZ", "U", "ldnt1h", zt_pg_rm},
    {"CLoadNT4LSSZ", "U", "ldnt1w", zt_pg_rm},
    {"CLoadNT8LSSZ", "U", "ldnt1d", zt_pg_rm},
    {"CStore1LSSZ", "U", "st1b", zt_pg_rm},
    {"CStore2LSSZ", "U", "st1h", zt_pg_rm},
    {"CStore4LSSZ", "U", "st1w", zt_pg_rm},
    {"CStore8LSSZ", "U", "st1d", zt_pg_rm},
    {"CStoreNT1LSSZ", "U", "stnt1b", zt_pg_rm},
    {"CStoreNT2LSSZ", "U", "stnt1h", zt_pg_rm},
    {"CStoreNT4LSSZ", "U", "stnt1w", zt_pg_rm},
    {"CStoreNT8LSSZ", "U", "stnt1d", zt_pg_rm},

    // Two to four interleaved vectors.
    {"E2Load1SIZ", "U", "ld2b", zt_pg_imm4},
    {"E2Load2SIZ", "U", "ld2h", zt_pg_imm4},
    {"E2Load4SIZ", "U", "ld2w", zt_pg_imm4},
    {"E2Load8SIZ", "U", "ld2d", zt_pg_imm4},
    {"E3Load1SIZ", "U", "ld3b", zt_pg_imm4},
    {"E3Load2SIZ", "U", "ld3h", zt_pg_imm4},
    {"E3Load4SIZ", "U", "ld3w", zt_pg_imm4},
    {"E3Load8SIZ", "U", "ld3d", zt_pg_imm4},
    {"E4Load1SIZ", "U", "ld4b", zt_pg_imm4},
    {"E4Load2SIZ", "U", "ld4h", zt_pg_imm4},
    {"E4Load4SIZ", "U", "ld4w", zt_pg_imm4},
    {"E4Load8SIZ", "U", "ld4d", zt_pg_imm4},
    {"E2Load1LSSZ", "U", "ld2b", zt_pg_rm},
    {"E2Load2LSSZ", "U", "ld2h", zt_pg_rm},
    {"E2Load4LSSZ", "U", "ld2w", zt_pg_rm},
    {"E2Load8LSSZ", "U", "ld2d", zt_pg_rm},
    {"E3Load1LSSZ", "U", "ld3b", zt_pg_rm},
    {"E3Load2LSSZ", "U", "ld3h", zt_pg_rm},
    {"E3Load4LSSZ", "U", "ld3w", zt_pg_rm},
    {"E3Load8LSSZ", "U", "ld3d", zt_pg_rm},
    {"E4Load1LSSZ", "U", "ld4b", zt_pg_rm},
    {"E4Load2LSSZ", "U", "ld4h", zt_pg_rm},
    {"E4Load4LSSZ", "U", "ld4w", zt_pg_rm},
    {"E4Load8LSSZ", "U", "ld4d", zt_pg_rm},
    {"E2Store1SIZ", "U", "st2b", zt_pg_imm4},
    {"E2Store2SIZ", "U", "st2h", zt_pg_imm4},
    {"E2Store4SIZ", "U", "st2w", zt_pg_imm4},
    {"E2Store8SIZ", "U", "st2d", zt_pg_imm4},
    {"E3Store1SIZ", "U", "st3b", zt_pg_imm4},
    {"E3Store2SIZ", "U", "st3h", zt_pg_imm4},
    {"E3Store4SIZ", "U", "st3w", zt_pg_imm4},
    {"E3Store8SIZ", "U", "st3d", zt_pg_imm4},
    {"E4Store1SIZ", "U", "st4b", zt_pg_imm4},
    {"E4Store2SIZ", "U", "st4h", zt_pg_imm4},
    {"E4Store4SIZ", "U", "st4w", zt_pg_imm4},
    {"E4Store8SIZ", "U", "st4d", zt_pg_imm4},
    {"E2Store1LSSZ", "U", "st2b", zt_pg_rm},
    {"E2Store2LSSZ", "U", "st2h", zt_pg_rm},
    {"E2Store4LSSZ", "U", "st2w", zt_pg_rm},
    {"E2Store8LSSZ", "U", "st2d", zt_pg_rm},
    {"E3Store1LSSZ", "U", "st3b", zt_pg_rm},
    {"E3Store2LSSZ", "U", "st3h", zt_pg_rm},
    {"E3Store4LSSZ", "U", "st3w", zt_pg_rm},
    {"E3Store8LSSZ", "U", "st3d", zt_pg_rm},
    {"E4Store1LSSZ", "U", "st4b", zt_pg_rm},
    {"E4Store2LSSZ", "U", "st4h", zt_pg_rm},
    {"E4Store4LSSZ", "U", "st4w", zt_pg_rm},
    {"E4Store8LSSZ", "U", "st4d", zt_pg_rm},

    // Broadcasts.
    {"LoadDup1SIZ", "U", "ld1rb", zt_pg_imm6},
    {"LoadDup1SIZ", "S", "ld1rsb", zt_pg_imm6},
    {"LoadDup2SIZ", "U", "ld1rh", zt_pg_imm6},
    {"LoadDup2SIZ", "S", "ld1rsh", zt_pg_imm6},
    {"LoadDup4SIZ", "U", "ld1rw", zt_pg_imm6},
    {"LoadDup4SIZ", "S", "ld1rsw", zt_pg_imm6},
    {"LoadDup8SIZ", "U", "ld1rd", zt_pg_imm6},
    {"LoadDup1QSIZ", "U", "ld1rqb", zt_pg_imm4},
    {"LoadDup2QSIZ", "U", "ld1rqh", zt_pg_imm4},
    {"LoadDup4QSIZ", "U", "ld1rqw", zt_pg_imm4},
    {"LoadDup8QSIZ", "U", "ld1rqd", zt_pg_imm4},
    {"LoadDup1QSSZ", "U", "ld1rqb", zt_pg_rm},
    {"LoadDup2QSSZ", "U", "ld1rqh", zt_pg_rm},
    {"LoadDup4QSSZ", "U", "ld1rqw", zt_pg_rm},
    {"LoadDup8QSSZ", "U", "ld1rqd", zt_pg_rm},

    // Whole registers.
    {"FillSI", "U", "ldr", "<Zt>, [<Rn|SP>, <imm9>]"},
    {"FillSI", "P", "ldr", "<Pt>, [<Rn|SP>, <imm9>]"},
    {"SpillSI", "U", "str", "<Zt>, [<Rn|SP>, <imm9>]"},
    {"SpillSI", "P", "str", "<Pt>, [<Rn|SP>, <imm9>]"},

    // Prefetches.
    {"Prefetch1SI", "U", "prfb", "<prfop>, <Pg>, [<Rn|SP>, <imm6>]"},
    {"Prefetch2SI", "U", "prfh", "<prfop>, <Pg>, [<Rn|SP>, <imm6>]"},
    {"Prefetch4SI", "U", "prfw", "<prfop>, <Pg>, [<Rn|SP>, <imm6>]"},
    {"Prefetch8SI", "U", "prfd", "<prfop>, <Pg>, [<Rn|SP>, <imm6>]"},
    {"Prefetch1LSS", "U", "prfb", "<prfop>, <Pg>, [<Rn|SP>, <Rm>]"},
    {"Prefetch2LSS", "U", "prfh", "<prfop>, <Pg>, [<Rn|SP>, <Rm>]"},
    {"Prefetch4LSS", "U", "prfw", "<prfop>, <Pg>, [<Rn|SP>, <Rm>]"},
    {"Prefetch8LSS", "U", "prfd", "<prfop>, <Pg>, [<Rn|SP>, <Rm>]"},
});

}  // namespace

std::span<const assembly_form> contiguous_forms() { return forms; }

}  // namespace quern
