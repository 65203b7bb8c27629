// Assembly of the instructions on predicates: logic, breaks, comparisons of integers, loops, counts.
#include <array>

#include "tools/assembly/assembly_form.h"

namespace quern {
namespace {

constexpr std::string_view pd_pg_pn = "<Pd>, <Pg>, <Pn>";
constexpr std::string_view pdn_pg_pn = "<Pdn>, <Pg>, <Pn>, <Pdn>";
constexpr std::string_view pd_pg_pn_pm = "<Pd>, <Pg>, <Pn>, <Pm>";
constexpr std::string_view pd_pn = "<Pd>, <Pn>";
constexpr std::string_view pd_pn_pm = "<Pd>, <Pn>, <Pm>";
constexpr std::string_view pd_pg_zn_zm = "<Pd>, <Pg>, <Zn>, <Zm>";
constexpr std::string_view pd_pg_zn_imm5 = "<Pd>, <Pg>, <Zn>, <imm5>";
constexpr std::string_view pd_pg_zn_imm7 = "<Pd>, <Pg>, <Zn>, <imm7>";
constexpr std::string_view pd_rn_rm = "<Pd>, <Rn>, <Rm>";
constexpr std::string_view rdn_multiple = "<Rdn>, <pattern>, <imm4>";
constexpr std::string_view rdn_by_32_bits = "<Rdn=x>, <Rdn>, <pattern>, <imm4>";
constexpr std::string_view zdn_multiple = "<Zdn>, <pattern>, <imm4>";
constexpr std::string_view rdn_pm = "<Rdn>, <Pm>";
constexpr std::string_view zdn_pm = "<Zdn>, <Pm>";
constexpr std::string_view rdn_pm_by_32_bits = "<Rdn=x>, <Pm>, <Rdn>";

constexpr auto forms = std::to_array<assembly_form>({
    // Logic.
    {"AndPPZ", "P", "and", pd_pg_pn_pm},
    {"AndFlgPPZ", "P", "ands", pd_pg_pn_pm},
    {"BicPPZ", "P", "bic", pd_pg_pn_pm},
    {"BicFlgPPZ", "P", "bics", pd_pg_pn_pm},
    {"NandPPZ", "P", "nand", pd_pg_pn_pm},
    {"NandFlgPPZ", "P", "nands", pd_pg_pn_pm},
    {"NorPPZ", "P", "nor", pd_pg_pn_pm},
    {"NorFlgPPZ", "P", "nors", pd_pg_pn_pm},
    {"OrPPZ", "P", "orr", pd_pg_pn_pm},
    {"OrFlgPPZ", "P", "orrs", pd_pg_pn_pm},
    {"OrNPPZ", "P", "orn", pd_pg_pn_pm},
    {"OrNFlgPPZ", "P", "orns", pd_pg_pn_pm},
    {"XorPPZ", "P", "eor", pd_pg_pn_pm},
    {"XorFlgPPZ", "P", "eors", pd_pg_pn_pm},
    {"SelPP", "P", "sel", pd_pg_pn_pm},

    // Breaks.
    {"BreakAFlgPZ", "P", "brkas", pd_pg_pn},
    {"BreakAPM", "P", "brka", pd_pg_pn},
    {"BreakAPZ", "P", "brka", pd_pg_pn},
    {"BreakBFlgPZ", "P", "brkbs", pd_pg_pn},
    {"BreakBPM", "P", "brkb", pd_pg_pn},
    {"BreakBPZ", "P", "brkb", pd_pg_pn},
    {"BreakNextPZ", "P", "brkn", pdn_pg_pn},
    {"BreakNextFlgPZ", "P", "brkns", pdn_pg_pn},
    {"BreakPrevAPZ", "P", "brkpa", pd_pg_pn_pm},
    {"BreakPrevAFlgPZ", "P", "brkpas", pd_pg_pn_pm},
    {"BreakPrevBPZ", "P", "brkpb", pd_pg_pn_pm},
    {"BreakPrevBFlgPZ", "P", "brkpbs", pd_pg_pn_pm},

    // Constants, iteration, tests, the first-fault register.
    {"False", "P", "pfalse", "<Pd>"},
    {"TrueI", "P", "ptrue", "<Pd>, <pattern>"},
    {"TrueFlgI", "P", "ptrues", "<Pd>, <pattern>"},
    {"SetFirstActiveP", "P", "pfirst", "<Pdn>, <Pg>, <Pdn>"},
    {"GenNextP", "P", "pnext", "<Pdn>, <Pg>, <Pdn>"},
    {"TestPZ", "P", "ptest", "<Pg>, <Pn>"},
    {"ActualP", "P", "rdffr", "<Pd>, <Pg>"},
    {"ActualFlgP", "P", "rdffrs", "<Pd>, <Pg>"},
    {"ReadFFSRP", "P", "rdffr", "<Pd>"},
    {"WriteFFSRP", "P", "wrffr", "<Pn>"},
    {"ClearFFSR", "P", "setffr", ""},

    // Permutes.
    {"ReverseP", "P", "rev", pd_pn},
    {"UnpackHiP", "P", "punpkhi", pd_pn},
    {"UnpackLoP", "P", "punpklo", pd_pn},
    {"Trn1PP", "P", "trn1", pd_pn_pm},
    {"Trn2PP", "P", "trn2", pd_pn_pm},
    {"Uzp1PP", "P", "uzp1", pd_pn_pm},
    {"Uzp2PP", "P", "uzp2", pd_pn_pm},
    {"Zip1PP", "P", "zip1", pd_pn_pm},
    {"Zip2PP", "P", "zip2", pd_pn_pm},

    // Comparisons of integers.
    {"CmpFlgEQVVZ", "S", "cmpeq", pd_pg_zn_zm},
    {"CmpFlgGEVVZ", "U", "cmphs", pd_pg_zn_zm},
    {"CmpFlgGEVVZ", "S", "cmpge", pd_pg_zn_zm},
    {"CmpFlgGTVVZ", "U", "cmphi", pd_pg_zn_zm},
    {"CmpFlgGTVVZ", "S", "cmpgt", pd_pg_zn_zm},
    {"CmpFlgNEVVZ", "S", "cmpne", pd_pg_zn_zm},
    {"CmpFlgEQVWZ", "S", "cmpeq", pd_pg_zn_zm},
    {"CmpFlgGEVWZ", "U", "cmphs", pd_pg_zn_zm},
    {"CmpFlgGEVWZ", "S", "cmpge", pd_pg_zn_zm},
    {"CmpFlgGTVWZ", "U", "cmphi", pd_pg_zn_zm},
    {"CmpFlgGTVWZ", "S", "cmpgt", pd_pg_zn_zm},
    {"CmpFlgLEVWZ", "U", "cmpls", pd_pg_zn_zm},
    {"CmpFlgLEVWZ", "S", "cmple", pd_pg_zn_zm},
    {"CmpFlgLTVWZ", "U", "cmplo", pd_pg_zn_zm},
    {"CmpFlgLTVWZ", "S", "cmplt", pd_pg_zn_zm},
    {"CmpFlgNEVWZ", "S", "cmpne", pd_pg_zn_zm},
    {"CmpFlgEQVIZ", "S", "cmpeq", pd_pg_zn_imm5},
    {"CmpFlgGEVIZ", "U", "cmphs", pd_pg_zn_imm7},
    {"CmpFlgGEVIZ", "S", "cmpge", pd_pg_zn_imm5},
    {"CmpFlgGTVIZ", "U", "cmphi", pd_pg_zn_imm7},
    {"CmpFlgGTVIZ", "S", "cmpgt", pd_pg_zn_imm5},
    {"CmpFlgLEVIZ", "U", "cmpls", pd_pg_zn_imm7},
    {"CmpFlgLEVIZ", "S", "cmple", pd_pg_zn_imm5},
    {"CmpFlgLTVIZ", "U", "cmplo", pd_pg_zn_imm7},
    {"CmpFlgLTVIZ", "S", "cmplt", pd_pg_zn_imm5},
    {"CmpFlgNEVIZ", "S", "cmpne", pd_pg_zn_imm5},

    // Loops.
    {"While4LESS", "U", "whilels", pd_rn_rm},
    {"While4LESS", "S", "whilele", pd_rn_rm},
    {"While8LESS", "U", "whilels", pd_rn_rm},
    {"While8LESS", "S", "whilele", pd_rn_rm},
    {"While4LTSS", "U", "whilelo", pd_rn_rm},
    {"While4LTSS", "S", "whilelt", pd_rn_rm},
    {"While8LTSS", "U", "whilelo", pd_rn_rm},
    {"While8LTSS", "S", "whilelt", pd_rn_rm},
    {"CTermEQ", "U", "ctermeq", "<Rn>, <Rm>"},
    {"CTermNE", "U", "ctermne", "<Rn>, <Rm>"},

    // Counts of active elements.
    {"SCountP", "U", "cntp", "<Rd>, <Pg>, <Pn>"},
    {"DecrSCountPS", "U", "decp", rdn_pm},
    {"DecrCountPV", "U", "decp", zdn_pm},
    {"IncrSCountPS", "U", "incp", rdn_pm},
    {"IncrCountPV", "U", "incp", zdn_pm},
    {"QDecrSCount4PS", "S", "sqdecp", rdn_pm_by_32_bits},
    {"QDecrSCount4PS", "U", "uqdecp", rdn_pm},
    {"QDecrSCount8PS", "U", "uqdecp", rdn_pm},
    {"QDecrSCount8PS", "S", "sqdecp", rdn_pm},
    {"QDecrCountPV", "U", "uqdecp", zdn_pm},
    {"QDecrCountPV", "S", "sqdecp", zdn_pm},
    {"QIncrSCount4PS", "S", "sqincp", rdn_pm_by_32_bits},
    {"QIncrSCount4PS", "U", "uqincp", rdn_pm},
    {"QIncrSCount8PS", "U", "uqincp", rdn_pm},
    {"QIncrSCount8PS", "S", "sqincp", rdn_pm},
    {"QIncrCountPV", "U", "uqincp", zdn_pm},
    {"QIncrCountPV", "S", "sqincp", zdn_pm},

    // Counts of a vector's elements.
    {"CountVLSI", "U8", "cntb", "<Rd>, <pattern>, <imm4>"},
    {"CountVLSI", "U16", "cnth", "<Rd>, <pattern>, <imm4>"},
    {"CountVLSI", "U32", "cntw", "<Rd>, <pattern>, <imm4>"},
    {"CountVLSI", "U64", "cntd", "<Rd>, <pattern>, <imm4>"},
    {"DecrVLSI", "U8", "decb", rdn_multiple},
    {"DecrVLSI", "U16", "dech", rdn_multiple},
    {"DecrVLSI", "U32", "decw", rdn_multiple},
    {"DecrVLSI", "U64", "decd", rdn_multiple},
    {"DecrVLVI", "U16", "dech", zdn_multiple},
    {"DecrVLVI", "U32", "decw", zdn_multiple},
    {"DecrVLVI", "U64", "decd", zdn_multiple},
    {"IncrVLSI", "U8", "incb", rdn_multiple},
    {"IncrVLSI", "U16", "inch", rdn_multiple},
    {"IncrVLSI", "U32", "incw", rdn_multiple},
    {"IncrVLSI", "U64", "incd", rdn_multiple},
    {"IncrVLVI", "U16", "inch", zdn_multiple},
    {"IncrVLVI", "U32", "incw", zdn_multiple},
    {"IncrVLVI", "U64", "incd", zdn_multiple},
    {"QDecrVL4SI", "S8", "sqdecb", rdn_by_32_bits},
    {"QDecrVL4SI", "S16", "sqdech", rdn_by_32_bits},
    {"QDecrVL4SI", "S32", "sqdecw", rdn_by_32_bits},
    {"QDecrVL4SI", "S64", "sqdecd", rdn_by_32_bits},
    {"QDecrVL4SI", "U8", "uqdecb", rdn_multiple},
    {"QDecrVL4SI", "U16", "uqdech", rdn_multiple},
    {"QDecrVL4SI", "U32", "uqdecw", rdn_multiple},
    {"QDecrVL4SI", "U64", "uqdecd", rdn_multiple},
    {"QDecrVL8SI", "S8", "sqdecb", rdn_multiple},
    {"QDecrVL8SI", "S16", "sqdech", rdn_multiple},
    {"QDecrVL8SI", "S32", "sqdecw", rdn_multiple},
    {"QDecrVL8SI", "S64", "sqdecd", rdn_multiple},
    {"QDecrVL8SI", "U8", "uqdecb", rdn_multiple},
    {"QDecrVL8SI", "U16", "uqdech", rdn_multiple},
    {"QDecrVL8SI", "U32", "uqdecw", rdn_multiple},
    {"QDecrVL8SI", "U64", "uqdecd", rdn_multiple},
    {"QDecrVLVI", "S16", "sqdech", zdn_multiple},
    {"QDecrVLVI", "S32", "sqdecw", zdn_multiple},
    {"QDecrVLVI", "S64", "sqdecd", zdn_multiple},
    {"QDecrVLVI", "U16", "uqdech", zdn_multiple},
    {"QDecrVLVI", "U32", "uqdecw", zdn_multiple},
    {"QDecrVLVI", "U64", "uqdecd", zdn_multiple},
    {"QIncrVL4SI", "S8", "sqincb", rdn_by_32_bits},
    {"QIncrVL4SI", "S16", "sqinch", rdn_by_32_bits},
    {"QIncrVL4SI", "S32", "sqincw", rdn_by_32_bits},
    {"QIncrVL4SI", "S64", "sqincd", rdn_by_32_bits},
    {"QIncrVL4SI", "U8", "uqincb", rdn_multiple},
    {"QIncrVL4SI", "U16", "uqinch", rdn_multiple},
    {"QIncrVL4SI", "U32", "uqincw", rdn_multiple},
    {"QIncrVL4SI", "U64", "uqincd", rdn_multiple},
    {"QIncrVL8SI", "S8", "sqincb", rdn_multiple},
    {"QIncrVL8SI", "S16", "sqinch", rdn_multiple},
    {"QIncrVL8SI", "S32", "sqincw", rdn_multiple},
    {"QIncrVL8SI", "S64", "sqincd", rdn_multiple},
    {"QIncrVL8SI", "U8", "uqincb", rdn_multiple},
    {"QIncrVL8SI", "U16", "uqinch", rdn_multiple},
    {"QIncrVL8SI", "U32", "uqincw", rdn_multiple},
    {"QIncrVL8SI", "U64", "uqincd", rdn_multiple},
    {"QIncrVLVI", "S16", "sqinch", zdn_multiple},
    {"QIncrVLVI", "S32", "sqincw", zdn_multiple},
    {"QIncrVLVI", "S64", "sqincd", zdn_multiple},
    {"QIncrVLVI", "U16", "uqinch", zdn_multiple},
    {"QIncrVLVI", "U32", "uqincw", zdn_multiple},
    {"QIncrVLVI", "U64", "uqincd", zdn_multiple},
});

}  // namespace

std::span<const assembly_form> predicate_forms() { return forms; }

}  // namespace quern
