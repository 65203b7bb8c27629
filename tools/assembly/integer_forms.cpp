// Assembly of the integer arithmetic, shift, reduction and address instructions on vectors.
#include <array>

#include "tools/assembly/assembly_form.h"

namespace quern {
namespace {

constexpr std::string_view zd_zn_zm = "<Zd>, <Zn>, <Zm>";
constexpr std::string_view zd_zn_const = "<Zd>, <Zn>, <const>";
constexpr std::string_view zd_pg_zn = "<Zd>, <Pg>, <Zn>";
constexpr std::string_view zdn_imm = "<Zdn>, <Zdn>, <imm>";
constexpr std::string_view zdn_imm8 = "<Zdn>, <Zdn>, <imm8>";
constexpr std::string_view zdn_mask = "<Zdn>, <Zdn>, <imm13>";
constexpr std::string_view zdn_pg_const = "<Zdn>, <Pg>, <Zdn>, <const>";
constexpr std::string_view zdn_pg_zm = "<Zdn>, <Pg>, <Zdn>, <Zm>";
constexpr std::string_view zda_pg_zn_zm = "<Zda>, <Pg>, <Zn>, <Zm>";
constexpr std::string_view zdn_pg_zm_za = "<Zdn>, <Pg>, <Zm>, <Za>";
constexpr std::string_view vd_pg_zn = "<Vd>, <Pg>, <Zn>";

constexpr auto forms = std::to_array<assembly_form>({
    // Two vectors, predicated.
    {"AbdVVM", "U", "uabd", zdn_pg_zm},
    {"AbdVVM", "S", "sabd", zdn_pg_zm},
    {"AddVVM", "U", "add", zdn_pg_zm},
    {"AndVVM", "U", "and", zdn_pg_zm},
    {"BicVVM", "U", "bic", zdn_pg_zm},
    {"DivVVM", "U", "udiv", zdn_pg_zm},
    {"DivVVM", "S", "sdiv", zdn_pg_zm},
    {"DivRVVM", "U", "udivr", zdn_pg_zm},
    {"DivRVVM", "S", "sdivr", zdn_pg_zm},
    {"MaxVVM", "U", "umax", zdn_pg_zm},
    {"MaxVVM", "S", "smax", zdn_pg_zm},
    {"MinVVM", "U", "umin", zdn_pg_zm},
    {"MinVVM", "S", "smin", zdn_pg_zm},
    {"MulVVM", "S", "mul", zdn_pg_zm},
    {"MulHVVM", "U", "umulh", zdn_pg_zm},
    {"MulHVVM", "S", "smulh", zdn_pg_zm},
    {"OrVVM", "U", "orr", zdn_pg_zm},
    {"SubVVM", "U", "sub", zdn_pg_zm},
    {"SubRVVM", "U", "subr", zdn_pg_zm},
    {"XorVVM", "U", "eor", zdn_pg_zm},

    // Two vectors, unpredicated.
    {"AddVVX", "U", "add", zd_zn_zm},
    {"AndVVX", "U", "and", zd_zn_zm},
    {"BicVVX", "U", "bic", zd_zn_zm},
    {"OrVVX", "U", "orr", zd_zn_zm},
    {"SubVVX", "U", "sub", zd_zn_zm},
    {"XorVVX", "U", "eor", zd_zn_zm},
    {"QAddVVX", "U", "uqadd", zd_zn_zm},
    {"QAddVVX", "S", "sqadd", zd_zn_zm},
    {"QSubVVX", "U", "uqsub", zd_zn_zm},
    {"QSubVVX", "S", "sqsub", zd_zn_zm},

    // A vector and an immediate.
    {"AddVIX", "U", "add", zdn_imm},
    {"SubVIX", "U", "sub", zdn_imm},
    {"SubRVIX", "U", "subr", zdn_imm},
    {"QAddVIX", "U", "uqadd", zdn_imm},
    {"QAddVIX", "S", "sqadd", zdn_imm},
    {"QSubVIX", "U", "uqsub", zdn_imm},
    {"QSubVIX", "S", "sqsub", zdn_imm},
    {"MaxVIX", "U", "umax", zdn_imm8},
    {"MaxVIX", "S", "smax", zdn_imm8},
    {"MinVIX", "U", "umin", zdn_imm8},
    {"MinVIX", "S", "smin", zdn_imm8},
    {"MulVIX", "S", "mul", zdn_imm8},
    {"AndVIX", "U", "and", zdn_mask},
    {"OrVIX", "U", "orr", zdn_mask},
    {"XorVIX", "U", "eor", zdn_mask},

    // Multiply and accumulate.
    {"MLAVVVM", "S", "mla", zda_pg_zn_zm},
    {"MLSVVVM", "S", "mls", zda_pg_zn_zm},
    {"MADDVVVM", "S", "mad", zdn_pg_zm_za},
    {"MSUBVVVM", "S", "msb", zdn_pg_zm_za},
    {"DotVVVX", "U", "udot", "<Zda>, <Zn>, <Zm>"},
    {"DotVVVX", "S", "sdot", "<Zda>, <Zn>, <Zm>"},
    {"DotVVVIX", "U", "udot", "<Zda>, <Zn>, <Zm><imm>"},
    {"DotVVVIX", "S", "sdot", "<Zda>, <Zn>, <Zm><imm>"},

    // One vector.
    {"AbsVM", "S", "abs", zd_pg_zn},
    {"ClsVM", "U", "cls", zd_pg_zn},
    {"ClzVM", "U", "clz", zd_pg_zn},
    {"CntVM", "U", "cnt", zd_pg_zn},
    {"InvVM", "U", "not", zd_pg_zn},
    {"NegVM", "S", "neg", zd_pg_zn},
    {"NotVM", "U", "cnot", zd_pg_zn},
    {"RBitVM", "U", "rbit", zd_pg_zn},
    {"Rev1V", "U", "revb", zd_pg_zn},
    {"Rev2V", "U", "revh", zd_pg_zn},
    {"Rev4V", "U", "revw", zd_pg_zn},
    {"Extnd12VM", "U", "uxtb", zd_pg_zn},
    {"Extnd12VM", "S", "sxtb", zd_pg_zn},
    {"Extnd14VM", "U", "uxtb", zd_pg_zn},
    {"Extnd14VM", "S", "sxtb", zd_pg_zn},
    {"Extnd18VM", "U", "uxtb", zd_pg_zn},
    {"Extnd18VM", "S", "sxtb", zd_pg_zn},
    {"Extnd24VM", "U", "uxth", zd_pg_zn},
    {"Extnd24VM", "S", "sxth", zd_pg_zn},
    {"Extnd28VM", "U", "uxth", zd_pg_zn},
    {"Extnd28VM", "S", "sxth", zd_pg_zn},
    {"Extnd48VM", "U", "uxtw", zd_pg_zn},
    {"Extnd48VM", "S", "sxtw", zd_pg_zn},

    // Shifts.
    {"ShlVIM", "U", "lsl", zdn_pg_const},
    {"ShrVIM", "U", "lsr", zdn_pg_const},
    {"ShrVIM", "S", "asr", zdn_pg_const},
    {"ShrDVIM", "S", "asrd", zdn_pg_const},
    {"ShlVIX", "U", "lsl", zd_zn_const},
    {"ShrVIX", "U", "lsr", zd_zn_const},
    {"ShrVIX", "S", "asr", zd_zn_const},
    {"ShlVVM", "U", "lsl", zdn_pg_zm},
    {"ShlRVVM", "U", "lslr", zdn_pg_zm},
    {"ShrVVM", "U", "lsr", zdn_pg_zm},
    {"ShrVVM", "S", "asr", zdn_pg_zm},
    {"ShrRVVM", "U", "lsrr", zdn_pg_zm},
    {"ShrRVVM", "S", "asrr", zdn_pg_zm},
    {"ShlVWM", "U", "lsl", zdn_pg_zm},
    {"ShrVWM", "U", "lsr", zdn_pg_zm},
    {"ShrVWM", "S", "asr", zdn_pg_zm},
    {"ShlVWX", "U", "lsl", zd_zn_zm},
    {"ShrVWX", "U", "lsr", zd_zn_zm},
    {"ShrVWX", "S", "asr", zd_zn_zm},

    // Reductions.
    {"AddReduceV", "U", "uaddv", vd_pg_zn},
    {"AddReduceV", "S", "saddv", vd_pg_zn},
    {"AndReduceV", "U", "andv", vd_pg_zn},
    {"MaxReduceV", "U", "umaxv", vd_pg_zn},
    {"MaxReduceV", "S", "smaxv", vd_pg_zn},
    {"MinReduceV", "U", "uminv", vd_pg_zn},
    {"MinReduceV", "S", "sminv", vd_pg_zn},
    {"OrReduceV", "U", "orv", vd_pg_zn},
    {"XorReduceV", "U", "eorv", vd_pg_zn},

    // Series and addresses.
    {"IndexII", "S", "index", "<Zd>, <imm5>, <imm5b>"},
    {"IndexIS", "S", "index", "<Zd>, <imm5>, <Rm>"},
    {"IndexSI", "S", "index", "<Zd>, <Rn>, <imm5>"},
    {"IndexSS", "S", "index", "<Zd>, <Rn>, <Rm>"},
    {"AddPLX", "S", "addpl", "<Xd|SP>, <Xn|SP>, <imm6>"},
    {"AddVLX", "S", "addvl", "<Xd|SP>, <Xn|SP>, <imm6>"},
    {"VLX", "S", "rdvl", "<Rd>, <imm6>"},
    {"LEA1VV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA2VV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA4VV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA8VV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA1XVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA2XVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA4XVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA8XVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA1YVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA2YVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA4YVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
    {"LEA8YVV", "U", "adr", "<Zd>, [<Zn>, <Zm>]"},
});

}  // namespace

std::span<const assembly_form> integer_forms() { return forms; }

}  // namespace quern
