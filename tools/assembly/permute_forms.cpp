// Assembly of the permutes and element moves.
#include <array>

#include "tools/assembly/assembly_form.h"

namespace quern {
namespace {

constexpr std::string_view fp_scalar = "BHFD";  // the tags of forms with a scalar in a floating-point register
constexpr std::string_view zd_zn = "<Zd>, <Zn>";
constexpr std::string_view zd_zn_zm = "<Zd>, <Zn>, <Zm>";
constexpr std::string_view zd_pg_zn = "<Zd>, <Pg>, <Zn>";
constexpr std::string_view zdn_pg_zm = "<Zdn>, <Pg>, <Zdn>, <Zm>";
constexpr std::string_view rdn_pg_zm = "<Rdn>, <Pg>, <Rdn>, <Zm>";
constexpr std::string_view vdn_pg_zm = "<Vdn>, <Pg>, <Vdn>, <Zm>";

constexpr auto forms = std::to_array<assembly_form>({
    // Permutes.
    {"CompressVV", "U", "compact", zd_pg_zn},
    {"ReverseV", "U", "rev", zd_zn},
    {"SlideVI", "U", "ext", "<Zdn>, <Zdn>, <Zm>, <imm8>"},
    {"SpliceVV", "U", "splice", zdn_pg_zm},
    {"TblVV", "U", "tbl", "<Zd>, <Zn>, <Zm>"},
    {"Trn1VV", "U", "trn1", zd_zn_zm},
    {"Trn2VV", "U", "trn2", zd_zn_zm},
    {"Uzp1VV", "U", "uzp1", zd_zn_zm},
    {"Uzp2VV", "U", "uzp2", zd_zn_zm},
    {"Zip1VV", "U", "zip1", zd_zn_zm},
    {"Zip2VV", "U", "zip2", zd_zn_zm},
    {"UnpackHiV", "U", "uunpkhi", zd_zn},
    {"UnpackHiV", "S", "sunpkhi", zd_zn},
    {"UnpackLoV", "U", "uunpklo", zd_zn},
    {"UnpackLoV", "S", "sunpklo", zd_zn},

    // To a scalar, or to a vector's first element.
    {"CondXASV", "U", "clasta", rdn_pg_zm},
    {"CondXASV", fp_scalar, "clasta", vdn_pg_zm},
    {"CondXBSV", "U", "clastb", rdn_pg_zm},
    {"CondXBSV", fp_scalar, "clastb", vdn_pg_zm},
    {"VCondXAVV", "U", "clasta", zdn_pg_zm},
    {"VCondXBVV", "U", "clastb", zdn_pg_zm},
    {"LastAV", "U", "lasta", "<Rd>, <Pg>, <Zn>"},
    {"LastAV", fp_scalar, "lasta", "<Vd>, <Pg>, <Zn>"},
    {"LastBV", "U", "lastb", "<Rd>, <Pg>, <Zn>"},
    {"LastBV", fp_scalar, "lastb", "<Vd>, <Pg>, <Zn>"},

    // To all elements, or to the active ones.
    {"DupI", "S", "dup", "<Zd>, <imm>"},
    {"DupI", "FD", "fdup", "<Zd>, <imm8>"},
    {"DupIM", "S", "cpy", "<Zd>, <Pg>, <imm>"},
    {"DupIM", "FD", "fcpy", "<Zd>, <Pg>, <imm8>"},
    {"DupIZ", "S", "cpy", "<Zd>, <Pg>, <imm>"},
    {"DupMaskI", "S", "dupm", "<Zd>, <imm13>"},
    {"DupS", "U", "dup", "<Zd>, <Rn|SP>"},
    {"DupSM", "U", "cpy", "<Zd>, <Pg>, <Rn|SP>"},
    {"DupSM", fp_scalar, "cpy", "<Zd>, <Pg>, <Vn>"},
    {"ExtDupVI", "U", "dup", "<Zd>, <Zn><imm>"},
    {"InsertS", "U", "insr", "<Zdn>, <Rm>"},
    {"InsertS", fp_scalar, "insr", "<Zdn>, <Vm>"},

    // Whole vectors.
    {"MovePrefix1VM", "U", "movprfx", zd_pg_zn},
    {"MovePrefix1VZ", "U", "movprfx", zd_pg_zn},
    {"SpecialMoveV", "U", "movprfx", zd_zn},
    {"SelVV", "U", "sel", "<Zd>, <Pg>, <Zn>, <Zm>"},
});

}  // namespace

std::span<const assembly_form> permute_forms() { return forms; }

}  // namespace quern
