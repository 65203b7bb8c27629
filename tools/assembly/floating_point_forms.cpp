// Assembly of the floating-point instructions on vectors.
#include <array>

#include "tools/assembly/assembly_form.h"

namespace quern {
namespace {

constexpr std::string_view zd_zn = "<Zd>, <Zn>";
constexpr std::string_view zd_zn_zm = "<Zd>, <Zn>, <Zm>";
constexpr std::string_view zd_pg_zn = "<Zd>, <Pg>, <Zn>";
constexpr std::string_view zdn_pg_zm = "<Zdn>, <Pg>, <Zdn>, <Zm>";
constexpr std::string_view zdn_pg_i1 = "<Zdn>, <Pg>, <Zdn>, <i1>";
constexpr std::string_view zda_pg_zn_zm = "<Zda>, <Pg>, <Zn>, <Zm>";
constexpr std::string_view zdn_pg_zm_za = "<Zdn>, <Pg>, <Zm>, <Za>";
constexpr std::string_view pd_pg_zn_zm = "<Pd>, <Pg>, <Zn>, <Zm>";
constexpr std::string_view pd_pg_zn_zero = "<Pd>, <Pg>, <Zn>, #0.0";
constexpr std::string_view vd_pg_zn = "<Vd>, <Pg>, <Zn>";

constexpr auto forms = std::to_array<assembly_form>({
    // Two vectors.
    {"AbdVVM", "FD", "fabd", zdn_pg_zm},
    {"AddVVM", "FD", "fadd", zdn_pg_zm},
    {"DivVVM", "FD", "fdiv", zdn_pg_zm},
    {"DivRVVM", "FD", "fdivr", zdn_pg_zm},
    {"MaxVVM", "FD", "fmax", zdn_pg_zm},
    {"MaxNumVVM", "FD", "fmaxnm", zdn_pg_zm},
    {"MinVVM", "FD", "fmin", zdn_pg_zm},
    {"MinNumVVM", "FD", "fminnm", zdn_pg_zm},
    {"MulVVM", "FD", "fmul", zdn_pg_zm},
    {"MulXVVM", "FD", "fmulx", zdn_pg_zm},
    {"ScaleVVM", "FD", "fscale", zdn_pg_zm},
    {"SubVVM", "FD", "fsub", zdn_pg_zm},
    {"SubRVVM", "FD", "fsubr", zdn_pg_zm},
    {"AddVVX", "FD", "fadd", zd_zn_zm},
    {"MulVVX", "FD", "fmul", zd_zn_zm},
    {"SubVVX", "FD", "fsub", zd_zn_zm},
    {"RecpSVV", "FD", "frecps", zd_zn_zm},
    {"RSqrtSVV", "FD", "frsqrts", zd_zn_zm},
    {"TRISMULVV", "FD", "ftsmul", zd_zn_zm},
    {"TRISSELVV", "FD", "ftssel", zd_zn_zm},
    {"FCADDVVM", "FD", "fcadd", "<Zdn>, <Pg>, <Zdn>, <Zm>, <rot>"},

    // A vector and an immediate or an element.
    {"AddVIM", "FD", "fadd", zdn_pg_i1},
    {"MaxVIM", "FD", "fmax", zdn_pg_i1},
    {"MaxNumVIM", "FD", "fmaxnm", zdn_pg_i1},
    {"MinVIM", "FD", "fmin", zdn_pg_i1},
    {"MinNumVIM", "FD", "fminnm", zdn_pg_i1},
    {"MulVIM", "FD", "fmul", zdn_pg_i1},
    {"SubVIM", "FD", "fsub", zdn_pg_i1},
    {"SubRVIM", "FD", "fsubr", zdn_pg_i1},
    {"MulVVIX", "FD", "fmul", "<Zd>, <Zn>, <Zm><imm>"},
    {"TRIMADDVVI", "FD", "ftmad", "<Zdn>, <Zdn>, <Zm>, <imm3>"},

    // Multiply and accumulate.
    {"FMAVVVM", "FD", "fmla", zda_pg_zn_zm},
    {"FMSVVVM", "FD", "fmls", zda_pg_zn_zm},
    {"FNMAVVVM", "FD", "fnmla", zda_pg_zn_zm},
    {"FNMSVVVM", "FD", "fnmls", zda_pg_zn_zm},
    {"FMADDVVVM", "FD", "fmad", zdn_pg_zm_za},
    {"FMSUBVVVM", "FD", "fmsb", zdn_pg_zm_za},
    {"FNMADDVVVM", "FD", "fnmad", zdn_pg_zm_za},
    {"FNMSUBVVVM", "FD", "fnmsb", zdn_pg_zm_za},
    {"FMAVVVIX", "FD", "fmla", "<Zda>, <Zn>, <Zm><imm>"},
    {"FMSVVVIX", "FD", "fmls", "<Zda>, <Zn>, <Zm><imm>"},
    {"FCMLAVVVM", "FD", "fcmla", "<Zda>, <Pg>, <Zn>, <Zm>, <rot>"},
    {"FCMLAVVVIX", "FD", "fcmla", "<Zda>, <Zn>, <Zm><imm>, <rot>"},

    // One vector.
    {"AbsVM", "FD", "fabs", zd_pg_zn},
    {"NegVM", "FD", "fneg", zd_pg_zn},
    {"FRIntAVM", "FD", "frinta", zd_pg_zn},
    {"FRIntIVM", "FD", "frinti", zd_pg_zn},
    {"FRIntMVM", "FD", "frintm", zd_pg_zn},
    {"FRIntNVM", "FD", "frintn", zd_pg_zn},
    {"FRIntPVM", "FD", "frintp", zd_pg_zn},
    {"FRIntXVM", "FD", "frintx", zd_pg_zn},
    {"FRIntZVM", "FD", "frintz", zd_pg_zn},
    {"RecpXVM", "FD", "frecpx", zd_pg_zn},
    {"SqrtVM", "FD", "fsqrt", zd_pg_zn},
    {"EXPAV", "FD", "fexpa", zd_zn},
    {"RecpEV", "FD", "frecpe", zd_zn},
    {"RSqrtEV", "FD", "frsqrte", zd_zn},

    // Conversions.
    {"ExtndFVM", "FD", "fcvt", zd_pg_zn},
    {"ExtndHVM", "FD", "fcvt", zd_pg_zn},
    {"TruncDVM", "FH", "fcvt", zd_pg_zn},
    {"TruncFVM", "H", "fcvt", zd_pg_zn},
    {"FromDVM", "U", "fcvtzu", zd_pg_zn},
    {"FromDVM", "S", "fcvtzs", zd_pg_zn},
    {"FromFVM", "U", "fcvtzu", zd_pg_zn},
    {"FromFVM", "S", "fcvtzs", zd_pg_zn},
    {"FromHVM", "U", "fcvtzu", zd_pg_zn},
    {"FromHVM", "S", "fcvtzs", zd_pg_zn},
    {"FromS2VM", "FD", "scvtf", zd_pg_zn},
    {"FromS4VM", "FD", "scvtf", zd_pg_zn},
    {"FromS8VM", "FD", "scvtf", zd_pg_zn},
    {"FromU2VM", "FD", "ucvtf", zd_pg_zn},
    {"FromU4VM", "FD", "ucvtf", zd_pg_zn},
    {"FromU8VM", "FD", "ucvtf", zd_pg_zn},

    // Comparisons.
    {"AcGEVVZ", "FD", "facge", pd_pg_zn_zm},
    {"AcGTVVZ", "FD", "facgt", pd_pg_zn_zm},
    {"CmpEQVVZ", "FD", "fcmeq", pd_pg_zn_zm},
    {"CmpGEVVZ", "FD", "fcmge", pd_pg_zn_zm},
    {"CmpGTVVZ", "FD", "fcmgt", pd_pg_zn_zm},
    {"CmpNEVVZ", "FD", "fcmne", pd_pg_zn_zm},
    {"CmpUNVVZ", "FD", "fcmuo", pd_pg_zn_zm},
    {"CmpEQV0Z", "FD", "fcmeq", pd_pg_zn_zero},
    {"CmpGEV0Z", "FD", "fcmge", pd_pg_zn_zero},
    {"CmpGTV0Z", "FD", "fcmgt", pd_pg_zn_zero},
    {"CmpLEV0Z", "FD", "fcmle", pd_pg_zn_zero},
    {"CmpLTV0Z", "FD", "fcmlt", pd_pg_zn_zero},
    {"CmpNEV0Z", "FD", "fcmne", pd_pg_zn_zero},

    // Reductions.
    {"AddReduceAV", "FD", "fadda", "<Vdn>, <Pg>, <Vdn>, <Zm>"},
    {"AddReduceFV", "FD", "faddv", vd_pg_zn},
    {"MaxReduceFV", "FD", "fmaxv", vd_pg_zn},
    {"MaxNumReduceFV", "FD", "fmaxnmv", vd_pg_zn},
    {"MinReduceFV", "FD", "fminv", vd_pg_zn},
    {"MinNumReduceFV", "FD", "fminnmv", vd_pg_zn},
});

}  // namespace

std::span<const assembly_form> floating_point_forms() { return forms; }

}  // namespace quern
